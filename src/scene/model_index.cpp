// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/model_index.h"

#include "objects/save.h"
#include "scene/masm.h"

#include <algorithm>
#include <cmath>

namespace morvane::scene {

namespace {

void add_generated(ModelText& text, const Replacement& replacement) {
    for (const std::string& line : replacement.code) {
        text.lines.push_back({text.generated.emplace_back(line), 0});
    }
}

} // namespace

ModelText model_text(const LineStore& model) {
    ModelText text;
    text.lines.reserve(model.count());
    for (std::size_t i = 1; i <= model.count(); ++i) {
        text.lines.push_back({model.line(i), static_cast<std::uint32_t>(i)});
    }
    return text;
}

ModelText model_text(const OpenSet& set) {
    ModelText text;
    require_code(set);
    const std::vector<const Replacement*> ordered = ordered_replacements(set);
    auto next = ordered.begin();
    text.lines.reserve(set.model.count());
    for (std::size_t i = 1; i <= set.model.upper(); ++i) {
        for (; next != ordered.end() && (*next)->before_line == i; ++next) {
            add_generated(text, **next);
        }
        if (i <= set.model.count()) {
            text.lines.push_back({set.model.line(i), static_cast<std::uint32_t>(i)});
        }
    }
    for (; next != ordered.end(); ++next) {
        add_generated(text, **next);
    }
    return text;
}

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

SourceVertex read_vertex(const ModelLine& line, Problems& problems) {
    std::array<double, 6> n{};
    if (!read_numbers(statement_of(line.text).rest, n)) {
        problems.add("a vertex cannot be read", line.number);
        return {{infinity, infinity, infinity}, {}};
    }
    return {{n[0], n[1], n[2]}, {n[3], n[4], n[5]}};
}

SceneMaterial read_material(const ModelLine& line, Problems& problems) {
    std::array<double, 7> n{};
    if (!read_numbers(statement_of(line.text).rest, n)) {
        problems.add("a material cannot be read", line.number);
        return {};
    }
    return {raster::colour_of_parts(n[0], n[1], n[2], n[3]),
            raster::colour_of_parts(n[4], n[5], n[6], n[3])};
}

SceneTexture read_texture(const ModelLine& line, Problems& problems) {
    const auto name = quoted(line.text);
    if (!name) {
        problems.add("a texture has no name", line.number);
    }
    return {std::string(name.value_or("")), {}};
}

// Collects the elements of the lists while the lines go by.
class Lists {
  public:
    Lists(ModelIndex& index, Problems& problems) : index_(index), problems_(problems) {}

    void line(std::size_t at, Command command, const ModelLine& line) {
        switch (command) {
        case Command::VertexList:
            begin(index_.vertex_lists, at, index_.vertices.size());
            break;
        case Command::MaterialList:
            begin(index_.material_lists, at, index_.materials.size());
            break;
        case Command::TextureList:
            begin(index_.texture_lists, at, index_.textures.size());
            break;
        case Command::ListEnd:
            open_ = nullptr;
            break;
        case Command::VertexDefinition:
            add(index_.vertices, index_.vertex_lists, read_vertex(line, problems_));
            break;
        case Command::MaterialDefinition:
            add(index_.materials, index_.material_lists, read_material(line, problems_));
            break;
        case Command::TextureDefinition:
            add(index_.textures, index_.texture_lists, read_texture(line, problems_));
            break;
        default:
            break;
        }
    }

  private:
    void begin(std::vector<ListRange>& lists, std::size_t at, std::size_t first) {
        lists.push_back({at, first, 0});
        open_ = &lists;
    }
    template <typename Element>
    void add(std::vector<Element>& table, std::vector<ListRange>& lists, Element element) {
        if (open_ == &lists) {
            table.push_back(std::move(element));
            ++lists.back().count;
        }
    }

    ModelIndex& index_;
    Problems& problems_;
    std::vector<ListRange>* open_ = nullptr;
};

} // namespace

ModelIndex index_model(const ModelText& text, Problems& problems) {
    ModelIndex index;
    index.commands.reserve(text.lines.size());
    Lists lists(index, problems);
    for (std::size_t i = 0; i < text.lines.size(); ++i) {
        const Command command = command_of(text.lines[i].text);
        index.commands.push_back(command);
        if (command == Command::Label) {
            index.labels.emplace(label_name(text.lines[i].text), i);
        } else {
            lists.line(i, command, text.lines[i]);
        }
    }
    return index;
}

} // namespace morvane::scene
