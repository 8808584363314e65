// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/triangles.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace morvane::raster {

namespace {

// Sixteenths of a pixel. Within `guard` pixels of the picture the products of two such numbers
// fit into 64 bits with ease.
constexpr int sub_pixels = 16;
constexpr double guard = 20000;
// Metres; what is beyond could not be cut off exactly any more.
constexpr double farthest = 1e9;

struct Corner {
    std::int64_t x = 0; // sixteenths of a pixel
    std::int64_t y = 0;
    double depth = 0;
};

Corner corner_of(const Seen& seen) {
    return {static_cast<std::int64_t>(std::floor(seen.x * sub_pixels + 0.5)),
            static_cast<std::int64_t>(std::floor(seen.y * sub_pixels + 0.5)), seen.depth};
}

// The first row or column whose centre is at `position` or behind.
std::int64_t first_centre(std::int64_t position) {
    return (position + sub_pixels / 2 - 1) >> 4;
}

std::int64_t floor_divided(std::int64_t a, std::int64_t b) {
    const std::int64_t quotient = a / b;
    return a % b < 0 ? quotient - 1 : quotient;
}

// Walks down an edge, row by row: the first column whose centre is on it or to its right. Exact.
class EdgeWalk {
  public:
    EdgeWalk(const Corner& top, const Corner& bottom, std::int64_t row)
        : divisor_(sub_pixels * (bottom.y - top.y)) {
        const std::int64_t dx = bottom.x - top.x;
        const std::int64_t below = sub_pixels * row + sub_pixels / 2 - top.y;
        const std::int64_t at =
            (top.x - sub_pixels / 2) * (bottom.y - top.y) + below * dx + divisor_ - 1;
        column_ = floor_divided(at, divisor_);
        rest_ = at - column_ * divisor_;
        step_ = floor_divided(sub_pixels * dx, divisor_);
        rest_step_ = sub_pixels * dx - step_ * divisor_;
    }
    std::int64_t column() const { return column_; }
    void next_row() {
        column_ += step_;
        rest_ += rest_step_;
        if (rest_ >= divisor_) {
            rest_ -= divisor_;
            ++column_;
        }
    }

  private:
    std::int64_t divisor_;
    std::int64_t column_ = 0;
    std::int64_t rest_ = 0;
    std::int64_t step_ = 0;
    std::int64_t rest_step_ = 0;
};

struct Brush {
    Colour colour = 0;
    std::uint32_t id = no_id;
};

struct Opaque {
    static void put(Picture& picture, std::size_t at, int, float depth, const Brush& brush) {
        picture.pixels[at] = brush.colour;
        picture.depths[at] = depth;
        picture.ids[at] = brush.id;
    }
};

struct Translucent {
    static void put(Picture& picture, std::size_t at, int, float, const Brush& brush) {
        picture.pixels[at] = mixed(brush.colour, picture.pixels[at], (brush.colour >> 24) + 1);
        picture.ids[at] = brush.id;
    }
};

struct Hatched {
    static void put(Picture& picture, std::size_t at, int diagonal, float depth,
                    const Brush& brush) {
        if ((diagonal & 6) == 0) {
            Opaque::put(picture, at, diagonal, depth, brush);
        }
    }
};

// The depth as a linear function of the place in the picture.
struct DepthPlane {
    double per_column = 0;
    double per_row = 0;
    double at_origin = 0; // at the centre of pixel 0, 0
    float advantage = 0;  // of what is drawn later, at the same depth

    DepthPlane(const Corner& a, const Corner& b, const Corner& c, std::int64_t area,
               bool perspective) {
        const auto scale = sub_pixels / static_cast<double>(area);
        const double db = b.depth - a.depth;
        const double dc = c.depth - a.depth;
        per_column =
            (db * static_cast<double>(c.y - a.y) - dc * static_cast<double>(b.y - a.y)) * scale;
        per_row =
            (dc * static_cast<double>(b.x - a.x) - db * static_cast<double>(c.x - a.x)) * scale;
        at_origin = a.depth + per_column * (0.5 - static_cast<double>(a.x) / sub_pixels) +
                    per_row * (0.5 - static_cast<double>(a.y) / sub_pixels);
        const double size = perspective ? a.depth : std::fabs(a.depth) + 1;
        advantage = static_cast<float>(size * 2e-6);
    }
    double at(std::int64_t column, std::int64_t row) const {
        return at_origin + per_column * static_cast<double>(column) +
               per_row * static_cast<double>(row);
    }
};

template <typename Mode>
void fill_row(Picture& picture, std::int64_t row, std::int64_t first, std::int64_t end,
              const DepthPlane& plane, const Brush& brush) {
    const std::size_t start = picture.at(static_cast<int>(first), static_cast<int>(row));
    const auto depth_first = static_cast<float>(plane.at(first, row));
    const auto step = static_cast<float>(plane.per_column);
    const float* depths = picture.depths.data() + start;
    const int count = static_cast<int>(end - first);
    for (int i = 0; i < count; ++i) {
        const float depth = depth_first + step * static_cast<float>(i);
        if (depth + plane.advantage >= depths[i]) {
            Mode::put(picture, start + static_cast<std::size_t>(i),
                      static_cast<int>(first + row) + i, depth, brush);
        }
    }
}

// The rows between two edges.
template <typename Mode>
void fill_between(Picture& picture, EdgeWalk& left, EdgeWalk& right, std::int64_t row,
                  std::int64_t end, const DepthPlane& plane, const Brush& brush) {
    for (; row < end; ++row) {
        const std::int64_t first = std::max<std::int64_t>(left.column(), 0);
        const std::int64_t last = std::min<std::int64_t>(right.column(), picture.size.width);
        if (first < last) {
            fill_row<Mode>(picture, row, first, last, plane, brush);
        }
        left.next_row();
        right.next_row();
    }
}

std::int64_t doubled_area(const Corner& a, const Corner& b, const Corner& c) {
    return (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
}

// The upper or the lower half of a triangle: between its long edge and a short one.
struct Half {
    const Corner& top; // of the short edge
    const Corner& bottom;
};

template <typename Mode>
void fill_half(Picture& picture, const Corner& top, const Corner& bottom, const Half& half,
               bool long_edge_left, const DepthPlane& plane, const Brush& brush) {
    const std::int64_t row = std::max<std::int64_t>(first_centre(half.top.y), 0);
    const std::int64_t end =
        std::min<std::int64_t>(first_centre(half.bottom.y), picture.size.height);
    if (row >= end) {
        return;
    }
    EdgeWalk long_edge(top, bottom, row);
    EdgeWalk short_edge(half.top, half.bottom, row);
    fill_between<Mode>(picture, long_edge_left ? long_edge : short_edge,
                       long_edge_left ? short_edge : long_edge, row, end, plane, brush);
}

template <typename Mode>
void fill(Picture& picture, std::array<Corner, 3> corners, const Brush& brush, bool perspective) {
    std::sort(corners.begin(), corners.end(),
              [](const Corner& a, const Corner& b) { return a.y < b.y; });
    const auto& [top, middle, bottom] = corners;
    const std::int64_t area = doubled_area(top, middle, bottom);
    if (area == 0 || bottom.y < 0 || top.y >= std::int64_t{sub_pixels} * picture.size.height) {
        return;
    }
    const DepthPlane plane(top, middle, bottom, area, perspective);
    fill_half<Mode>(picture, top, bottom, {top, middle}, area > 0, plane, brush);
    fill_half<Mode>(picture, top, bottom, {middle, bottom}, area > 0, plane, brush);
}

// A convex polygon that a triangle was cut to: at most two corners more per cut.
struct Polygon {
    std::array<Vec3, 12> corners; // view coordinates
    std::size_t count = 0;

    void add(const Vec3& corner) { corners[count++] = corner; }
};

// Keeps the piece where `inside`, a linear function, is not negative.
template <typename Inside>
Polygon cut(const Polygon& polygon, const Inside& inside) {
    Polygon result;
    for (std::size_t i = 0; i < polygon.count; ++i) {
        const Vec3& from = polygon.corners[i];
        const Vec3& to = polygon.corners[(i + 1) % polygon.count];
        const double a = inside(from);
        const double b = inside(to);
        if (a >= 0) {
            result.add(from);
        }
        if ((a >= 0) != (b >= 0)) {
            result.add(from + (to - from) * (a / (a - b)));
        }
    }
    return result;
}

// Cuts off what is behind the viewer, and then what is far outside of the picture.
Polygon visible_part(const Projection& projection, const std::array<Vec3, 3>& triangle) {
    Polygon polygon;
    for (const Vec3& corner : triangle) {
        polygon.add(corner);
    }
    if (projection.distance > 0) {
        const double near = projection.near_plane() + projection.distance * 1e-6;
        polygon = cut(polygon, [&](const Vec3& p) { return p.z - near; });
    }
    // Half the guard: what rounding adds must not lead beyond it.
    const double wide = guard / 2 / projection.pixels_per_metre;
    const double per_depth = projection.distance > 0 ? 1 / projection.distance : 0;
    const auto reach = [&](const Vec3& p) { return wide * (1 + p.z * per_depth); };
    polygon = cut(polygon, [&](const Vec3& p) { return reach(p) - p.x; });
    polygon = cut(polygon, [&](const Vec3& p) { return reach(p) + p.x; });
    polygon = cut(polygon, [&](const Vec3& p) { return reach(p) - p.y; });
    return cut(polygon, [&](const Vec3& p) { return reach(p) + p.y; });
}

bool is_shown(std::int64_t area, Sides sides) {
    return sides == Sides::Both || (sides == Sides::Clockwise ? area > 0 : area < 0);
}

void fill_corners(Picture& picture, const std::array<Corner, 3>& corners, const Face& face,
                  Sides sides, bool perspective) {
    if (!is_shown(doubled_area(corners[0], corners[1], corners[2]), sides)) {
        return;
    }
    const Brush brush{face.colour, face.id};
    if (face.hatched) {
        fill<Hatched>(picture, corners, brush, perspective);
    } else if (face.colour >> 24 == 255) {
        fill<Opaque>(picture, corners, brush, perspective);
    } else {
        fill<Translucent>(picture, corners, brush, perspective);
    }
}

void draw_cut(Picture& picture, const Projection& projection, const std::array<Vec3, 3>& triangle,
              const Face& face, Sides sides) {
    for (const Vec3& corner : triangle) {
        if (!(std::fabs(corner.x) + std::fabs(corner.y) + std::fabs(corner.z) < farthest)) {
            return;
        }
    }
    const Polygon polygon = visible_part(projection, triangle);
    for (std::size_t i = 2; i < polygon.count; ++i) {
        fill_corners(picture,
                     {corner_of(projection.seen(polygon.corners[0])),
                      corner_of(projection.seen(polygon.corners[i - 1])),
                      corner_of(projection.seen(polygon.corners[i]))},
                     face, sides, projection.distance > 0);
    }
}

void draw_face(Picture& picture, const Projection& projection, const ViewedPoints& points,
               const Face& face, Sides sides) {
    const auto& [a, b, c] = face.corners;
    if (points.simple[a] != 0 && points.simple[b] != 0 && points.simple[c] != 0) {
        fill_corners(
            picture,
            {corner_of(points.seen[a]), corner_of(points.seen[b]), corner_of(points.seen[c])}, face,
            sides, projection.distance > 0);
    } else {
        draw_cut(picture, projection, {points.viewed[a], points.viewed[b], points.viewed[c]}, face,
                 sides);
    }
}

bool is_in_range(const Face& face, std::size_t count) {
    return face.corners[0] < count && face.corners[1] < count && face.corners[2] < count;
}

bool is_simple(const Projection& projection, const Vec3& viewed, const Seen& seen) {
    return projection.in_front(viewed) && std::fabs(seen.x) < guard && std::fabs(seen.y) < guard;
}

} // namespace

void view_points(ViewedPoints& result, const Projection& projection, std::span<const Vec3> points) {
    result.viewed.resize(points.size());
    result.seen.resize(points.size());
    result.simple.resize(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Vec3 viewed = projection.view(points[i]);
        result.viewed[i] = viewed;
        result.seen[i] = projection.seen(viewed);
        // Comparisons with a number that is not finite are false.
        result.simple[i] = is_simple(projection, viewed, result.seen[i]) ? 1 : 0;
    }
}

void draw_faces(Picture& picture, const Projection& projection, const ViewedPoints& points,
                std::span<const Face> faces, Sides sides) {
    std::vector<std::pair<double, std::size_t>> translucent; // distance, index
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const Face& face = faces[i];
        if (!is_in_range(face, points.viewed.size())) {
            continue;
        }
        if (face.colour >> 24 == 255) {
            draw_face(picture, projection, points, face, sides);
        } else {
            const auto& [a, b, c] = face.corners;
            translucent.emplace_back(points.viewed[a].z + points.viewed[b].z + points.viewed[c].z,
                                     i);
        }
    }
    std::stable_sort(translucent.begin(), translucent.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    for (const auto& [distance, i] : translucent) {
        draw_face(picture, projection, points, faces[i], sides);
    }
}

unsigned light_on(const Vec3& a, const Vec3& b, const Vec3& c) {
    // From above, rather from the south-east: north walls and west walls differ then too.
    constexpr Vec3 to_light{0.36, 0.8, -0.48};
    const double facing = std::fabs(dot(unit(cross(b - a, c - a)), to_light));
    if (!std::isfinite(facing)) {
        return least_light;
    }
    return least_light + static_cast<unsigned>(facing * (256 - least_light));
}

} // namespace morvane::raster
