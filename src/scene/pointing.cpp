// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/pointing.h"

#include "base/numbers.h"
#include "base/paths.h"
#include "base/text.h"

#include <cmath>

namespace morvane::scene {

namespace {

constexpr double worth_saying = 0.1; // metres between an object and its triangle

std::string metres(double length, const char* positive, const char* negative) {
    return format_decimal(std::fabs(length), 1, 1) + " m " + (length < 0 ? negative : positive);
}

std::string degrees(double angle, const char* positive, const char* negative) {
    return format_decimal(std::fabs(angle), 5, 5) + " " + (angle < 0 ? negative : positive);
}

std::string name_of(const Mark& mark) {
    switch (mark.kind) {
    case MarkKind::Light:
        return "light " + mark.name;
    case MarkKind::Effect:
        return "effect " + mark.name;
    case MarkKind::Windsock:
        return "windsock";
    case MarkKind::LibraryCall:
        break;
    }
    return "object " + mark.name;
}

Pointed pointed_mark(const Scene& scene, const Mark& mark) {
    const std::uint32_t line = mark.source ? mark.source->line : mark.line;
    return {mark.source ? mark.source->material : -1, line, mark_text(scene, mark)};
}

} // namespace

std::optional<Pointed> pointed_at(const Scene& scene, const Ghost& ghost, std::uint32_t id) {
    if (const auto triangle = picked_triangle(scene, id)) {
        return Pointed{triangle->material, triangle->line, picked_text(scene, *triangle)};
    }
    if ((id & mark_bit) == 0) {
        return std::nullopt;
    }
    const std::size_t number = id & ~(mark_bit | ghost_bit);
    const std::vector<Mark>& marks = (id & ghost_bit) != 0 ? ghost.marks : scene.marks;
    return number < marks.size() ? std::optional(pointed_mark(scene, marks[number])) : std::nullopt;
}

std::string mark_text(const Scene& scene, const Mark& mark) {
    const std::string file = file_name_part(scene.model_path);
    if (!mark.source) {
        return name_of(mark) + (mark.line > 0 ? " at " + file + ":" + to_text(mark.line) : "");
    }
    std::string text = name_of(mark) + " of " + file + ":" + to_text(mark.source->line) +
                       ", MATERIAL " + std::to_string(mark.source->material) + ", triangle " +
                       to_text(mark.source->index + 1);
    if (mark.source->distance > worth_saying) {
        text += ", " + format_decimal(mark.source->distance, 1, 1) + " m from it";
    }
    return text;
}

std::string place_text(const Scene& scene, const Vec3& place) {
    std::string text = metres(place.x, "east", "west") + ", " + metres(place.z, "north", "south");
    if (const auto earth = degrees_at(scene.reference, place)) {
        text +=
            "; " + degrees(earth->latitude, "N", "S") + ", " + degrees(earth->longitude, "E", "W");
    }
    return text;
}

std::string plan_text(const Scene& scene, const raster::Camera& camera,
                      const raster::PictureSize& size, double x, double y) {
    if (camera.view != raster::View::Plan) {
        return {};
    }
    const auto place = ground_at(camera, size, x, y);
    return place ? place_text(scene, *place) : std::string();
}

std::size_t row_of_material(const OpenSet& set, int material) {
    for (std::size_t row = 1; row <= set.translations.size(); ++row) {
        if (static_cast<int>(set.translation(row).number) == material) {
            return row;
        }
    }
    return 0;
}

} // namespace morvane::scene
