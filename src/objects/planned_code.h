// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/object_code.h"
#include "objects/parameters.h"
#include "source/open_set.h"

#include <cstddef>
#include <string>
#include <vector>

namespace morvane {

/// What becomes of a block: its code, and the lines that are commented out for it.
struct Rewrite {
    std::vector<std::string> code;
    std::size_t lines = 0;         // commented out, from the opening line on
    std::size_t count = 0;         // what the log calls "Lines of new code"
    std::size_t unusable_line = 0; // of the triangle at which the kind gave up; else 0
};

/// Walks a block from its opening line on and makes its code; the set stays as it is. When the kind
/// cannot use a triangle there is no code, and `lines` are those before that triangle. Throws
/// RuntimeError; the block is then at the line that it was about.
Rewrite generate_code(DrawBlock& block, const ObjectCode& kind);

/// What Process would do to a material.
struct PlannedCode {
    std::vector<std::string> code;
    std::size_t before_line = 0; // of the model store; where the code would go
    std::size_t first = 0;       // of the lines that would be commented out
    std::size_t lines = 0;       // how many those are
    /// Why Process would not do it. The code is then empty, but for a flat windsock triangle the
    /// lines before that triangle would be commented out all the same.
    std::string refusal;
};

/// Makes the code of a material that is not processed yet without changing the set. Never throws:
/// what Process would report is the refusal.
PlannedCode plan_code(const OpenSet& set, std::size_t row, Kind kind, const Parameters& parameters);

/// Whether a kind's code is written after the model's BGL_END line, and not where the material is
/// selected.
bool goes_after_bgl_end(Kind kind);

/// Throws SubscriptOutOfRange when the set has no room for another replacement of so many lines.
void require_room(const OpenSet& set, std::size_t lines);

} // namespace morvane
