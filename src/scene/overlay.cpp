// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/overlay.h"

#include "base/numbers.h"
#include "raster/strokes.h"

#include <algorithm>
#include <cmath>

namespace morvane::scene {

namespace {

constexpr int max_lines = 60; // of a grid, each way

std::string length_text(double metres) {
    return metres >= 1000 ? plain_text(metres / 1000) + " km" : plain_text(metres) + " m";
}

void draw_north(raster::Picture& picture, const raster::Projection& projection, const Theme& theme,
                int scale, std::vector<Label>& labels) {
    const double x = picture.size.width - 34 * scale;
    const double y = 46 * scale;
    const double right = projection.axes.right.z * 24 * scale;
    const double up = projection.axes.up.z * 24 * scale;
    const raster::Stroke stroke{.colour = theme.ink, .width = scale};
    draw_flat_line(picture, x - right, y + up, x + right, y - up, stroke);
    // The head: two strokes back from the tip.
    for (const double side : {-0.35, 0.35}) {
        draw_flat_line(picture, x + right, y - up, x + right * 0.5 - up * side,
                       y - up * 0.5 - right * side, stroke);
    }
    labels.push_back({static_cast<int>(x + right * 1.4) - 3 * scale,
                      static_cast<int>(y - up * 1.4) + (std::fabs(up) < 5 ? 10 * scale : 0), "N",
                      theme.ink});
}

void draw_scale_bar(raster::Picture& picture, const raster::Projection& projection,
                    const Theme& theme, int scale, std::vector<Label>& labels) {
    const double metres = round_length(140 * scale / projection.pixels_per_metre);
    const double length = metres * projection.pixels_per_metre;
    const double x = 14 * scale;
    const double y = picture.size.height - 14 * scale;
    const raster::Stroke stroke{.colour = theme.ink, .width = scale};
    draw_flat_line(picture, x, y, x + length, y, stroke);
    draw_flat_line(picture, x, y - 4 * scale, x, y + 4 * scale, stroke);
    draw_flat_line(picture, x + length, y - 4 * scale, x + length, y + 4 * scale, stroke);
    labels.push_back({static_cast<int>(x + length) + 8 * scale, static_cast<int>(y),
                      length_text(metres), theme.ink});
}

} // namespace

double round_length(double length) {
    if (!(length > 0) || !std::isfinite(length)) {
        return 1;
    }
    double power = 1;
    while (power > length) {
        power /= 10;
    }
    while (power * 10 <= length) {
        power *= 10;
    }
    return power * 5 <= length ? power * 5 : power * 2 <= length ? power * 2 : power;
}

double draw_grid(raster::Picture& picture, const raster::Projection& projection, const Box& box,
                 const Theme& theme, int scale, double finest) {
    const Vec3 size = box.empty() ? Vec3{10, 0, 10} : box.size();
    const Vec3 centre = box.empty() ? Vec3{} : box.centre();
    const double extent = std::max({size.x, size.z, size.y, 1.0}) * 1.2;
    const double step = std::max(round_length(extent / 12), finest);
    const int half = std::min(static_cast<int>(extent / 2 / step) + 1, max_lines / 2);
    const double x0 = std::floor(centre.x / step + 0.5) * step;
    const double z0 = std::floor(centre.z / step + 0.5) * step;
    const double reach = half * step;
    raster::Stroke stroke{.colour = theme.grid, .width = scale};
    stroke.depth_tested = false;
    for (int i = -half; i <= half; ++i) {
        const double at = i * step;
        draw_line(picture, projection, {x0 + at, 0, z0 - reach}, {x0 + at, 0, z0 + reach}, stroke);
        draw_line(picture, projection, {x0 - reach, 0, z0 + at}, {x0 + reach, 0, z0 + at}, stroke);
    }
    return step;
}

void draw_compass(raster::Picture& picture, const raster::Projection& projection,
                  const Theme& theme, int scale, std::vector<Label>& labels) {
    draw_north(picture, projection, theme, scale, labels);
    draw_scale_bar(picture, projection, theme, scale, labels);
}

} // namespace morvane::scene
