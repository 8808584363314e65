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

/// 65536 / scale, cut to a whole number: what the placement of a library object carries. Throws
/// DivisionByZero for a scale whose number is 0.
double scale_word(std::string_view scale);

/// A windsock as a triangle draws it, in model units.
struct Windsock {
    double x = 0; // the mast's foot: east, up, north
    double y = 0;
    double z = 0;
    double height = 0; // of the mast
    double size = 0;   // length of the sock

    /// Whether the mast is lower than 0.1 as it would be written, with six decimals.
    bool is_flat() const;
};

/// The windsock of a triangle: its lowest corner (on ties the first) is the foot. Only the second
/// corner counts for the height, whatever the third is. Throws TypeMismatch for a coordinate that
/// is not a number, SubscriptOutOfRange for a corner that is not in the model file and for a
/// triangle higher than 99999.999.
Windsock measure_windsock(const DrawBlock& block, const BlockTriangle& triangle);

} // namespace morvane
