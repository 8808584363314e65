// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/draw_shape.h"

#include "base/numbers.h"
#include "raster/strokes.h"
#include "raster/triangles.h"
#include "scene/overlay.h"

#include <algorithm>
#include <cmath>

namespace morvane::scene {

namespace {

constexpr double smallest_object = 0.1; // metres, of a box that says less
constexpr raster::PictureSize usual_cell{160, 150};
constexpr int caption_height = 26;
constexpr int max_rows = 54;

// In metres; the box of the size field when nothing is drawn.
Box box_in_metres(const Shape& shape) {
    Box box;
    if (shape.box.empty()) {
        const double size = std::fmax(shape.size, smallest_object);
        box.add({-size / 2, 0, -size / 2});
        box.add({size / 2, size / 2, size / 2});
    } else {
        box.add(shape.box.low * shape.metres_per_unit);
        box.add(shape.box.high * shape.metres_per_unit);
    }
    return box;
}

std::vector<Vec3> points_in_metres(const Shape& shape) {
    std::vector<Vec3> points;
    points.reserve(shape.points.size());
    for (const Vec3& point : shape.points) {
        points.push_back(point * shape.metres_per_unit);
    }
    return points;
}

void draw_solid(raster::Picture& picture, const Shape& shape, const raster::Projection& projection,
                const Theme& theme, int scale) {
    const std::vector<Vec3> points = points_in_metres(shape);
    std::vector<raster::Face> faces;
    faces.reserve(shape.faces.size());
    for (const ShapeFace& face : shape.faces) {
        const auto& [a, b, c] = face.corners;
        const unsigned light = raster::light_on(points[a], points[b], points[c]);
        faces.push_back({face.corners, raster::darkened(face.colour, light)});
    }
    raster::ViewedPoints viewed;
    view_points(viewed, projection, points);
    draw_faces(picture, projection, viewed, faces);
    for (const auto& [from, to] : shape.lines) {
        draw_line(picture, projection, points[from], points[to],
                  {.colour = theme.ink, .width = scale});
    }
}

void draw_box(raster::Picture& picture, const Box& box, const raster::Projection& projection,
              const Theme& theme, int scale) {
    const auto corners = box.corners();
    for (unsigned i = 0; i < corners.size(); ++i) {
        for (const unsigned bit : {1U, 2U, 4U}) {
            if ((i & bit) == 0) {
                draw_line(picture, projection, corners[i], corners[i | bit],
                          {.colour = theme.alarm, .width = scale, .dashed = true});
            }
        }
    }
}

void copy_into(raster::Picture& picture, const raster::Picture& part, int x, int y) {
    for (int row = 0; row < part.size.height; ++row) {
        for (int column = 0; column < part.size.width; ++column) {
            if (picture.inside(x + column, y + row)) {
                picture.pixels[picture.at(x + column, y + row)] = part.pixels[part.at(column, row)];
            }
        }
    }
}

// As much of a text as fits.
std::string shortened(std::string text, int width) {
    while (!text.empty() && raster::text_width(text) > width) {
        text.pop_back();
    }
    return text;
}

struct Layout {
    int columns = 1;
    raster::PictureSize cell = usual_cell;
    raster::PictureSize size;
};

int rows_for(std::size_t count, int columns) {
    return (static_cast<int>(count) + columns - 1) / columns;
}

// As many columns as make the cells largest.
Layout layout_in(std::size_t count, const raster::PictureSize& size) {
    Layout best;
    best.size = size;
    int largest = 0;
    for (int columns = 1; columns <= static_cast<int>(count) && columns <= size.width; ++columns) {
        const raster::PictureSize cell{size.width / columns,
                                       size.height / rows_for(count, columns)};
        const int side = std::min(cell.width, cell.height - caption_height / 2);
        if (side > largest) {
            largest = side;
            best.columns = columns;
            best.cell = cell;
        }
    }
    return best;
}

Layout layout_of(std::size_t count, const raster::PictureSize& size) {
    if (size.width > 0) {
        return layout_in(std::max<std::size_t>(count, 1), size);
    }
    Layout layout;
    layout.columns = std::max(std::min(5, static_cast<int>(count)), rows_for(count, max_rows));
    layout.columns = std::max(layout.columns, 1);
    layout.size = {layout.columns * layout.cell.width,
                   std::max(rows_for(count, layout.columns), 1) * layout.cell.height};
    return layout;
}

} // namespace

void draw_shape(raster::Picture& picture, const Shape& shape, const raster::Camera& camera,
                const raster::PictureSize& size, const ShapeOptions& options) {
    const Theme theme = theme_of(options.dark, false);
    clear(picture, size, theme.background);
    const raster::Projection projection = projection_of(camera, picture.size);
    const Box box = box_in_metres(shape);
    if (options.grid) {
        draw_grid(picture, projection, box, theme, options.scale, 1);
    }
    draw_solid(picture, shape, projection, theme, options.scale);
    if (shape.box.empty()) {
        draw_box(picture, box, projection, theme, options.scale);
    }
}

void fit(raster::Camera& camera, const raster::PictureSize& size, const Shape& shape) {
    std::vector<Vec3> points = points_in_metres(shape);
    if (shape.box.empty()) {
        const auto corners = box_in_metres(shape).corners();
        points.assign(corners.begin(), corners.end());
    }
    raster::fit(camera, size, points);
}

void fit_all_round(raster::Camera& camera, const raster::PictureSize& size, const Shape& shape) {
    constexpr int headings = 12;
    camera.target = box_in_metres(shape).centre();
    double height = 0;
    for (int i = 0; i < headings; ++i) {
        raster::Camera turned = camera;
        turned.heading = 360.0 * i / headings;
        fit(turned, size, shape);
        // Objects that are not round their middle need more room than when each is centred.
        height = std::fmax(height, turned.height + 2 * length(turned.target - camera.target));
    }
    camera.height = height;
}

raster::Picture thumbnail(const Shape& shape, const raster::PictureSize& size,
                          const ShapeOptions& options, raster::Camera camera) {
    const raster::PictureSize doubled{2 * size.width, 2 * size.height};
    ShapeOptions larger = options;
    larger.scale = 2 * options.scale;
    fit(camera, doubled, shape);
    raster::Picture picture;
    draw_shape(picture, shape, camera, doubled, larger);
    return halved(picture);
}

std::string measures_text(const Shape& shape) {
    if (shape.box.empty()) {
        return shape.trouble.empty() ? "draws nothing" : shape.trouble;
    }
    const Vec3 size = box_in_metres(shape).size();
    const auto metres = [](double length) { return format_decimal(length, 1, 1) + " m"; };
    return metres(size.y) + " high, " + metres(std::fmax(size.x, size.z)) + " wide";
}

raster::Picture sheet(const std::vector<Shape>& shapes, const raster::PictureSize& size,
                      const raster::Camera& camera, const ShapeOptions& options) {
    const Theme theme = theme_of(options.dark, false);
    const Layout layout = layout_of(shapes.size(), size);
    raster::Picture picture;
    clear(picture, layout.size, theme.background);
    const bool captions = layout.cell.width >= 64 && layout.cell.height >= 2 * caption_height;
    const raster::PictureSize image{
        std::max(layout.cell.width - 4, 1),
        std::max(layout.cell.height - (captions ? caption_height : 2), 1)};
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        const int x = static_cast<int>(i) % layout.columns * layout.cell.width + 2;
        const int y = static_cast<int>(i) / layout.columns * layout.cell.height;
        copy_into(picture, thumbnail(shapes[i], image, options, camera), x, y);
        if (captions) {
            draw_text(picture, x + 2, y + image.height + 2,
                      shortened(shapes[i].name, image.width - 4), theme.ink);
            draw_text(picture, x + 2, y + image.height + 13,
                      shortened(measures_text(shapes[i]), image.width - 4),
                      shapes[i].trouble.empty() ? theme.ink : theme.alarm);
        }
    }
    return picture;
}

} // namespace morvane::scene
