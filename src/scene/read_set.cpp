// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/read_set.h"

#include "base/paths.h"
#include "scene/mark_sources.h"
#include "scene/masm.h"
#include "scene/model_index.h"
#include "scene/model_text.h"
#include "scene/walk_model.h"
#include "source/source_set.h"
#include "system/disk.h"

#include <algorithm>
#include <cctype>
#include <unordered_set>
#include <utility>

namespace morvane::scene {

namespace {

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

} // namespace morvane::scene
