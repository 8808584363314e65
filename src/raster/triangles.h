// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/picture.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace morvane::raster {

/// A triangle to be drawn: its corners as indices of a list of points, its colour with light and
/// shade already in it, and its id.
struct Face {
    std::array<std::uint32_t, 3> corners{};
    Colour colour = 0xFFFFFFFF; // alpha below 255: what is behind shines through
    std::uint32_t id = no_id;
    bool hatched = false; // only every fourth diagonal of pixels is drawn
};

enum class Sides { Both, Clockwise, Counterclockwise };

/// The points of a scene as the viewer sees them; computed once for all faces that share them.
struct ViewedPoints {
    std::vector<Vec3> viewed; // view coordinates
    std::vector<Seen> seen;   // meaningless unless `simple`
    std::vector<char> simple; // in front, and not so far outside that it needs cutting
};

/// Points that are not finite, or farther away than 1e9 metres, make the faces that use them
/// invisible.
void view_points(ViewedPoints& result, const Projection& projection, std::span<const Vec3> points);

/// Draws faces into the picture: opaque ones by the z-buffer, so that the nearer hides the farther
/// and of two in one plane the later is seen; then translucent ones, the farthest first. Faces
/// whose corners are out of range are skipped. `sides` says which are drawn, by the order in which
/// the picture shows their corners.
///
/// The same input fills the same pixels on every machine: edges are whole numbers of a sixteenth of
/// a pixel, and a pixel is drawn when its centre is inside (on a left or upper edge included).
void draw_faces(Picture& picture, const Projection& projection, const ViewedPoints& points,
                std::span<const Face> faces, Sides sides = Sides::Both);

/// The light falls on both sides of a face: 256 where it faces the light, `least_light` where it is
/// parallel to it.
inline constexpr unsigned least_light = 100;
unsigned light_on(const Vec3& a, const Vec3& b, const Vec3& c);

} // namespace morvane::raster
