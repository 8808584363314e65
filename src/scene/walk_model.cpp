// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/walk_model.h"

#include "raster/triangles.h"
#include "scene/decode_mark.h"
#include "scene/masm.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <unordered_set>
#include <utility>

namespace morvane::scene {

namespace {

constexpr std::size_t deepest_call = 100; // of calls and of transformations
constexpr std::size_t max_triangles = 4000000;
constexpr std::size_t max_marks = 200000;
constexpr double farthest_place = 1e6;
constexpr std::size_t none = static_cast<std::size_t>(-1);

// What the commands so far have set.
struct State {
    Affine transform{};
    std::vector<Affine> outer{}; // what the transformations that are open stand in
    int material = -1;
    int texture = -1;
    std::size_t selected = 0; // position of the MATERIAL line
    std::size_t vertex_list = 0;
    std::size_t material_list = 0;
    std::size_t texture_list = 0;
    std::string skip_label{}; // of the SCALE that holds; empty: none
    Affine unscaled{};        // the transformation before it
};

// The block of triangles or lines that is being drawn.
struct OpenBlock {
    std::size_t first = 0; // its base, in ModelIndex::vertices
    std::size_t count = 0; // how many of them it may use
    std::uint32_t block = 0;
    std::uint32_t index = 0;
    std::uint32_t stamp = 0;
};

// Heights are generated from a terrain in whole feet, less four, so the one that was meant can be
// told from them.
double assumed_terrain(double altitude) {
    constexpr double metres_per_foot = 0.3048;
    return std::floor(altitude / metres_per_foot + 4 + 0.5) * metres_per_foot;
}

bool is_drawable(const Vec3& p) {
    return std::fabs(p.x) <= farthest_place && std::fabs(p.y) <= farthest_place &&
           std::fabs(p.z) <= farthest_place; // false for what is not a number
}

std::string_view first_operand(std::string_view line) {
    const auto operands = operands_of(statement_of(line).rest);
    return operands.empty() ? std::string_view() : operands[0];
}

// Whole numbers separated by commas; false unless all are there.
template <std::size_t N>
bool read_indices(std::string_view text, std::array<std::uint32_t, N>& result) {
    const char* at = text.data();
    const char* end = at + text.size();
    for (std::size_t i = 0; i < N; ++i) {
        while (at != end && (*at == ' ' || *at == '\t' || (i > 0 && *at == ','))) {
            ++at;
        }
        const auto [next, error] = std::from_chars(at, end, result[i]);
        if (error != std::errc()) {
            return false;
        }
        at = next;
    }
    return true;
}

class Walker {
  public:
    Walker(const ModelText& text, const ModelIndex& index, Scene& scene, Problems& problems,
           Walk& walk)
        : text_(text), index_(index), scene_(scene), problems_(problems), walk_(walk),
          slots_(index.vertices.size()), stamps_(index.vertices.size()),
          steps_left_(4 * text.lines.size() + 100000) {}

    // Everything that the entries lead to.
    void run(const std::vector<std::size_t>& entries, const State& start) {
        std::vector<Pending> pending;
        pending.reserve(entries.size());
        for (const std::size_t entry : entries) {
            pending.push_back({entry, start});
        }
        std::reverse(pending.begin(), pending.end());
        run(std::move(pending), 0);
    }

    // Lines first to last, as they follow each other, whatever jumps there are.
    void run_straight(std::size_t first, std::size_t last, State state) {
        for (std::size_t i = first; i <= last; ++i) {
            if (index_.commands[i] == Command::Label) {
                end_scale(label_name(text_.lines[i].text), state);
            }
            set_state(i, state);
            draw(i, state);
        }
    }

    // What is drawn from now on is marked so.
    void set_reached(bool reached) { reached_ = reached; }

  private:
    struct Pending {
        std::size_t position;
        State state;
    };

    // One activation of a subroutine.
    void run(std::vector<Pending> pending, std::size_t depth) {
        std::unordered_set<std::size_t> passed; // labels
        while (!pending.empty()) {
            Pending next = std::move(pending.back());
            pending.pop_back();
            std::size_t at = next.position;
            while (at < text_.lines.size() && step(at, next.state, pending, passed, depth)) {
            }
        }
    }

    // One line. False when this way through the code ends here.
    bool step(std::size_t& at, State& state, std::vector<Pending>& pending,
              std::unordered_set<std::size_t>& passed, std::size_t depth) {
        if (steps_left_ == 0) {
            return false;
        }
        if (--steps_left_ == 0) {
            problems_.add("the code is repeated too often; the rest is not drawn", number(at));
        }
        switch (index_.commands[at]) {
        case Command::Label:
            if (!passed.insert(at).second) {
                return false;
            }
            end_scale(label_name(text_.lines[at].text), state);
            break;
        case Command::Return:
            return false;
        case Command::Jump:
            at = target(at);
            return at != none;
        case Command::Condition:
            later(target(at), state, pending);
            break;
        case Command::Call:
            call(target(at), state, depth);
            break;
        case Command::TurnedCall:
            call_turned(at, state, depth);
            break;
        default:
            set_state(at, state);
            draw(at, state);
            break;
        }
        ++at;
        return true;
    }

    static void later(std::size_t position, const State& state, std::vector<Pending>& pending) {
        if (position != none) {
            pending.push_back({position, state});
        }
    }

    void call(std::size_t position, const State& state, std::size_t depth) {
        if (position == none) {
            return;
        }
        if (depth == deepest_call) {
            problems_.add("calls are nested too deep", number(position));
            return;
        }
        const OpenBlock block = std::exchange(open_, {});
        run({{position, state}}, depth + 1);
        open_ = block;
    }

    void call_turned(std::size_t at, const State& state, std::size_t depth) {
        State turned = state;
        turned.transform = then(decode_turn(text_.lines[at].text), state.transform);
        call(target(at), turned, depth);
    }

    // Commands that change what those after them mean.
    void set_state(std::size_t at, State& state) {
        switch (index_.commands[at]) {
        case Command::VertexList:
            select_list(index_.vertex_lists, at, state.vertex_list);
            break;
        case Command::MaterialList:
            select_list(index_.material_lists, at, state.material_list);
            break;
        case Command::TextureList:
            select_list(index_.texture_lists, at, state.texture_list);
            break;
        case Command::Material:
            select_material(at, state);
            break;
        case Command::Transform:
            begin_transform(at, decode_transform(text_.lines[at].text), state);
            break;
        case Command::Animate:
            begin_transform(at, decode_animation(text_.lines[at].text), state);
            break;
        case Command::TransformEnd:
            if (!state.outer.empty()) {
                state.transform = state.outer.back();
                state.outer.pop_back();
            }
            break;
        case Command::Scale:
            begin_scale(at, state);
            break;
        default:
            break;
        }
    }

    // Commands that bring something to see.
    void draw(std::size_t at, State& state) {
        switch (index_.commands[at]) {
        case Command::Triangles:
        case Command::Lines:
            begin_block(at, state);
            break;
        case Command::Triangle:
            triangle(at);
            break;
        case Command::Line:
            line(at);
            break;
        case Command::BlockEnd:
            open_ = {};
            break;
        case Command::CommentedTriangles:
            begin_commented(at, state);
            break;
        case Command::CommentedTriangle:
            commented_triangle(at);
            break;
        case Command::CommentedEnd:
            commented_ = nullptr;
            break;
        case Command::Light:
        case Command::Effect:
        case Command::Windsock:
        case Command::LibraryCall:
            mark(at, state);
            break;
        default:
            break;
        }
    }

    std::uint32_t number(std::size_t at) const { return text_.lines[at].number; }

    std::size_t target(std::size_t at) const {
        const auto label = index_.labels.find(first_operand(text_.lines[at].text));
        return label == index_.labels.end() ? none : label->second;
    }

    static void select_list(const std::vector<ListRange>& lists, std::size_t at,
                            std::size_t& selected) {
        const auto list =
            std::lower_bound(lists.begin(), lists.end(), at,
                             [](const ListRange& l, std::size_t line) { return l.line < line; });
        selected = static_cast<std::size_t>(list - lists.begin());
    }

    // Position in the table of what a list has under that number.
    static int in_list(const std::vector<ListRange>& lists, std::size_t selected, int element) {
        if (selected >= lists.size() || element < 0 ||
            static_cast<std::size_t>(element) >= lists[selected].count) {
            return -1;
        }
        return static_cast<int>(lists[selected].first) + element;
    }

    void select_material(std::size_t at, State& state) {
        const auto operands = operands_of(statement_of(text_.lines[at].text).rest);
        const auto value = [&](std::size_t i) {
            const auto n = i < operands.size() ? whole_number(operands[i]) : std::nullopt;
            return n && *n >= -1 && *n <= 0xFFFF ? static_cast<int>(*n) : -1;
        };
        state.material = value(0);
        state.texture = value(1);
        state.selected = at;
    }

    void begin_transform(std::size_t at, const std::optional<Affine>& transform, State& state) {
        if (!transform) {
            problems_.add("a transformation cannot be read", number(at));
        }
        if (state.outer.size() >= deepest_call) {
            problems_.add("transformations are nested too deep", number(at));
            return;
        }
        state.outer.push_back(state.transform);
        state.transform = then(transform.value_or(Affine()), state.transform);
    }

    void begin_scale(std::size_t at, State& state) {
        const auto place = geo_place(text_.lines[at].text);
        if (!place) {
            problems_.add("a placement cannot be read", number(at));
            return;
        }
        if (state.skip_label.empty()) {
            state.unscaled = state.transform;
        }
        if (!place->above_ground && !scene_.terrain) {
            scene_.terrain = assumed_terrain(place->altitude);
        }
        state.skip_label = place->skip_label;
        state.transform = geo_to_scene(scene_.reference, *place, scene_.terrain.value_or(0));
        above_sea_level_ = !place->above_ground;
    }

    static void end_scale(std::string_view label, State& state) {
        if (!state.skip_label.empty() && state.skip_label == label) {
            state.skip_label.clear();
            state.transform = state.unscaled;
        }
    }

    OpenBlock block_of(std::size_t at, std::string_view operands, const State& state) {
        OpenBlock result;
        std::array<std::uint32_t, 2> head{};
        if (!read_indices(operands, head)) {
            problems_.add("the head of a block cannot be read", number(at));
            return result;
        }
        if (state.vertex_list < index_.vertex_lists.size()) {
            const ListRange& list = index_.vertex_lists[state.vertex_list];
            const std::size_t base = std::min<std::size_t>(head[0], list.count);
            result.first = list.first + base;
            result.count = std::min<std::size_t>(head[1], list.count - base);
        }
        return result;
    }

    void begin_block(std::size_t at, const State& state) {
        open_ = block_of(at, statement_of(text_.lines[at].text).rest, state);
        open_.block = static_cast<std::uint32_t>(scene_.blocks.size());
        open_.stamp = ++stamp_;
        SceneBlock block;
        block.material = state.material;
        block.look = in_list(index_.material_lists, state.material_list, state.material);
        block.texture = in_list(index_.texture_lists, state.texture_list, state.texture);
        block.begin_line = number(at);
        block.reached = reached_;
        block.transform = state.transform;
        scene_.blocks.push_back(block);
    }

    // The place of a corner in Scene::points, which it is added to when it is new in this block.
    // False when it is not there or cannot be drawn.
    bool corner(std::uint32_t vertex, std::size_t at, std::uint32_t& result) {
        if (vertex >= open_.count) {
            problems_.add("a triangle or line names a vertex that is not there", number(at));
            return false;
        }
        const std::size_t i = open_.first + vertex;
        if (stamps_[i] != open_.stamp) {
            const Affine& transform = scene_.blocks[open_.block].transform;
            stamps_[i] = open_.stamp;
            slots_[i] = static_cast<std::uint32_t>(scene_.points.size());
            scene_.points.push_back(transform.point(index_.vertices[i].place));
            scene_.normals.push_back(unit(transform.direction(index_.vertices[i].normal)));
        }
        result = slots_[i];
        if (!is_drawable(scene_.points[result])) {
            problems_.add("a corner is not finite, or too far away to be drawn", number(at));
            return false;
        }
        return true;
    }

    void triangle(std::size_t at) {
        if (open_.stamp == 0) {
            problems_.add("a triangle is outside of any block", number(at));
            return;
        }
        SceneTriangle triangle;
        triangle.block = open_.block;
        triangle.index = open_.index++;
        triangle.line = number(at);
        ++scene_.blocks[open_.block].triangles;
        std::array<std::uint32_t, 3> numbers{};
        if (!read_indices(statement_of(text_.lines[at].text).rest, numbers)) {
            problems_.add("a triangle cannot be read", number(at));
            return;
        }
        for (std::size_t i = 0; i < 3; ++i) {
            if (!corner(numbers[i], at, triangle.corners[i])) {
                return;
            }
        }
        triangle.first_vertex = static_cast<std::uint32_t>(open_.first + numbers[0]);
        add(triangle, at);
    }

    void add(SceneTriangle& triangle, std::size_t at) {
        if (scene_.triangles.size() == max_triangles) {
            problems_.add("there are too many triangles; the rest is not drawn", number(at));
            steps_left_ = 0;
            return;
        }
        const auto& [a, b, c] = triangle.corners;
        triangle.light = raster::light_on(scene_.points[a], scene_.points[b], scene_.points[c]);
        scene_.triangles.push_back(triangle);
    }

    void line(std::size_t at) {
        std::array<std::uint32_t, 2> numbers{};
        std::array<std::uint32_t, 2> ends{};
        if (open_.stamp != 0 && read_indices(statement_of(text_.lines[at].text).rest, numbers) &&
            corner(numbers[0], at, ends[0]) && corner(numbers[1], at, ends[1])) {
            scene_.lines.push_back(ends);
        }
    }

    void begin_commented(std::size_t at, const State& state) {
        if (!commented_positions_.insert(at).second) {
            commented_ = nullptr; // seen before, by another way
            return;
        }
        const std::string_view text = stripped(text_.lines[at].text).substr(1);
        open_ = block_of(at, statement_of(text).rest, state);
        commented_transform_ = state.transform;
        walk_.commented.push_back({at, state.selected, state.material});
        commented_ = &walk_.commented.back();
    }

    void commented_triangle(std::size_t at) {
        if (commented_ == nullptr) {
            return;
        }
        CommentedBlock::Triangle triangle{number(at)};
        std::array<std::uint32_t, 3> numbers{};
        const std::string_view text = stripped(text_.lines[at].text).substr(1);
        const bool read = read_indices(statement_of(text).rest, numbers);
        for (std::size_t i = 0; i < 3; ++i) {
            const bool there = read && numbers[i] < open_.count;
            triangle.corners[i] =
                there ? commented_transform_.point(index_.vertices[open_.first + numbers[i]].place)
                      : Vec3{Box::infinity, 0, 0};
        }
        commented_->triangles.push_back(triangle);
    }

    void mark(std::size_t at, const State& state) {
        auto mark = decode_mark(index_.commands[at], text_.lines[at].text, state.transform,
                                number(at), problems_);
        if (!mark || scene_.marks.size() == max_marks) {
            return;
        }
        mark->geographic = !state.skip_label.empty();
        mark->above_sea_level = mark->geographic && above_sea_level_;
        mark->reached = reached_;
        mark->line = number(at);
        scene_.marks.push_back(std::move(*mark));
        walk_.marks.push_back({at, state.skip_label});
    }

    const ModelText& text_;
    const ModelIndex& index_;
    Scene& scene_;
    Problems& problems_;
    Walk& walk_;
    std::vector<std::uint32_t> slots_;  // of a vertex in Scene::points
    std::vector<std::uint32_t> stamps_; // the block that the slot is of
    std::uint32_t stamp_ = 0;
    OpenBlock open_;
    CommentedBlock* commented_ = nullptr;
    std::unordered_set<std::size_t> commented_positions_;
    Affine commented_transform_{};
    bool above_sea_level_ = false;
    bool reached_ = true;
    std::size_t steps_left_;
};

// Which lines any way through the code leads to, conditions and levels of detail both ways.
std::vector<bool> reachable(const ModelText& text, const ModelIndex& index,
                            std::vector<std::size_t> pending) {
    std::vector<bool> reached(text.lines.size());
    while (!pending.empty()) {
        std::size_t at = pending.back();
        pending.pop_back();
        for (; at < text.lines.size() && !reached[at]; ++at) {
            reached[at] = true;
            const Command command = index.commands[at];
            if (command == Command::Return) {
                break;
            }
            if (command >= Command::Scale && command <= Command::DetailCondition) {
                const auto label = index.labels.find(first_operand(text.lines[at].text));
                if (label != index.labels.end()) {
                    pending.push_back(label->second);
                }
                if (command == Command::Jump) {
                    break;
                }
            }
        }
    }
    return reached;
}

std::size_t count_drawing(const ModelIndex& index, std::size_t first, std::size_t last) {
    std::size_t count = 0;
    for (std::size_t i = first; i <= last; ++i) {
        count += draws(index.commands[i]) ? 1 : 0;
    }
    return count;
}

// The code that is not reached, from one command that ends the way to the next that is reached.
void walk_unreached(const ModelText& text, const ModelIndex& index, const State& start,
                    const std::vector<bool>& reached, Walker& walker, Problems& problems) {
    walker.set_reached(false);
    for (std::size_t first = 0; first < reached.size(); ++first) {
        if (reached[first]) {
            continue;
        }
        std::size_t last = first;
        while (last + 1 < reached.size() && !reached[last + 1]) {
            ++last;
        }
        if (const std::size_t count = count_drawing(index, first, last)) {
            problems.add("what follows is never reached, so the simulator does not show it (" +
                             std::to_string(count) + " commands, drawn hatched)",
                         text.lines[first == 0 ? 0 : first - 1].number);
            walker.run_straight(first, last, start);
        }
        first = last;
    }
}

} // namespace

Walk walk_model(const ModelText& text, const ModelIndex& index,
                const std::vector<std::size_t>& entries, Scene& scene, Problems& problems) {
    Walk walk;
    Walker walker(text, index, scene, problems, walk);
    State start;
    start.transform = scene.reference.model_to_scene();
    walker.run(entries, start);
    walk.reached = reachable(text, index, entries);
    walk_unreached(text, index, start, walk.reached, walker, problems);
    return walk;
}

void walk_straight(const ModelText& text, const Affine& start, Scene& scene, Problems& problems) {
    const ModelIndex index = index_model(text, problems);
    Walk walk;
    Walker walker(text, index, scene, problems, walk);
    State state;
    state.transform = start;
    if (!text.lines.empty()) {
        walker.run_straight(0, text.lines.size() - 1, state);
    }
}

} // namespace morvane::scene
