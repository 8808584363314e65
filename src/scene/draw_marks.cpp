// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/draw_marks.h"

#include "base/guid128.h"
#include "base/numbers.h"
#include "raster/strokes.h"
#include "raster/triangles.h"
#include "raster/vector.h"

#include <cmath>

namespace morvane::scene {

namespace {

constexpr double worth_a_line = 0.1;      // metres between an object and its triangle
constexpr double unknown_size = 10;       // metres, of an object that no library at hand has
constexpr std::size_t max_faces = 400000; // of all objects of libraries in a picture
constexpr int round_sides = 10;

using raster::Stroke;

Colour colour_in(Colour colour, const MarkStyle& style, const Mark& mark) {
    if (style.ghost) {
        colour = raster::mixed(colour, style.theme.accent, 150);
    }
    return mark.reached ? colour : raster::mixed(colour, style.theme.background, 120);
}

Colour with_alpha(Colour colour, unsigned alpha) {
    return (colour & 0x00FFFFFF) | alpha << 24;
}

struct Skin {
    Colour colour;
    std::uint32_t id;
    bool hatched;
};

Skin skin_of(const Mark& mark, Colour colour, std::uint32_t id, const MarkStyle& style) {
    colour = colour_in(colour, style, mark);
    return {style.ghost ? with_alpha(colour, 150) : colour, id, !mark.reached};
}

void add_triangle(Solids& solids, const Vec3& a, const Vec3& b, const Vec3& c, const Skin& skin) {
    const auto first = static_cast<std::uint32_t>(solids.points.size());
    solids.points.insert(solids.points.end(), {a, b, c});
    solids.faces.push_back({{first, first + 1, first + 2},
                            raster::darkened(skin.colour, raster::light_on(a, b, c)),
                            skin.id,
                            skin.hatched});
}

// Two directions across another, all at right angles.
std::array<Vec3, 2> across(const Vec3& along) {
    const Vec3 helper = std::fabs(along.y) < 0.9 ? Vec3{0, 1, 0} : Vec3{1, 0, 0};
    const Vec3 first = unit(cross(along, helper));
    return {first, unit(cross(along, first))};
}

// The coat of a cone that is cut off: round from one place to another, open at both ends.
void add_cone(Solids& solids, const Vec3& from, double from_radius, const Vec3& to,
              double to_radius, const Skin& skin) {
    const auto [u, v] = across(unit(to - from));
    const auto rim = [&, u = u, v = v](const Vec3& centre, double radius, int i) {
        const raster::Turn turn = raster::turn_of(360.0 * i / round_sides);
        return centre + u * (turn.cosine * radius) + v * (turn.sine * radius);
    };
    for (int i = 0; i < round_sides; ++i) {
        const Vec3 a = rim(from, from_radius, i);
        const Vec3 b = rim(from, from_radius, i + 1);
        const Vec3 c = rim(to, to_radius, i + 1);
        const Vec3 d = rim(to, to_radius, i);
        add_triangle(solids, a, b, c, skin);
        add_triangle(solids, a, c, d, skin);
    }
}

constexpr std::array<std::array<unsigned, 4>, 6> box_sides{
    {{0, 1, 3, 2}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 3, 7, 5}}};

void add_box(Solids& solids, const Box& box, const Affine& frame, const Skin& skin) {
    const auto corners = box.corners();
    for (const auto& side : box_sides) {
        std::array<Vec3, 4> place;
        for (std::size_t i = 0; i < 4; ++i) {
            place[i] = frame.point(corners[side[i]]);
        }
        add_triangle(solids, place[0], place[1], place[2], skin);
        add_triangle(solids, place[0], place[2], place[3], skin);
    }
}

void add_octahedron(Solids& solids, const Vec3& centre, double size, const Skin& skin) {
    const std::array<Vec3, 4> round{Vec3{size, 0, 0}, Vec3{0, 0, size}, Vec3{-size, 0, 0},
                                    Vec3{0, 0, -size}};
    for (std::size_t i = 0; i < 4; ++i) {
        for (const double tip : {-1.6 * size, 1.6 * size}) {
            add_triangle(solids, centre + round[i], centre + round[(i + 1) % 4],
                         centre + Vec3{0, tip, 0}, skin);
        }
    }
}

const Shape* shape_of(const Mark& mark, const MarkStyle& style) {
    if (style.objects == nullptr) {
        return nullptr;
    }
    const auto found = style.objects->find(mark.guid);
    return found == style.objects->end() ? nullptr : &found->second;
}

// Around the place of an object on the ground; in the object's own units.
Box box_of(double size) {
    Box box;
    box.add({-size / 2, 0, -size / 2});
    box.add({size / 2, size / 2, size / 2});
    return box;
}

Box object_box(const Shape* shape) {
    if (shape == nullptr) {
        return box_of(unknown_size);
    }
    if (!shape->box.empty()) {
        return shape->box;
    }
    return box_of(shape->size > 0 ? shape->size / shape->metres_per_unit : unknown_size);
}

void add_shape(Solids& solids, const Shape& shape, const Mark& mark, std::uint32_t id,
               const MarkStyle& style) {
    std::vector<Vec3> places;
    places.reserve(shape.points.size());
    for (const Vec3& point : shape.points) {
        places.push_back(mark.frame.point(point));
    }
    for (const ShapeFace& face : shape.faces) {
        const auto& [a, b, c] = face.corners;
        add_triangle(solids, places[a], places[b], places[c],
                     skin_of(mark, face.colour, id, style));
    }
}

void add_library_call(Solids& solids, const Mark& mark, std::uint32_t id, const MarkStyle& style) {
    const Shape* shape = shape_of(mark, style);
    if (shape != nullptr && !shape->faces.empty() &&
        solids.faces.size() + shape->faces.size() <= max_faces) {
        add_shape(solids, *shape, mark, id, style);
        return;
    }
    const Colour colour = shape == nullptr ? style.theme.alarm : mark.colour;
    Skin skin = skin_of(mark, colour, id, style);
    skin.colour = with_alpha(skin.colour, 90);
    add_box(solids, object_box(shape), mark.frame, skin);
}

// A sock hangs to the east, as no wind is known.
void add_windsock(Solids& solids, const Mark& mark, std::uint32_t id, const MarkStyle& style) {
    const Vec3 up = unit(mark.frame.direction({0, 1, 0}));
    const Vec3 top = mark.place + up * mark.height;
    const Vec3 tip = top + unit(Vec3{1, -0.25, 0}) * mark.length;
    add_cone(solids, top, mark.length * 0.14, tip, mark.length * 0.08,
             skin_of(mark, mark.sock_colour, id, style));
}

void draw_windsock(raster::Picture& picture, const Mark& mark, std::uint32_t id,
                   const MarkStyle& style) {
    const Vec3 up = unit(mark.frame.direction({0, 1, 0}));
    const Vec3 top = mark.place + up * mark.height;
    const Colour colour = colour_in(mark.colour, style, mark);
    draw_line(picture, style.projection, mark.place, top,
              {.colour = colour, .id = id, .width = 2 * style.scale});
    draw_disc(picture, style.projection, mark.place, 2 * style.scale, {.colour = colour, .id = id});
    if (mark.lit) {
        draw_disc(picture, style.projection, top, 3 * style.scale,
                  {.colour = 0xFFFFE680, .id = id});
    }
}

void draw_light(raster::Picture& picture, const Mark& mark, std::uint32_t id,
                const MarkStyle& style) {
    const Colour colour = colour_in(mark.colour, style, mark);
    const Colour rim = style.ghost ? style.theme.accent : raster::darkened(colour, 110);
    if (style.night) {
        draw_disc(picture, style.projection, mark.place, 11 * style.scale,
                  {.colour = with_alpha(colour, 60), .id = id});
    }
    draw_line(picture, style.projection, mark.place, mark.place + mark.direction * style.size,
              {.colour = rim, .id = id, .width = style.scale});
    draw_disc(picture, style.projection, mark.place, 4 * style.scale, {.colour = rim, .id = id});
    if (mark.reached) {
        draw_disc(picture, style.projection, mark.place, 3 * style.scale,
                  {.colour = colour, .id = id});
    }
}

// From the middle of the box to a head before it.
void draw_arrow(raster::Picture& picture, const Mark& mark, std::uint32_t id,
                const MarkStyle& style) {
    const Box box = object_box(shape_of(mark, style));
    const Vec3 from = mark.frame.point({0, 0, 0});
    const double reach = std::fmax(box.high.z, box.size().x / 2) * 1.5;
    const Vec3 to = mark.frame.point({0, 0, reach});
    const Vec3 side = mark.frame.direction({reach * 0.15, 0, 0});
    const Vec3 back = from + (to - from) * 0.75;
    Stroke stroke{.colour = colour_in(mark.colour, style, mark), .id = id, .width = style.scale};
    // How the simulator turns a placed object in a turned model is not known.
    stroke.dashed = mark.geographic && style.reference_heading != 0;
    draw_line(picture, style.projection, from, to, stroke);
    stroke.dashed = false;
    draw_line(picture, style.projection, to, back + side, stroke);
    draw_line(picture, style.projection, to, back - side, stroke);
}

void draw_edges(raster::Picture& picture, const Mark& mark, std::uint32_t id,
                const MarkStyle& style) {
    const auto corners = object_box(nullptr).corners();
    for (unsigned i = 0; i < 8; ++i) {
        for (const unsigned bit : {1U, 2U, 4U}) {
            if ((i & bit) == 0) {
                draw_line(picture, style.projection, mark.frame.point(corners[i]),
                          mark.frame.point(corners[i | bit]),
                          {.colour = style.theme.alarm, .id = id, .width = style.scale});
            }
        }
    }
}

// What is never reached is crossed out.
void draw_cross(raster::Picture& picture, const Mark& mark, std::uint32_t id,
                const MarkStyle& style) {
    const double half = style.size * 0.5;
    const Stroke stroke{.colour = style.theme.alarm, .id = id, .width = style.scale};
    const Vec3& r = style.projection.axes.right;
    const Vec3& u = style.projection.axes.up;
    draw_line(picture, style.projection, mark.place - (r + u) * half, mark.place + (r + u) * half,
              stroke);
    draw_line(picture, style.projection, mark.place - (r - u) * half, mark.place + (r - u) * half,
              stroke);
}

void draw_source(raster::Picture& picture, const Mark& mark, std::uint32_t id,
                 const MarkStyle& style) {
    if (!mark.source || mark.source->distance <= worth_a_line) {
        return;
    }
    draw_line(picture, style.projection, mark.source->place, mark.place,
              {.colour = style.theme.alarm, .id = id, .width = style.scale});
    draw_disc(picture, style.projection, mark.source->place, 2 * style.scale,
              {.colour = style.theme.alarm, .id = id});
}

std::string title_of(const Mark& mark, const MarkStyle& style) {
    switch (mark.kind) {
    case MarkKind::Effect:
        return mark.name;
    case MarkKind::LibraryCall: {
        const Shape* shape = shape_of(mark, style);
        return shape != nullptr ? shape->name : "? " + guid_word(mark.guid[0]);
    }
    default:
        return {};
    }
}

} // namespace

void add_solids(Solids& solids, const Mark& mark, std::uint32_t id, const MarkStyle& style) {
    switch (mark.kind) {
    case MarkKind::Light:
        if (mark.cone) {
            Skin skin = skin_of(mark, mark.colour, id, style);
            skin.colour = with_alpha(skin.colour, 110);
            add_cone(solids, mark.place, 0, mark.place + mark.direction * (style.size * 2.5),
                     style.size * 0.7, skin);
        }
        break;
    case MarkKind::Effect:
        add_octahedron(solids, mark.place, style.size * 0.4, skin_of(mark, mark.colour, id, style));
        break;
    case MarkKind::Windsock:
        add_windsock(solids, mark, id, style);
        break;
    case MarkKind::LibraryCall:
        add_library_call(solids, mark, id, style);
        break;
    }
}

void draw_mark(raster::Picture& picture, const Mark& mark, std::uint32_t id,
               const MarkStyle& style) {
    switch (mark.kind) {
    case MarkKind::Light:
        draw_light(picture, mark, id, style);
        break;
    case MarkKind::Windsock:
        draw_windsock(picture, mark, id, style);
        break;
    case MarkKind::LibraryCall:
        if (shape_of(mark, style) == nullptr) {
            draw_edges(picture, mark, id, style);
        }
        draw_arrow(picture, mark, id, style);
        break;
    case MarkKind::Effect:
        break;
    }
    if (!mark.reached) {
        draw_cross(picture, mark, id, style);
    }
    draw_source(picture, mark, id, style);
}

void add_mark_labels(std::vector<Label>& labels, const Mark& mark, const MarkStyle& style) {
    std::string text = title_of(mark, style);
    if (mark.source && mark.source->distance > worth_a_line) {
        text += (text.empty() ? "" : ", ") + format_decimal(mark.source->distance, 1, 1) + " m off";
    }
    const auto seen = project(style.projection, mark.place);
    if (!text.empty() && seen && std::fabs(seen->x) < 1e6 && std::fabs(seen->y) < 1e6) {
        labels.push_back({static_cast<int>(seen->x) + 9 * style.scale,
                          static_cast<int>(seen->y) - 8 * style.scale, text,
                          mark.reached ? style.theme.ink : style.theme.alarm});
    }
}

} // namespace morvane::scene
