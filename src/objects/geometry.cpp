// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/geometry.h"

#include "base/numbers.h"

#include <cmath>

namespace morvane {

Polar cart_to_polar(double a, double b) {
    const double r = std::sqrt(b * b + a * a);
    if (b == 0) {
        return {r, a >= 0 ? pi / 2 : 3 * pi / 2};
    }
    const double t = std::atan(a / b);
    if (b < 0) {
        return {r, t + pi};
    }
    return {r, a >= 0 ? t : t + 2 * pi};
}

Cartesian polar_to_cart(double r, double angle) {
    return {r * std::sin(angle), r * std::cos(angle)};
}

} // namespace morvane
