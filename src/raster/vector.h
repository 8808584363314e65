// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cmath>
#include <limits>

namespace morvane::raster {

/// A place or a direction: x east, y up, z north, left-handed, in metres.
struct Vec3 {
    double x = 0;
    double y = 0;
    double z = 0;

    bool operator==(const Vec3&) const = default;
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(const Vec3& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}
inline double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Vec3& a) {
    return std::sqrt(dot(a, a));
}
/// `a` with the length 1; a zero vector stays as it is.
inline Vec3 unit(const Vec3& a) {
    const double size = length(a);
    return size > 0 ? a * (1 / size) : a;
}
inline bool is_finite(const Vec3& a) {
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

/// The smallest box around the points added to it.
struct Box {
    static constexpr double infinity = std::numeric_limits<double>::infinity();
    Vec3 low{infinity, infinity, infinity};
    Vec3 high{-infinity, -infinity, -infinity};

    bool empty() const { return low.x > high.x; }
    Vec3 centre() const { return (low + high) * 0.5; }
    Vec3 size() const { return high - low; }
    void add(const Vec3& p) {
        low = {std::fmin(low.x, p.x), std::fmin(low.y, p.y), std::fmin(low.z, p.z)};
        high = {std::fmax(high.x, p.x), std::fmax(high.y, p.y), std::fmax(high.z, p.z)};
    }
    std::array<Vec3, 8> corners() const {
        std::array<Vec3, 8> result;
        for (unsigned i = 0; i < 8; ++i) {
            result[i] = {(i & 1) != 0 ? high.x : low.x, (i & 2) != 0 ? high.y : low.y,
                         (i & 4) != 0 ? high.z : low.z};
        }
        return result;
    }
};

/// Row vectors times a matrix, then moved: p' = p.x * rows[0] + p.y * rows[1] + p.z * rows[2] +
/// offset.
struct Affine {
    std::array<Vec3, 3> rows{Vec3{1, 0, 0}, Vec3{0, 1, 0}, Vec3{0, 0, 1}};
    Vec3 offset{};

    bool operator==(const Affine&) const = default;
    Vec3 direction(const Vec3& d) const { return rows[0] * d.x + rows[1] * d.y + rows[2] * d.z; }
    Vec3 point(const Vec3& p) const { return direction(p) + offset; }
};

/// What `inner` and then `outer` do.
inline Affine then(const Affine& inner, const Affine& outer) {
    return {{outer.direction(inner.rows[0]), outer.direction(inner.rows[1]),
             outer.direction(inner.rows[2])},
            outer.point(inner.offset)};
}

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
