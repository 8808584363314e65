// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/masm.h"
#include "scene/scene.h"
#include "source/open_set.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace morvane::scene {

struct ModelLine {
    std::string_view text;
    std::uint32_t number = 0; // of the line in the model file; 0: generated and not saved yet
};

/// The model file's lines with what was generated so far in its place: what Save would write. The
/// texts are views into the store that it was made of.
struct ModelText {
    std::vector<ModelLine> lines;
    std::deque<std::string> generated; // owns the generated lines; a deque does not move them
};

ModelText model_text(const LineStore& model);
/// Throws SubscriptOutOfRange for a material without code.
ModelText model_text(const OpenSet& set);

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
