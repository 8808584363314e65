// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/ghost.h"

#include "base/errors.h"
#include "objects/object_code.h"
#include "scene/scene.h"
#include "scene/walk_model.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace morvane::scene {

namespace {

constexpr std::size_t max_refused = 300;

struct Wish {
    std::size_t row = 0;
    Kind kind = Kind::Lights;
    const Parameters& parameters;
};

void append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

// The lines that Process makes. A triangle that it refuses is noted in the ghost and passed over,
// as if it were not there.
std::vector<std::string> generated(const OpenSet& set, const Wish& wish, Ghost& ghost) {
    const Translation& material = set.translation(wish.row);
    const ObjectCode code = object_code(set, material, wish.kind, wish.parameters);
    DrawBlock block(set.model, set.vertex_list, material);
    std::vector<std::string> lines = code.opening;
    for (block.next_line(); block.at_triangle(); block.next_line()) {
        if (const auto triangle = code.triangle(block, block.triangle())) {
            append(lines, *triangle);
            continue;
        }
        ghost.trouble = code.unusable;
        ghost.refused.push_back(static_cast<std::uint32_t>(block.line()));
        if (ghost.refused.size() == max_refused) {
            return {};
        }
    }
    append(lines, code.closing);
    return lines;
}

const SceneBlock* block_at(const Scene& scene, int material, std::size_t line) {
    for (const SceneBlock& block : scene.blocks) {
        if (block.material == material && block.begin_line == line) {
            return &block;
        }
    }
    return nullptr;
}

std::vector<Mark> decoded(const std::vector<std::string>& lines, const Affine& start,
                          const Scene& scene) {
    ModelText text;
    for (const std::string& line : lines) {
        text.lines.push_back({line, 0});
    }
    Scene result;
    result.reference = scene.reference;
    result.terrain = scene.terrain;
    Problems problems;
    walk_straight(text, start, result, problems);
    return std::move(result.marks);
}

// The n-th mark came from the n-th triangle that is not refused.
void find_sources(const Scene& scene, const SceneBlock& block, Ghost& ghost) {
    std::vector<const SceneTriangle*> triangles;
    for (const SceneTriangle& triangle : scene.triangles) {
        if (&scene.blocks[triangle.block] == &block &&
            !std::binary_search(ghost.refused.begin(), ghost.refused.end(), triangle.line)) {
            triangles.push_back(&triangle);
        }
    }
    if (triangles.size() != ghost.marks.size()) {
        return;
    }
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        Mark& mark = ghost.marks[i];
        Vec3 place = scene.points[triangles[i]->corners[0]];
        for (const std::uint32_t corner : triangles[i]->corners) {
            if (mark.kind == MarkKind::Windsock &&
                length(scene.points[corner] - mark.place) < length(place - mark.place)) {
                place = scene.points[corner];
            }
        }
        mark.source = MarkSource{ghost.material, triangles[i]->line, triangles[i]->index, place,
                                 length(place - mark.place)};
    }
}

} // namespace

Ghost ghost_of(Disk& /*disk*/, const OpenSet& set, const Scene& scene, std::size_t row, Kind kind,
               const Parameters& parameters) {
    Ghost ghost;
    try {
        const Translation& translation = set.translation(row);
        ghost.material = static_cast<int>(translation.number);
        const auto lines = generated(set, {row, kind, parameters}, ghost);
        const SceneBlock* block =
            block_at(scene, ghost.material, translation.block.selecting_line + 1);
        ghost.marks = decoded(
            lines, block != nullptr ? block->transform : scene.reference.model_to_scene(), scene);
        if (block != nullptr) {
            find_sources(scene, *block, ghost);
        }
    } catch (const RuntimeError& error) {
        ghost.trouble = error.description();
        if (!error.about().empty()) {
            ghost.trouble += ": " + error.about();
        }
    }
    return ghost;
}

Ghost ghost_of(Disk& disk, const OpenSet& set, const Scene& scene,
               const std::vector<std::size_t>& rows, Kind kind, const Parameters& parameters) {
    Ghost all;
    for (const std::size_t row : rows) {
        if (row == 0 || row > set.translations.size() || !set.translation(row).processed.empty()) {
            continue;
        }
        Ghost ghost = ghost_of(disk, set, scene, row, kind, parameters);
        all.material = ghost.material;
        std::move(ghost.marks.begin(), ghost.marks.end(), std::back_inserter(all.marks));
        all.refused.insert(all.refused.end(), ghost.refused.begin(), ghost.refused.end());
        if (all.trouble.empty()) {
            all.trouble = std::move(ghost.trouble);
        }
    }
    std::sort(all.refused.begin(), all.refused.end());
    return all;
}

} // namespace morvane::scene
