// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/draw_scene.h"

#include "raster/strokes.h"
#include "scene/draw_marks.h"
#include "scene/overlay.h"

#include <algorithm>
#include <cmath>

namespace morvane::scene {

namespace {

using raster::Face;
using raster::Projection;
using raster::Stroke;

// Of 256: what is left of a colour that is not selected. Dark colours need more before a dark
// background.
constexpr unsigned dimmed = 90;
constexpr unsigned dimmed_before_dark = 150;
constexpr unsigned night_light = 80; // of 256
constexpr double mark_part = 0.028;  // of the picture's height: a mark without a size of its own
constexpr Colour plain = 0xFFB4B4B4; // of a block without a material

bool is_in(const std::vector<int>& numbers, int number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

// The colour of a block's triangles before light and shade.
Colour block_colour(const Scene& scene, const SceneBlock& block, const DrawOptions& options,
                    const Theme& theme) {
    Colour colour = plain;
    if (block.look >= 0) {
        const SceneMaterial& material = scene.materials[static_cast<std::size_t>(block.look)];
        const bool missing = block.texture >= 0 &&
                             scene.textures[static_cast<std::size_t>(block.texture)].path.empty();
        colour = missing ? material.ambient : material.diffuse;
    }
    if (options.night) {
        colour = raster::darkened(colour, night_light);
    }
    if (!options.selected.empty() && !is_in(options.selected, block.material)) {
        const Colour alpha = colour & 0xFF000000;
        const unsigned part = options.dark ? dimmed_before_dark : dimmed;
        colour = (raster::mixed(colour, theme.background, part) & 0x00FFFFFF) | alpha;
    }
    return colour;
}

bool is_refused(const DrawOptions& options, const SceneTriangle& triangle) {
    return options.ghost != nullptr &&
           std::binary_search(options.ghost->refused.begin(), options.ghost->refused.end(),
                              triangle.line);
}

void make_faces(std::vector<Face>& faces, const Scene& scene, const DrawOptions& options,
                const Theme& theme) {
    std::vector<Colour> colours;
    colours.reserve(scene.blocks.size());
    for (const SceneBlock& block : scene.blocks) {
        colours.push_back(block_colour(scene, block, options, theme));
    }
    faces.resize(scene.triangles.size());
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const SceneTriangle& triangle = scene.triangles[i];
        const SceneBlock& block = scene.blocks[triangle.block];
        const Colour colour = is_refused(options, triangle) ? theme.alarm : colours[triangle.block];
        faces[i] = {triangle.corners, raster::darkened(colour, triangle.light),
                    static_cast<std::uint32_t>(i + 1), !block.reached};
    }
}

void draw_outlines(raster::Picture& picture, const Projection& projection, const Scene& scene,
                   const DrawOptions& options, const Theme& theme) {
    const Stroke stroke{.colour = theme.accent, .width = options.scale};
    for (const SceneTriangle& triangle : scene.triangles) {
        if (scene.blocks[triangle.block].material != *options.hovered) {
            continue;
        }
        const auto& c = triangle.corners;
        for (std::size_t i = 0; i < 3; ++i) {
            draw_line(picture, projection, scene.points[c[i]], scene.points[c[(i + 1) % 3]],
                      stroke);
        }
    }
}

void draw_normals(raster::Picture& picture, const Projection& projection, const Scene& scene,
                  double size, const DrawOptions& options, const Theme& theme) {
    const Stroke stroke{.colour = theme.accent, .width = options.scale};
    for (const SceneTriangle& triangle : scene.triangles) {
        for (const std::uint32_t corner : triangle.corners) {
            draw_line(picture, projection, scene.points[corner],
                      scene.points[corner] + scene.normals[corner] * size, stroke);
        }
    }
}

void draw_model(raster::Picture& picture, raster::ViewedPoints& viewed, std::vector<Face>& faces,
                const Projection& projection, const Scene& scene, const DrawOptions& options,
                const Theme& theme) {
    make_faces(faces, scene, options, theme);
    view_points(viewed, projection, scene.points);
    draw_faces(picture, projection, viewed, faces,
               options.back_sides ? raster::Sides::Both : raster::Sides::Clockwise);
    for (const auto& [from, to] : scene.lines) {
        draw_line(picture, projection, scene.points[from], scene.points[to],
                  {.colour = theme.ink, .width = options.scale});
    }
}

void draw_marks(raster::Picture& picture, const std::vector<Mark>& marks, std::uint32_t bits,
                const MarkStyle& style) {
    Solids solids;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        add_solids(solids, marks[i], bits | static_cast<std::uint32_t>(i), style);
    }
    raster::ViewedPoints viewed;
    view_points(viewed, style.projection, solids.points);
    draw_faces(picture, style.projection, viewed, solids.faces);
    for (std::size_t i = 0; i < marks.size(); ++i) {
        draw_mark(picture, marks[i], bits | static_cast<std::uint32_t>(i), style);
    }
}

// Leaves out labels that would cover one before them, or are not in the picture.
std::vector<Label> without_overlaps(const std::vector<Label>& labels,
                                    const raster::PictureSize& size, int scale) {
    struct Place {
        int left, right, middle;
    };
    std::vector<Place> taken;
    std::vector<Label> result;
    const int height = raster::letter_height * scale;
    for (const Label& label : labels) {
        if (taken.size() == 300) {
            break;
        }
        const Place place{label.x, label.x + raster::text_width(label.text, scale), label.y};
        const bool seen =
            place.right > 0 && place.left < size.width && label.y > 0 && label.y < size.height;
        const bool covers = std::any_of(taken.begin(), taken.end(), [&](const Place& other) {
            return place.left < other.right && other.left < place.right &&
                   std::abs(place.middle - other.middle) < height;
        });
        if (seen && !covers) {
            taken.push_back(place);
            result.push_back(label);
        }
    }
    return result;
}

void add_corners(std::vector<Vec3>& points, const Scene& scene, const SceneTriangle& triangle) {
    for (const std::uint32_t corner : triangle.corners) {
        points.push_back(scene.points[corner]);
    }
}

void add_ends(std::vector<Vec3>& points, const Mark& mark) {
    points.push_back(mark.place);
    points.push_back(mark.place + Vec3{0, mark.height, 0});
}

} // namespace

Theme theme_of(bool dark, bool night) {
    if (night) {
        return {0xFF0B1020, 0xFF1C2540, 0xFFC8D0E0, 0xFF4FC3F7, 0xFFFF5252};
    }
    return dark ? Theme{0xFF2A2E33, 0xFF3D434A, 0xFFD6DADF, 0xFF4FC3F7, 0xFFFF5252}
                : Theme{0xFFEEF1F4, 0xFFCFD6DC, 0xFF30363C, 0xFF0277BD, 0xFFD32F2F};
}

std::vector<Label> Painter::draw(raster::Picture& picture, const Scene& scene,
                                 const raster::Camera& camera, const raster::PictureSize& size,
                                 const DrawOptions& options) {
    const Theme theme = theme_of(options.dark, options.night);
    clear(picture, size, theme.background);
    const Projection projection = projection_of(camera, picture.size);
    if (options.grid) {
        draw_grid(picture, projection, scene.box, theme, options.scale);
    }
    if (options.model) {
        draw_model(picture, viewed_, faces_, projection, scene, options, theme);
    }
    const double mark_size = camera.height * mark_part;
    std::vector<Label> labels;
    MarkStyle style{projection,    theme,         options.objects, mark_size,
                    options.scale, options.night, false,           scene.reference.heading};
    if (options.compass) {
        draw_compass(picture, projection, theme, options.scale, labels);
    }
    if (options.normals) {
        draw_normals(picture, projection, scene, mark_size, options, theme);
    }
    if (options.marks) {
        draw_marks(picture, scene.marks, mark_bit, style);
    }
    for (std::size_t i = 0; options.marks && options.labels && i < scene.marks.size(); ++i) {
        add_mark_labels(labels, scene.marks[i], style);
    }
    if (options.marks && options.ghost != nullptr) {
        style.ghost = true;
        draw_marks(picture, options.ghost->marks, mark_bit | ghost_bit, style);
        for (const Mark& mark : options.ghost->marks) {
            add_mark_labels(labels, mark, style);
        }
    }
    if (options.hovered) {
        draw_outlines(picture, projection, scene, options, theme);
    }
    return without_overlaps(labels, picture.size, options.scale);
}

void draw_labels(raster::Picture& picture, const std::vector<Label>& labels, int scale) {
    for (const Label& label : labels) {
        // A shade behind, of the other brightness, so that it can be read on anything.
        const bool dark_letters = (label.colour >> 8 & 0xFF) < 128;
        raster::fill_rectangle(picture, label.x - 2 * scale, label.y - 6 * scale,
                               raster::text_width(label.text, scale) + 3 * scale, 11 * scale,
                               dark_letters ? 0xA0FFFFFF : 0xA0000000);
        raster::draw_text(picture, label.x, label.y - 4 * scale, label.text, label.colour, scale);
    }
}

void fit(raster::Camera& camera, const raster::PictureSize& size, const Scene& scene) {
    std::vector<Vec3> points;
    for (const SceneTriangle& triangle : scene.triangles) {
        add_corners(points, scene, triangle);
    }
    for (const Mark& mark : scene.marks) {
        add_ends(points, mark);
    }
    raster::fit(camera, size, points);
}

void fit(raster::Camera& camera, const raster::PictureSize& size, const Scene& scene,
         const Ghost& ghost, const std::vector<int>& materials) {
    std::vector<Vec3> points;
    for (const SceneTriangle& triangle : scene.triangles) {
        if (is_in(materials, scene.blocks[triangle.block].material)) {
            add_corners(points, scene, triangle);
        }
    }
    for (const Mark& mark : scene.marks) {
        if (mark.source && is_in(materials, mark.source->material)) {
            add_ends(points, mark);
        }
    }
    for (const Mark& mark : ghost.marks) {
        add_ends(points, mark);
    }
    raster::fit(camera, size, points);
}

raster::Picture render_picture(const Scene& scene, raster::Camera camera,
                               const raster::PictureSize& size, DrawOptions options) {
    // Drawn twice as large and then halved, which smooths the edges. The letters are sharp as they
    // are.
    const raster::PictureSize doubled{2 * size.width, 2 * size.height};
    options.scale = 2;
    fit(camera, doubled, scene);
    raster::Picture large;
    Painter painter;
    std::vector<Label> labels = painter.draw(large, scene, camera, doubled, options);
    raster::Picture picture = halved(large);
    for (Label& label : labels) {
        label.x /= 2;
        label.y /= 2;
    }
    draw_labels(picture, labels, 1);
    return picture;
}

} // namespace morvane::scene
