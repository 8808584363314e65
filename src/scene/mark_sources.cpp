// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/mark_sources.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>

namespace morvane::scene {

namespace {

// The corner that an object was put at: the first, for a windsock the lowest.
const Vec3& corner_of(const CommentedBlock::Triangle& triangle, const Mark& mark) {
    const Vec3* best = &triangle.corners[0];
    if (mark.kind == MarkKind::Windsock) {
        for (const Vec3& corner : triangle.corners) {
            if (length(corner - mark.place) < length(*best - mark.place)) {
                best = &corner;
            }
        }
    }
    return *best;
}

void connect(Mark& mark, const CommentedBlock& block, std::size_t index) {
    const CommentedBlock::Triangle& triangle = block.triangles[index];
    const Vec3& place = corner_of(triangle, mark);
    if (is_finite(place)) {
        mark.source = MarkSource{block.material, triangle.line, static_cast<std::uint32_t>(index),
                                 place, length(mark.place - place)};
    }
}

// The marks, as positions in Scene::marks, that one block was turned into.
using Group = std::vector<std::size_t>;

void connect_group(Scene& scene, const Group& group, const CommentedBlock& block) {
    if (group.size() != block.triangles.size()) {
        return;
    }
    for (std::size_t i = 0; i < group.size(); ++i) {
        connect(scene.marks[group[i]], block, i);
    }
}

// "SKIP_FX120" -> 120: the line after the triangle, in the file that was opened.
std::optional<std::size_t> line_in_label(const std::string& label) {
    std::size_t digits = label.size();
    while (digits > 0 && label[digits - 1] >= '0' && label[digits - 1] <= '9') {
        --digits;
    }
    std::size_t number = 0;
    const char* end = label.data() + label.size();
    const auto [next, error] = std::from_chars(label.data() + digits, end, number);
    return label.starts_with("SKIP_") && error == std::errc() ? std::optional(number)
                                                              : std::nullopt;
}

// Marks in the order of the text, so that those in front of a block are found by a search.
std::vector<std::pair<std::size_t, std::size_t>> by_position(const Walk& walk, const Scene& scene) {
    std::vector<std::pair<std::size_t, std::size_t>> result;
    for (std::size_t i = 0; i < walk.marks.size(); ++i) {
        if (!scene.marks[i].geographic) {
            result.emplace_back(walk.marks[i].position, i);
        }
    }
    std::sort(result.begin(), result.end());
    return result;
}

// Placed objects whose lines follow each other, by the first line in their labels.
std::vector<Group> placed_groups(const Walk& walk, const Scene& scene) {
    std::map<std::size_t, std::size_t> marks; // by the line in the label
    for (std::size_t i = 0; i < walk.marks.size(); ++i) {
        const auto line = line_in_label(walk.marks[i].skip_label);
        if (scene.marks[i].geographic && line) {
            marks.emplace(*line, i);
        }
    }
    std::vector<Group> groups;
    std::size_t expected = 0;
    for (const auto& [line, mark] : marks) {
        if (groups.empty() || line != expected) {
            groups.emplace_back();
        }
        groups.back().push_back(mark);
        expected = line + 1;
    }
    return groups;
}

} // namespace

void find_mark_sources(const Walk& walk, Scene& scene) {
    const auto marks = by_position(walk, scene);
    std::vector<const CommentedBlock*> empty; // blocks with nothing before them
    std::vector<const CommentedBlock*> blocks;
    for (const CommentedBlock& block : walk.commented) {
        blocks.push_back(&block);
    }
    std::sort(blocks.begin(), blocks.end(),
              [](const auto* a, const auto* b) { return a->position < b->position; });
    for (const CommentedBlock* block : blocks) {
        Group group;
        auto mark = std::lower_bound(marks.begin(), marks.end(),
                                     std::pair<std::size_t, std::size_t>(block->selected, 0));
        for (; mark != marks.end() && mark->first < block->position; ++mark) {
            group.push_back(mark->second);
        }
        if (!group.empty()) {
            connect_group(scene, group, *block);
        } else if (!block->triangles.empty()) {
            empty.push_back(block);
        }
    }
    const std::vector<Group> groups = placed_groups(walk, scene);
    if (groups.size() == empty.size()) {
        for (std::size_t i = 0; i < groups.size(); ++i) {
            connect_group(scene, groups[i], *empty[i]);
        }
    }
}

} // namespace morvane::scene
