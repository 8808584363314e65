// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/draw_block.h"
#include "objects/parameters.h"
#include "source/open_set.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// The code that a kind of object puts in the place of a block.
struct ObjectCode {
    using Lines = std::vector<std::string>;

    /// Goes before the first triangle's code, when the block begins with a triangle.
    Lines opening;
    /// The code of one triangle; nothing for one that the kind cannot use. Throws RuntimeError.
    std::function<std::optional<Lines>(const DrawBlock&, const BlockTriangle&)> triangle;
    Lines closing;
    /// Whether the closing lines count among the "Lines of new code".
    bool closing_counts = false;
    /// The message for a triangle that cannot be used.
    std::string_view unusable;
};

/// The code of a kind for a material of the set. Throws RuntimeError for parameters that cannot be
/// computed with. The set must outlive the result.
ObjectCode object_code(const OpenSet& set, const Translation& material, Kind kind,
                       const Parameters& parameters);

} // namespace morvane
