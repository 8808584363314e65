// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/object_code.h"

namespace morvane {

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

/// One windsock a triangle. A flat one cannot be used.
ObjectCode windsock_code(const Translation& material, const WindsockParameters& parameters);

} // namespace morvane
