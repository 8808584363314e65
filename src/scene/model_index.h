// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/commands.h"
#include "scene/model_text.h"
#include "scene/problems.h"
#include "scene/scene.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace morvane::scene {

/// A list of the model file: some elements of the table of all lists of its sort.
struct ListRange {
    std::size_t line = 0;  // position of its first line in the text
    std::size_t first = 0; // in the table
    std::size_t count = 0;
};

/// A model file looked through once: what each line is, the lists, and where labels are. Positions
/// are those of ModelText::lines, from 0.
struct ModelIndex {
    std::vector<Command> commands;
    std::vector<SourceVertex> vertices; // one that cannot be read has infinite coordinates
    std::vector<SceneMaterial> materials;
    std::vector<SceneTexture> textures;
    std::vector<ListRange> vertex_lists;
    std::vector<ListRange> material_lists;
    std::vector<ListRange> texture_lists;
    std::unordered_map<std::string_view, std::size_t> labels;
};

ModelIndex index_model(const ModelText& text, Problems& problems);

} // namespace morvane::scene
