// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/scene.h"

#include "base/numbers.h"
#include "base/paths.h"
#include "base/text.h"

#include <algorithm>

namespace morvane::scene {

std::optional<PickedTriangle> picked_triangle(const Scene& scene, std::uint32_t id) {
    if (id == raster::no_id || id > scene.triangles.size()) {
        return std::nullopt;
    }
    const SceneTriangle& triangle = scene.triangles[id - 1];
    const SceneBlock& block = scene.blocks[triangle.block];
    return PickedTriangle{id - 1,          block.material,
                          triangle.line,   triangle.index,
                          block.triangles, scene.vertices[triangle.first_vertex].place};
}

std::optional<std::size_t> picked_mark(const Scene& scene, std::uint32_t id) {
    const std::size_t mark = id & ~mark_bit;
    return (id & mark_bit) != 0 && mark < scene.marks.size() ? std::optional(mark) : std::nullopt;
}

std::string picked_text(const Scene& scene, const PickedTriangle& picked) {
    const auto number = [](double value) { return format_decimal(value, 1, 3); };
    const Vec3& v = picked.first_vertex;
    return file_name_part(scene.model_path) + ":" + std::to_string(picked.line) + ", MATERIAL " +
           std::to_string(picked.material) + ", triangle " + std::to_string(picked.index + 1) +
           " of " + std::to_string(picked.count) + ", first vertex (" + number(v.x) + " " +
           number(v.y) + " " + number(v.z) + ")";
}

std::string limits_text(const Scene& scene) {
    const auto found = std::count_if(scene.textures.begin(), scene.textures.end(),
                                     [](const SceneTexture& t) { return !t.path.empty(); });
    return "textures: " + std::to_string(found) + " of " + std::to_string(scene.textures.size()) +
           " found; animation at rest; finest detail";
}

namespace {

constexpr std::size_t max_troubles = 100;

} // namespace

void Problems::add(const std::string& text, std::size_t line) {
    for (Trouble& trouble : troubles_) {
        if (trouble.text == text) {
            ++trouble.count;
            return;
        }
    }
    if (troubles_.size() < max_troubles) {
        troubles_.push_back({text, line, 1});
    }
}

std::vector<Note> Problems::notes(const std::string& path) const {
    std::vector<Note> result;
    for (const Trouble& trouble : troubles_) {
        const std::string more =
            trouble.count > 1 ? " (and " + to_text(trouble.count - 1) + " more)" : "";
        result.push_back({trouble.text + more, path, trouble.line});
    }
    return result;
}

} // namespace morvane::scene
