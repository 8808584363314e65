// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/vector.h"

#include <optional>
#include <span>

namespace morvane::raster {

/// From where the scene is seen. Plan has north up and east right; Front looks north, Side looks
/// west; these three have no perspective.
enum class View { Orbit, Plan, Front, Side };

/// The viewer. A plain value: the window keeps one and changes it by the functions below.
struct Camera {
    View view = View::Orbit;
    Vec3 target{};       // what is in the middle of the picture
    double heading = 35; // degrees to the right of north that the viewer looks; Orbit only
    double pitch = 28;   // degrees that the viewer looks down, -89 .. 89; Orbit only
    double height = 100; // metres from the bottom to the top of the picture, at the target

    bool operator==(const Camera&) const = default;
};

/// The size of a picture in pixels.
struct PictureSize {
    int width = 800;
    int height = 600;

    bool operator==(const PictureSize&) const = default;
};

/// Right, up and forward of the viewer, each of length 1.
struct Axes {
    Vec3 right;
    Vec3 up;
    Vec3 forward;
};
Axes axes_of(const Camera& camera);

/// Where a point is in the picture: pixels from its upper left corner, and a depth that is the
/// larger the nearer the point.
struct Seen {
    double x = 0;
    double y = 0;
    double depth = 0;
};

/// A camera made ready for a picture's size.
struct Projection {
    Axes axes;
    Vec3 target;
    PictureSize size;
    double pixels_per_metre = 1; // at the target
    double distance = 0;         // of the viewer from the target; 0: no perspective

    /// The point seen from the viewer: right, up, and forward from the target, in metres.
    Vec3 view(const Vec3& point) const;
    /// Whether a point in view coordinates is far enough before the viewer to be projected.
    bool in_front(const Vec3& viewed) const;
    /// Metres forward from the target at which everything nearer is cut off. -infinity without
    /// perspective.
    double near_plane() const;
    /// The picture's place of a point in view coordinates that is in front.
    Seen seen(const Vec3& viewed) const;
};
Projection projection_of(const Camera& camera, const PictureSize& size);

/// Where a point is in the picture; std::nullopt behind the viewer and for places that are not
/// finite.
std::optional<Seen> project(const Projection& projection, const Vec3& point);

/// Turns an Orbit camera: `right` and `down` in degrees. Other views become Orbit first, keeping
/// target and height.
void orbit(Camera& camera, double right, double down);
/// Moves the scene along with the pointer by so many pixels.
void pan(Camera& camera, const PictureSize& size, double dx, double dy);
/// Makes everything `factor` times as large (below 1: smaller); what is at the pixel stays there.
void zoom_at(Camera& camera, const PictureSize& size, double x, double y, double factor);
/// Changes target and height so that all points are in the picture with a margin of a twentieth.
/// Without points nothing is changed.
void fit(Camera& camera, const PictureSize& size, std::span<const Vec3> points);

/// Where the line of sight through a pixel meets the ground (y = 0), if it does before the viewer.
std::optional<Vec3> ground_at(const Camera& camera, const PictureSize& size, double x, double y);

} // namespace morvane::raster
