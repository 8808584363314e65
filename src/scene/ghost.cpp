#include "scene/ghost.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "objects/rewrite.h"
#include "scene/problems.h"
#include "scene/walk_model.h"

#include <algorithm>
#include <optional>

namespace morvane::scene {

namespace {

constexpr std::size_t max_refused = 300;

// Keeps the message that Process would show.
class Listener final : public Reporter {
  public:
    void add_message(std::string_view) override {}
    void note(const Note&) override {}
    void clear_messages() override {}
    void message_box(std::string_view text, Icon) override {
        if (first.empty()) {
            first = text;
        }
    }
    bool ask(std::string_view, Icon, std::string_view) override { return false; }

    std::string first;
};

struct Wish {
    std::size_t row = 0;
    Kind kind = Kind::Lights;
    const Parameters& parameters;
};

// A copy in which nothing is marked as refused any more. The lines are behind the one that selects
// the material, so that one stays where it is.
OpenSet without_lines(const OpenSet& set, const std::vector<std::uint32_t>& lines) {
    OpenSet copy = set;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        copy.model.erase_lines(*line, *line);
        copy.vertex_list -= copy.vertex_list > *line ? 1 : 0;
    }
    return copy;
}

// The first triangle that the rewrite left: it stopped there.
std::optional<std::uint32_t> refused_line(const OpenSet& copy, std::size_t row,
                                          const std::vector<std::uint32_t>& before) {
    std::size_t line = copy.translation(row).block.selecting_line + 1;
    while (line <= copy.model.count() && copy.model.line(line).starts_with("; ")) {
        ++line;
    }
    if (!trim(copy.model.line(line)).starts_with("DRAW_TRI ")) {
        return std::nullopt;
    }
    for (const std::uint32_t erased : before) { // ascending
        line += erased <= line ? 1 : 0;
    }
    return static_cast<std::uint32_t>(line);
}

std::vector<std::string> new_lines(const OpenSet& copy, std::size_t old_base) {
    const auto& lines = copy.new_code.lines;
    const std::size_t first = std::min(old_base + 1, lines.size());
    return {lines.begin() + static_cast<std::ptrdiff_t>(first), lines.end()};
}

// The lines that the rewrite makes; what is refused is noted in the ghost.
std::vector<std::string> rewritten(Disk& disk, const OpenSet& set, const Wish& wish, Ghost& ghost) {
    while (ghost.refused.size() < max_refused) {
        OpenSet copy = without_lines(set, ghost.refused);
        Listener listener;
        const Services services{disk, listener};
        if (rewrite_material(services, copy, wish.row, wish.kind, wish.parameters)) {
            return new_lines(copy, set.new_code.base);
        }
        if (ghost.trouble.empty()) {
            ghost.trouble = listener.first;
        }
        const auto line = refused_line(copy, wish.row, ghost.refused);
        if (!line) {
            break;
        }
        ghost.refused.push_back(*line);
    }
    return {};
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

Ghost ghost_of(Disk& disk, const OpenSet& set, const Scene& scene, std::size_t row, Kind kind,
               const Parameters& parameters) {
    Ghost ghost;
    try {
        const Translation& translation = set.translation(row);
        ghost.material = static_cast<int>(translation.number);
        const auto lines = rewritten(disk, set, {row, kind, parameters}, ghost);
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

} // namespace morvane::scene
