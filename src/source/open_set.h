// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "source/line_store.h"
#include "source/opened_file.h"
#include "system/services.h"

#include <cstddef>
#include <string>
#include <vector>

namespace morvane {

/// A line of the model's material list.
struct Material {
    std::string text;          // the trimmed line
    std::size_t list_line = 0; // its index in the model store
};

/// Where a material is selected for drawing.
struct MaterialBlock {
    std::size_t selecting_line = 0; // index of its MATERIAL line in the model store
    std::size_t block_end = 0;      // index of the first DRAW_TRI_END line after that
    std::size_t further_places = 0; // in how many more blocks it is drawn
};

/// A material marked by its highlight colour: one row of the translation table.
struct Translation {
    std::size_t number = 0;    // zero-based, its position in the material list
    std::size_t list_line = 0; // index in the model store
    MaterialBlock block;
    std::string highlight; // six hex digits in the platform's order, blue green red
    std::string color;     // its own colour, RRGGBB
    std::string processed; // empty until Process has rewritten it, then the kind
    std::size_t row = 0;   // of the list of marked materials, from 1
    // How many lines of its block, from the opening line on, a windsock has commented out that then
    // met a flat triangle. They count as if they were not, so that the next Process finds them.
    std::size_t given_up = 0;
};

/// Where the frame file places the object.
struct Placement {
    double longitude = 0;        // of the reference point, in the file's units with a fraction
    double latitude = 0;         // likewise
    double latitude_degrees = 0; // the same in degrees
    std::string scale_line;      // the SCALE_AGL line
    double rotation = 0;         // of the model, in 1/65536 of a full turn
    std::string unreadable;      // why it could not be read from the frame file, or empty
};

/// The code of one processed material, and where it goes.
struct Replacement {
    std::size_t before_line = 0; // of the model store
    std::vector<std::string> code;
};

/// One entry of the parameter extension dictionary.
struct DictionaryRow {
    std::string equ_line;
    std::string dd_line;
};

/// Everything that lives from one Open to the next.
struct OpenSet {
    static constexpr std::size_t max_translations = 300;
    static constexpr std::size_t max_replacements = 100;
    static constexpr std::size_t max_code_lines = 50000; // of all replacements together

    std::string base;
    LineStore model;
    LineStore frame;
    OpenedFile model_file; // as they were on the disk when they were read
    OpenedFile frame_file;
    std::vector<Material> materials;       // material number n is at n - 1
    std::vector<Translation> translations; // row n of the translation table is at n - 1
    std::size_t vertex_list = 0;           // index of the line after VERTEX_LIST_BEGIN
    std::size_t bgl_end = 1;               // a line of the model before which no BGL_END stands
    Placement placement;
    std::vector<Replacement> replacements; // in the order of Process
    std::vector<DictionaryRow> dictionary;
    bool frame_changed = false;
    bool opened = false; // the material list is filled, Process may select from it
    bool saved = false;

    /// Row 1 .. n of the translation table. Throws SubscriptOutOfRange elsewhere.
    Translation& translation(std::size_t row);
    const Translation& translation(std::size_t row) const;
    /// How many marked materials Process has not rewritten yet.
    std::size_t unprocessed() const;
};

/// The Open command: loads the set of a base path (no extension), lists its marked materials and
/// reads its placement, with the log's messages. False, after a message box, when the files are
/// missing (the set that was open then stays) or cannot be used.
bool open_source_set(const Services& services, OpenSet& set, const std::string& base);

/// Number of triangles in a marked material's block: the DRAW_TRI lines, one after the other,
/// after the line that opens it.
std::size_t count_triangles(const LineStore& model, const MaterialBlock& block);

/// Reads the placement from the frame's SCALE_AGL lines, of which the last one wins, and the
/// rotation from an INSTANCE_CALL line directly after it, which goes to the message log.
///
/// The longitude's fraction is used for the latitude too: this asymmetry is intended. Throws
/// RuntimeError with the line that cannot be split or read.
Placement read_placement(const LineStore& frame, Reporter& reporter);

} // namespace morvane
