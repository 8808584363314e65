// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/vector.h"

namespace morvane::raster {

/// Sine and cosine of an angle.
struct Turn {
    double sine = 0;
    double cosine = 1;
};

/// Sine and cosine of an angle in degrees, to about 1e-15, with the same bits on every machine:
/// the functions of C libraries differ in the last one. An angle that is not finite counts as 0.
Turn turn_of(double degrees);

/// Turns by bank about z, then by pitch about x, then by heading about y; all in degrees. Heading
/// turns to the right seen from above, pitch brings the nose down.
Affine rotation(double heading, double pitch = 0, double bank = 0);

/// The same factor along all axes.
Affine scaling(double factor);
Affine translation(const Vec3& by);

} // namespace morvane::raster
