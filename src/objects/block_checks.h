// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "objects/parameters.h"
#include "source/open_set.h"

#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// Whether a marked material's block can be taken as a whole.
enum class BlockState {
    Fit,
    Rewritten,   // its lines show the traces of a rewrite
    NotDrawn,    // the model file selects the material nowhere
    NoTriangles, // no triangle follows its opening line
    OtherLines,  // something else comes between its first triangle and its DRAW_TRI_END
};

/// A block's state, and the line of the model file that shows it.
struct BlockFinding {
    BlockState state = BlockState::Fit;
    std::size_t line = 0;
    std::string text; // what is wrong, as the rest of "row 3 (MATERIAL 12) ..."
};

/// Looks at the block of a material that is not processed yet.
BlockFinding check_block(const OpenSet& set, const Translation& material);

/// The same as a warning with its place; nothing for a block that is fit.
std::optional<Note> block_note(const OpenSet& set, const Translation& material);

/// Number of triangles that Process would find in a material's block; 0 for one that is not drawn.
std::size_t triangles_to_rewrite(const OpenSet& set, const Translation& material);

/// What will not compile or not work when a material that is not processed yet is turned into
/// objects of a kind: its triangles' vertices, and for aircraft lights the frame file. The block
/// itself is checked by check_block, the parameters by check_parameters. Throws RuntimeError for a
/// block that cannot be walked.
std::vector<Note> check_material(const OpenSet& set, const Translation& material, Kind kind,
                                 const Parameters& parameters);

} // namespace morvane
