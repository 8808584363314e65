// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/fields.h"
#include "source/open_set.h"

#include <string>
#include <string_view>

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

/// How a placed object stands to the ground.
struct Grounding {
    bool on_the_ground = false;
    std::string terrain_feet; // its number counts only off the ground
};

/// The text from the latitude on of a SCALE or SCALE_AGL line: ", LAT, LATF, LON, LONF, ALT, ALTF"
/// for a vertex (x east, y up, z north in model units) around the model's reference point, the
/// model's rotation applied.
///
/// The latitude's high and low parts take the northing by different factors; this difference is
/// kept on purpose. Throws TypeMismatch for a field that is no number, DivisionByZero for a
/// reference line with scale 0, Overflow for a place off the globe.
std::string geo_coordinates(const Placement& placement, const FieldArray& vertex,
                            const Grounding& grounding);

/// "    SCALE_AGL   " on the ground, else "    SCALE   ".
std::string_view scale_keyword(const Grounding& grounding);

} // namespace morvane
