// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/camera.h"

#include "raster/vector.h"

#include <algorithm>

namespace morvane::raster {

namespace {

constexpr double distance_per_height = 1.6; // an angle of view of 35 degrees
constexpr double nearest = 0.01;            // of the distance
constexpr double smallest_height = 0.01;
constexpr double largest_height = 4e6;
constexpr double used_part = 0.9; // of the picture, when everything is to be in it

double bounded_height(double height) {
    return std::isfinite(height) ? std::clamp(height, smallest_height, largest_height) : 100;
}

Vec3 at_pixel(const Camera& camera, const PictureSize& size, double x, double y) {
    const Projection p = projection_of(camera, size);
    return camera.target + p.axes.right * ((x - size.width * 0.5) / p.pixels_per_metre) +
           p.axes.up * ((size.height * 0.5 - y) / p.pixels_per_metre);
}

// The smallest height at which a point, in view coordinates, is within the used part.
double height_for(const Vec3& viewed, const PictureSize& size, bool perspective) {
    const double aspect = static_cast<double>(size.width) / size.height;
    const double across =
        2 / used_part * std::fmax(std::fabs(viewed.x) / aspect, std::fabs(viewed.y));
    return perspective ? across - viewed.z / distance_per_height : across;
}

struct Frame {
    double left = 1e300, right = -1e300, top = 1e300, bottom = -1e300;

    void add(const Seen& seen) {
        left = std::fmin(left, seen.x);
        right = std::fmax(right, seen.x);
        top = std::fmin(top, seen.y);
        bottom = std::fmax(bottom, seen.y);
    }
};

void fit_height(Camera& camera, const PictureSize& size, std::span<const Vec3> points) {
    const Projection p = projection_of(camera, size);
    double height = smallest_height;
    for (const Vec3& point : points) {
        height = std::fmax(height, height_for(p.view(point), size, p.distance > 0));
    }
    camera.height = bounded_height(height);
}

// Moves the target so that what is seen is in the middle.
void centre(Camera& camera, const PictureSize& size, std::span<const Vec3> points) {
    const Projection p = projection_of(camera, size);
    Frame frame;
    for (const Vec3& point : points) {
        if (const auto seen = project(p, point)) {
            frame.add(*seen);
        }
    }
    if (frame.left <= frame.right) {
        camera.target =
            at_pixel(camera, size, (frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2);
    }
}

} // namespace

Axes axes_of(const Camera& camera) {
    switch (camera.view) {
    case View::Plan:
        return {{1, 0, 0}, {0, 0, 1}, {0, -1, 0}};
    case View::Front:
        return {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    case View::Side:
        return {{0, 0, 1}, {0, 1, 0}, {-1, 0, 0}};
    case View::Orbit:
        break;
    }
    const Affine turned = rotation(camera.heading, camera.pitch);
    return {turned.rows[0], turned.rows[1], turned.rows[2]};
}

Vec3 Projection::view(const Vec3& point) const {
    const Vec3 d = point - target;
    return {dot(d, axes.right), dot(d, axes.up), dot(d, axes.forward)};
}

double Projection::near_plane() const {
    return distance > 0 ? distance * (nearest - 1) : -Box::infinity;
}

bool Projection::in_front(const Vec3& viewed) const {
    return viewed.z >= near_plane();
}

Seen Projection::seen(const Vec3& viewed) const {
    const double scale = distance > 0 ? distance / (viewed.z + distance) : 1;
    const double k = pixels_per_metre * scale;
    return {size.width * 0.5 + viewed.x * k, size.height * 0.5 - viewed.y * k,
            distance > 0 ? scale : -viewed.z};
}

Projection projection_of(const Camera& camera, const PictureSize& size) {
    const double height = bounded_height(camera.height);
    return {axes_of(camera), camera.target, size, size.height / height,
            camera.view == View::Orbit ? height * distance_per_height : 0};
}

std::optional<Seen> project(const Projection& projection, const Vec3& point) {
    const Vec3 viewed = projection.view(point);
    if (!is_finite(viewed) || !projection.in_front(viewed)) {
        return std::nullopt;
    }
    return projection.seen(viewed);
}

void orbit(Camera& camera, double right, double down) {
    if (camera.view != View::Orbit) {
        camera.heading = camera.view == View::Side ? -90 : 0;
        camera.pitch = camera.view == View::Plan ? 89 : 0;
        camera.view = View::Orbit;
    }
    camera.heading = std::fmod(camera.heading + right, 360.0);
    camera.pitch = std::clamp(camera.pitch + down, -89.0, 89.0);
}

void pan(Camera& camera, const PictureSize& size, double dx, double dy) {
    camera.target = at_pixel(camera, size, size.width * 0.5 - dx, size.height * 0.5 - dy);
}

void zoom_at(Camera& camera, const PictureSize& size, double x, double y, double factor) {
    const double height = bounded_height(camera.height / factor);
    const Vec3 fixed = at_pixel(camera, size, x, y);
    camera.target = fixed - (fixed - camera.target) * (height / bounded_height(camera.height));
    camera.height = height;
}

void fit(Camera& camera, const PictureSize& size, std::span<const Vec3> points) {
    Box box;
    for (const Vec3& point : points) {
        box.add(point);
    }
    if (box.empty() || !is_finite(box.centre())) {
        return;
    }
    camera.target = box.centre();
    for (int round = 0; round < 3; ++round) {
        fit_height(camera, size, points);
        centre(camera, size, points);
    }
    fit_height(camera, size, points);
}

std::optional<Vec3> ground_at(const Camera& camera, const PictureSize& size, double x, double y) {
    const Projection p = projection_of(camera, size);
    const Vec3 on_target_plane = at_pixel(camera, size, x, y);
    const Vec3 eye = camera.target - p.axes.forward * p.distance;
    const Vec3 sight = p.distance > 0 ? on_target_plane - eye : p.axes.forward;
    if (std::fabs(sight.y) < 1e-9) {
        return std::nullopt;
    }
    const double along = (p.distance > 0 ? eye.y : on_target_plane.y) / -sight.y;
    if (p.distance > 0 && along <= 0) {
        return std::nullopt;
    }
    return (p.distance > 0 ? eye : on_target_plane) + sight * along;
}

} // namespace morvane::raster
