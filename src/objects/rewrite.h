// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/object_code.h"

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

} // namespace morvane
