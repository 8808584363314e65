// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace morvane {

struct Polar {
    double r = 0;
    double angle = 0; // radians
};

struct Cartesian {
    double a = 0;
    double b = 0;
};

/// Distance from the origin and the angle, in [0, 2 pi), from the b axis towards the a axis.
Polar cart_to_polar(double a, double b);

/// a = r sin(angle), b = r cos(angle).
Cartesian polar_to_cart(double r, double angle);

} // namespace morvane
