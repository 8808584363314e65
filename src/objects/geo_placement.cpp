// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/geo_placement.h"

#include "base/errors.h"
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

namespace {

constexpr double meters_per_foot = 0.3048;
constexpr double earth_diameter = 12734620; // metres
constexpr double units_per_circle = 4294967296.0;

// The fraction after the thousands, in 1/65536.
std::string low_part(double value) {
    const double rest = (value - std::floor(value / 1000) * 1000) / 1000;
    return plain_text(std::floor(rest * 65536));
}

std::string high_hex(double value) {
    return "0" + hex_text(static_cast<std::uint32_t>(round_to_int32(value))) + "h";
}

double unit_factor(const Placement& placement) {
    const double scale = number_field(get_field(placement.scale_line, 4));
    if (!placement.unreadable.empty()) {
        throw RuntimeError(ErrorNumber::DivisionByZero, placement.unreadable);
    }
    if (scale == 0) {
        throw RuntimeError(ErrorNumber::DivisionByZero,
                           placement.scale_line.empty()
                               ? "the frame file has no SCALE_AGL line"
                               : "the scale in the frame file's SCALE_AGL line is 0");
    }
    return 65536 / scale;
}

double ground_altitude(const Grounding& grounding) {
    if (grounding.on_the_ground) {
        return 0;
    }
    return (val(grounding.terrain_feet) - 4) * meters_per_foot * 1000;
}

Cartesian rotated(double x, double z, double rotation) {
    if (rotation == 0) {
        return {x, z};
    }
    Polar polar = cart_to_polar(x, z);
    polar.angle = polar.angle + rotation * 2 * pi / 65536;
    return polar_to_cart(polar.r, polar.angle);
}

} // namespace

std::string geo_coordinates(const Placement& placement, const FieldArray& vertex,
                            const Grounding& grounding) {
    const Cartesian place =
        rotated(number_field(vertex[1]), number_field(vertex[3]), placement.rotation);
    const double y = number_field(vertex[2]);
    const double unit = unit_factor(placement);
    const double parallel = std::cos(placement.latitude_degrees * pi / 180) * earth_diameter * pi;
    const double longitude = placement.longitude + place.a * unit * (units_per_circle / parallel);
    const double northing = place.b * 1000 * unit;
    const double altitude = ground_altitude(grounding) + y * unit;
    return ", " + high_hex(placement.latitude + northing / 1000) + ", " +
           low_part(placement.latitude + northing) + ", " + high_hex(longitude) + ", " +
           low_part(longitude) + ", " + plain_text(std::floor(altitude / 1000)) + ", " +
           low_part(altitude);
}

std::string_view scale_keyword(const Grounding& grounding) {
    return grounding.on_the_ground ? "    SCALE_AGL   " : "    SCALE   ";
}

} // namespace morvane
