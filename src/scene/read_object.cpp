// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/read_object.h"

#include "raster/vector.h"
#include "scene/code_reader.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <utility>

namespace morvane::scene {

namespace {

using raster::Affine;
using raster::Colour;
using raster::Vec3;

constexpr std::size_t max_commands = 20000;
constexpr std::size_t max_depth = 100; // of calls and of transformations
constexpr std::size_t max_points = 2048;
constexpr std::size_t max_faces = 200000;
constexpr std::size_t max_textures = 1000;
constexpr std::size_t max_work = 1 << 25; // bytes of commands, each as often as it is passed
constexpr double largest_coordinate = 1e6;
constexpr Colour plain = 0xFFC8C2B8;

// What conditions ask for: a summer's day, everything shown.
double variable(std::uint16_t id) {
    switch (id) {
    case 0x28C: // time of day: 1 is day, 4 is night
        return 1;
    case 0x346: // complexity of the image: 0 .. 5
        return 5;
    case 0x38A: // day of the year
        return 180;
    case 0x6F8: // season: 0 winter .. 3 autumn
        return 2;
    default:
        return 0;
    }
}

struct Vertex {
    Vec3 place;
    bool known = false;
};

struct Skin {
    Colour diffuse = plain;
    Colour ambient = plain;
};

class Interpreter {
  public:
    Interpreter(std::string_view code, Shape& shape) : code_(code), shape_(shape) {}

    void run() {
        while (!ended_) {
            if (at_ == code_.size()) {
                if (!return_from_call()) {
                    return; // the usual end of an object: its code is over
                }
                continue;
            }
            if (shape_.commands == max_commands) {
                stop("the code does not end");
                return;
            }
            step();
        }
    }

  private:
    void step() {
        CodeReader reader(code_, at_);
        next_ = {};
        opcode_ = reader.read<std::uint16_t>();
        const bool known = draw(reader) || set(reader) || go(reader);
        if (ended_) {
            return; // it has said why
        }
        if (!known) {
            stop("it is not known");
        } else if (!reader.complete()) {
            stop("it is cut short");
        } else {
            ++shape_.commands;
            count_work(reader.position() - reader.start());
            at_ = next_.value_or(reader.position());
        }
    }

    // Loops may pass by the same long lists again and again.
    void count_work(std::size_t bytes) {
        work_ += bytes;
        if (work_ > max_work) {
            stop("the code does not end");
        }
    }

    // Ends reading. What was drawn before stays.
    void stop(const std::string& why) {
        std::array<char, 64> place{};
        std::snprintf(place.data(), place.size(),
                      "command %04Xh at offset %zu: ", static_cast<unsigned>(opcode_), at_);
        shape_.trouble = place.data() + why;
        ended_ = true;
    }

    // Commands that bring something to see.
    bool draw(CodeReader& reader) {
        switch (opcode_) {
        case 0xB9:
            indexed(reader, 3);
            return true;
        case 0xBA:
            indexed(reader, 2);
            return true;
        case 0xBB:
            indexed(reader, 1);
            return true;
        case 0x20:
        case 0x7A:
            facet(reader, 6);
            return true;
        case 0x2A:
        case 0x3E:
            facet(reader, 2);
            return true;
        case 0xB2: // a light
            reader.skip(42);
            return true;
        default:
            return false;
        }
    }

    // Commands that change what those after them mean.
    bool set(CodeReader& reader) {
        switch (opcode_) {
        case 0xB5:
            vertex_list(reader);
            return true;
        case 0xB6:
            material_list(reader);
            return true;
        case 0xB7:
            texture_list(reader);
            return true;
        case 0xB8:
            material(reader);
            return true;
        case 0x1A:
            point_list(reader, 0);
            return true;
        case 0x29:
            point_list(reader, 6);
            return true;
        case 0x43:
            old_texture(reader);
            return true;
        case 0xAF:
            transform(reader);
            return true;
        case 0xAD:
            reader.skip(16);
            begin_transform(raster::translation(reader.read_vector()));
            return true;
        case 0xAE:
            end_transform();
            return true;
        default:
            return skip_plain(reader);
        }
    }

    // Commands of a fixed length with nothing to draw.
    bool skip_plain(CodeReader& reader) {
        switch (opcode_) {
        case 0xBD: // BGL_END
            return true;
        case 0xAC: // ZBIAS
        case 0x92: // MIPMAP
        case 0x93: // SPECULAR
            reader.skip(2);
            return true;
        case 0xBC: // BGL_BEGIN
        case 0xB4: // TEXTURE_SIZE
            reader.skip(4);
            return true;
        case 0x1D: // point and normal of a facet
        case 0x60:
            reader.skip(12);
            return true;
        case 0x5F: // IFSIZEV: the finest detail is always shown
            reader.skip(6);
            return true;
        default:
            return false;
        }
    }

    // Commands that say where the code goes on.
    bool go(CodeReader& reader) {
        switch (opcode_) {
        case 0x22:
            return_from_call();
            return true;
        case 0x0D:
            jump(reader.read<std::int16_t>());
            return true;
        case 0x88:
            jump(reader.read<std::int32_t>());
            return true;
        case 0x23:
            call(reader.read<std::int16_t>(), reader, {});
            return true;
        case 0x8A:
            call(reader.read<std::int32_t>(), reader, {});
            return true;
        case 0x3B:
            turned_call(reader);
            return true;
        case 0xA7:
            sprite_call(reader);
            return true;
        default:
            return condition(reader);
        }
    }

    bool condition(CodeReader& reader) {
        switch (opcode_) {
        case 0x24: {
            const auto target = reader.read<std::int16_t>();
            const double value = variable(reader.read<std::uint16_t>());
            const auto low = reader.read<std::int16_t>();
            const auto high = reader.read<std::int16_t>();
            jump_unless(value >= low && value <= high, target);
            return true;
        }
        case 0x39: {
            const auto target = reader.read<std::int16_t>();
            const auto value = static_cast<unsigned>(variable(reader.read<std::uint16_t>()));
            jump_unless((value & reader.read<std::uint16_t>()) != 0, target);
            return true;
        }
        case 0xB3: {
            const auto target = reader.read<std::int32_t>();
            const double value = variable(reader.read<std::uint16_t>());
            const double low = reader.read_float();
            const double high = reader.read_float();
            jump_unless(value >= low && value <= high, target);
            return true;
        }
        default:
            return false;
        }
    }

    // Targets count from the command's own start.
    void jump(std::int64_t distance) {
        const std::int64_t target = static_cast<std::int64_t>(at_) + distance;
        if (distance == 0) {
            stop("it jumps to itself");
        } else if (target < 0 || target > static_cast<std::int64_t>(code_.size())) {
            stop("it jumps out of the code");
        } else {
            next_ = static_cast<std::size_t>(target);
        }
    }

    void jump_unless(bool holds, std::int64_t distance) {
        if (!holds) {
            jump(distance);
        }
    }

    struct Call {
        std::size_t back = 0;
        Affine transform;
        std::size_t open_transforms = 0;
    };

    void call(std::int64_t distance, const CodeReader& reader, const Affine& turn) {
        if (calls_.size() == max_depth) {
            stop("calls are nested too deep");
            return;
        }
        calls_.push_back({reader.position(), transform_, outer_.size()});
        transform_ = then(turn, transform_);
        jump(distance);
    }

    void turned_call(CodeReader& reader) {
        const auto distance = reader.read<std::int16_t>();
        const double pitch = angle(reader);
        const double bank = angle(reader);
        call(distance, reader, raster::rotation(angle(reader), pitch, bank));
    }

    void sprite_call(CodeReader& reader) {
        const auto distance = reader.read<std::int16_t>();
        const Vec3 place = reader.read_whole_vector();
        const double pitch = angle(reader);
        const double bank = angle(reader);
        Affine turn = raster::rotation(angle(reader), pitch, bank);
        turn.offset = place;
        reader.skip(6); // the variables that turn it
        call(distance, reader, turn);
    }

    static double angle(CodeReader& reader) { return reader.read<std::uint16_t>() * 360.0 / 65536; }

    // False at the end of the object itself.
    bool return_from_call() {
        if (calls_.empty()) {
            ended_ = true;
            return false;
        }
        const Call& call = calls_.back();
        at_ = call.back;
        next_ = call.back;
        transform_ = call.transform;
        outer_.resize(std::min(outer_.size(), call.open_transforms));
        calls_.pop_back();
        return true;
    }

    void transform(CodeReader& reader) {
        Affine matrix;
        matrix.offset = reader.read_vector();
        for (Vec3& row : matrix.rows) {
            row = reader.read_vector();
        }
        begin_transform(matrix);
    }

    void begin_transform(const Affine& matrix) {
        if (outer_.size() == max_depth) {
            stop("transformations are nested too deep");
            return;
        }
        outer_.push_back(transform_);
        transform_ = then(matrix, transform_);
    }

    void end_transform() {
        if (!outer_.empty()) {
            transform_ = outer_.back();
            outer_.pop_back();
        }
    }

    // The head of a list: how many elements of `size` bytes follow.
    std::size_t list_head(CodeReader& reader, std::size_t size) {
        const auto count = reader.read<std::uint16_t>();
        reader.skip(4);
        return reader.has(count * size) ? count : 0;
    }

    void vertex_list(CodeReader& reader) {
        const std::size_t count = list_head(reader, 32);
        vertices_.assign(count, {});
        for (Vertex& vertex : vertices_) {
            vertex = {reader.read_vector(), true};
            reader.skip(20);
        }
    }

    void material_list(CodeReader& reader) {
        const std::size_t count = list_head(reader, 68);
        materials_.assign(count, {});
        for (Skin& skin : materials_) {
            const Vec3 diffuse = reader.read_vector();
            const double alpha = reader.read_float();
            const Vec3 ambient = reader.read_vector();
            skin.diffuse = raster::colour_of_parts(diffuse.x, diffuse.y, diffuse.z, alpha);
            skin.ambient = raster::colour_of_parts(ambient.x, ambient.y, ambient.z, alpha);
            reader.skip(40);
        }
    }

    void texture_list(CodeReader& reader) {
        const std::size_t count = list_head(reader, 80);
        for (std::size_t i = 0; i < count; ++i) {
            reader.skip(16);
            add_texture(reader.read_text(64));
        }
    }

    void material(CodeReader& reader) {
        const auto number = reader.read<std::int16_t>();
        const auto texture = reader.read<std::int16_t>();
        colour_ = plain;
        if (number >= 0 && static_cast<std::size_t>(number) < materials_.size()) {
            const Skin& skin = materials_[static_cast<std::size_t>(number)];
            colour_ = texture >= 0 ? skin.ambient : skin.diffuse;
        }
    }

    void old_texture(CodeReader& reader) {
        const std::size_t length = reader.read<std::uint16_t>();
        reader.skip(8);
        const std::size_t head = reader.position() - reader.start();
        if (length < head) {
            stop("its length is wrong");
            return;
        }
        add_texture(reader.read_text(length - head));
    }

    void add_texture(const std::string& name) {
        if (!name.empty() && shape_.textures.size() < max_textures &&
            std::find(shape_.textures.begin(), shape_.textures.end(), name) ==
                shape_.textures.end()) {
            shape_.textures.push_back(name);
        }
    }

    // Points of the older commands: whole numbers, `behind` bytes of a normal after each.
    void point_list(CodeReader& reader, std::size_t behind) {
        const std::size_t first = reader.read<std::uint16_t>();
        const std::size_t count = reader.read<std::uint16_t>();
        if (first + count > max_points) {
            stop("it loads points beyond 2048");
            return;
        }
        if (!reader.has(count * (6 + behind))) {
            return;
        }
        old_points_.resize(std::max(old_points_.size(), first + count));
        for (std::size_t i = first; i < first + count; ++i) {
            old_points_[i] = {reader.read_whole_vector(), true};
            reader.skip(behind);
        }
    }

    // `size` bytes for each corner, of which the first two are its number.
    void facet(CodeReader& reader, std::size_t size) {
        const std::size_t count = reader.read<std::uint16_t>();
        reader.skip(10); // the normal and its distance
        if (!reader.has(count * size)) {
            return;
        }
        std::vector<std::size_t> corners;
        for (std::size_t i = 0; i < count; ++i) {
            corners.push_back(reader.read<std::uint16_t>());
            reader.skip(size - 2);
        }
        for (std::size_t i = 2; i < count && !ended_; ++i) {
            add_face(old_points_, {corners[0], corners[i - 1], corners[i]});
        }
    }

    // DRAW_TRI, DRAW_LINE or DRAW_POINT: as many numbers as a figure has corners.
    void indexed(CodeReader& reader, std::size_t corners) {
        const std::size_t base = reader.read<std::uint16_t>();
        const std::size_t limit = reader.read<std::uint16_t>();
        const std::size_t count = reader.read<std::uint16_t>();
        if (!reader.has(count * 2)) {
            return;
        }
        std::array<std::size_t, 3> figure{};
        for (std::size_t i = 0; i < count && !ended_; ++i) {
            const std::size_t number = reader.read<std::uint16_t>();
            if (number >= limit) {
                stop("it names a vertex beyond its count");
                return;
            }
            figure[i % corners] = base + number;
            if (i % corners == corners - 1 && corners == 3) {
                add_face(vertices_, figure);
            } else if (i % corners == corners - 1 && corners == 2) {
                add_line(figure[0], figure[1]);
            }
        }
    }

    void add_line(std::size_t from, std::size_t to) {
        const auto a = add_point(vertices_, from);
        const auto b = add_point(vertices_, to);
        if (a && b) {
            shape_.lines.push_back({*a, *b});
        }
    }

    void add_face(const std::vector<Vertex>& table, const std::array<std::size_t, 3>& corners) {
        if (shape_.faces.size() == max_faces) {
            stop("there are too many facets");
            return;
        }
        ShapeFace face;
        face.colour = colour_;
        for (std::size_t i = 0; i < 3; ++i) {
            const auto point = add_point(table, corners[i]);
            if (!point) {
                return;
            }
            face.corners[i] = *point;
        }
        shape_.faces.push_back(face);
    }

    std::optional<std::uint32_t> add_point(const std::vector<Vertex>& table, std::size_t number) {
        if (number >= table.size() || !table[number].known) {
            stop("it names a point that is not loaded");
            return std::nullopt;
        }
        const Vec3 point = transform_.point(table[number].place);
        if (!(std::fabs(point.x) + std::fabs(point.y) + std::fabs(point.z) < largest_coordinate)) {
            stop("a point is not finite, or too far away");
            return std::nullopt;
        }
        shape_.box.add(point);
        shape_.points.push_back(point);
        return static_cast<std::uint32_t>(shape_.points.size() - 1);
    }

    std::string_view code_;
    Shape& shape_;
    std::size_t at_ = 0;
    std::optional<std::size_t> next_; // where a command leads; else to the one after it
    std::uint16_t opcode_ = 0;
    std::size_t work_ = 0; // bytes
    bool ended_ = false;
    std::vector<Call> calls_;
    Affine transform_;
    std::vector<Affine> outer_;
    std::vector<Vertex> vertices_;
    std::vector<Vertex> old_points_;
    std::vector<Skin> materials_;
    Colour colour_ = plain;
};

} // namespace

void read_object(std::string_view code, Shape& shape) {
    Interpreter(code, shape).run();
}

} // namespace morvane::scene
