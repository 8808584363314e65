// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/read_set.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "scene/masm.h"
#include "scene/model_index.h"
#include "scene/walk_model.h"
#include "source/source_set.h"
#include "system/disk.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

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

// Finds the triangle that each mark came from, by the order of things: the n-th object between a
// MATERIAL line and its commented out block came from the block's n-th triangle; groups of placed
// objects came, in the order of the line numbers in their labels, from the blocks that have
// nothing before them. Where the numbers do not agree a mark is left without a source.
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

bool is_name_character(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '$' || c == '?' || c == '@';
}

// Calls `visit` for each word of a line before its comment.
template <typename Visit>
void for_each_word(std::string_view line, const Visit& visit) {
    line = line.substr(0, line.find(';'));
    for (std::size_t at = 0; at < line.size();) {
        std::size_t end = at;
        while (end < line.size() && is_name_character(line[end])) {
            ++end;
        }
        if (end > at) {
            visit(line.substr(at, end - at));
        }
        at = end + 1;
    }
}

// Where the frame file enters the model: at the labels that it names, else at the beginning.
std::vector<std::size_t> entries(const LineStore& frame, const ModelIndex& index) {
    std::vector<std::size_t> result;
    std::unordered_set<std::size_t> found;
    for (std::size_t i = 1; i <= frame.count(); ++i) {
        for_each_word(frame.line(i), [&](std::string_view word) {
            const auto label = index.labels.find(word);
            if (label != index.labels.end() && found.insert(label->second).second) {
                result.push_back(label->second);
            }
        });
    }
    if (result.empty()) {
        result.push_back(0);
    }
    return result;
}

void measure(Scene& scene) {
    for (const SceneTriangle& triangle : scene.triangles) {
        for (const std::uint32_t corner : triangle.corners) {
            scene.box.add(scene.points[corner]);
        }
    }
    for (const Mark& mark : scene.marks) {
        scene.box.add(mark.place);
    }
}

Scene read(const ModelText& text, const LineStore& frame, const std::string& base) {
    Scene scene;
    Problems problems;
    scene.model_path = model_file_name(base);
    scene.reference = read_reference(frame);
    ModelIndex index = index_model(text, problems);
    const Walk walk = walk_model(text, index, entries(frame, index), scene, problems);
    find_mark_sources(walk, scene);
    scene.materials = std::move(index.materials);
    scene.textures = std::move(index.textures);
    scene.vertices = std::move(index.vertices);
    measure(scene);
    scene.notes = problems.notes(scene.model_path);
    return scene;
}

LineStore read_store(Disk& disk, const std::string& path) {
    return LineStore::read(*disk.open_for_reading(path));
}

} // namespace

Scene read_set(const OpenSet& set) {
    return read(model_text(set), set.frame, set.base);
}

Scene read_set_files(Disk& disk, const std::string& base) {
    const LineStore model = read_store(disk, model_file_name(base));
    const std::string frame_path = frame_file_name(base);
    const bool framed = disk.is_file(frame_path);
    const LineStore frame = framed ? read_store(disk, frame_path) : LineStore();
    Scene scene = read(model_text(model), frame, base);
    if (!framed) {
        scene.notes.push_back({"there is no frame file; the model is drawn unturned", frame_path});
    }
    return scene;
}

namespace {

using Found = std::map<std::string, std::string>; // path by upper-case name

void add_files(Disk& disk, const std::string& folder, Found& found) {
    try {
        for (const FolderEntry& entry : disk.list_folder(folder)) {
            if (entry.file) {
                found.emplace(upper_case(entry.name), join_path(folder, entry.name));
            }
        }
    } catch (const RuntimeError&) {
        // A folder that is not there, most often.
    }
}

// The folder as it is on the disk: "texture", "Texture", "TEXTURE".
std::string texture_folder(Disk& disk, const std::string& parent) {
    try {
        for (const FolderEntry& entry : disk.list_folder(parent)) {
            if (entry.folder && equal_ignoring_case(entry.name, "texture")) {
                return join_path(parent, entry.name);
            }
        }
    } catch (const RuntimeError&) {
        // Then neither is the one below it.
    }
    return {};
}

} // namespace

void locate_textures(Disk& disk, Scene& scene, const std::string& extra_folder) {
    if (scene.textures.empty()) {
        return;
    }
    const std::string part = folder_part(scene.model_path);
    const std::string folder = part.empty() ? "." : part;
    Found found;
    add_files(disk, folder, found);
    const std::string beside = texture_folder(disk, join_path(folder, ".."));
    for (const std::string& other : {beside, extra_folder}) {
        if (!other.empty()) {
            add_files(disk, other, found);
        }
    }
    for (SceneTexture& texture : scene.textures) {
        const auto file = found.find(upper_case(texture.name));
        texture.path = file == found.end() ? std::string() : file->second;
    }
}

} // namespace morvane::scene
