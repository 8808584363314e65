// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/vector.h"

namespace morvane::raster {

namespace {

constexpr double circle_number = 3.141592653589793238;

// Taylor series; good to the last bits up to an eighth of a turn.
Turn small_turn(double angle) {
    const double square = angle * angle;
    double sine = 1;
    double cosine = 1;
    for (int n = 16; n >= 2; n -= 2) {
        sine = 1 - sine * square / (n * (n + 1));
        cosine = 1 - cosine * square / (n * (n - 1));
    }
    return {angle * sine, cosine};
}

} // namespace

Turn turn_of(double degrees) {
    if (!std::isfinite(degrees)) {
        return {};
    }
    const double reduced = std::fmod(degrees, 360.0); // exact
    const double quarter = std::floor((reduced + 45) / 90);
    const Turn rest = small_turn((reduced - quarter * 90) * (circle_number / 180));
    switch (static_cast<int>(quarter) & 3) {
    case 1:
        return {rest.cosine, -rest.sine};
    case 2:
        return {-rest.sine, -rest.cosine};
    case 3:
        return {-rest.cosine, rest.sine};
    default:
        return rest;
    }
}

Affine rotation(double heading, double pitch, double bank) {
    const Turn h = turn_of(heading);
    const Turn p = turn_of(pitch);
    const Turn b = turn_of(bank);
    const Affine banked{{Vec3{b.cosine, -b.sine, 0}, Vec3{b.sine, b.cosine, 0}, Vec3{0, 0, 1}}, {}};
    const Affine pitched{{Vec3{1, 0, 0}, Vec3{0, p.cosine, p.sine}, Vec3{0, -p.sine, p.cosine}},
                         {}};
    const Affine headed{{Vec3{h.cosine, 0, -h.sine}, Vec3{0, 1, 0}, Vec3{h.sine, 0, h.cosine}}, {}};
    return then(then(banked, pitched), headed);
}

Affine scaling(double factor) {
    return {{Vec3{factor, 0, 0}, Vec3{0, factor, 0}, Vec3{0, 0, factor}}, {}};
}

Affine translation(const Vec3& by) {
    return {Affine().rows, by};
}

} // namespace morvane::raster
