// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/decode_mark.h"

#include "raster/vector.h"
#include "scene/masm.h"

#include <cmath>

namespace morvane::scene {

namespace {

using Operands = std::vector<std::string_view>;

// Numbers further out are no model's: they would only make everything else too small to see.
constexpr double largest_size = 1e6;

bool is_plausible(const Vec3& place) {
    return is_finite(place) && std::fabs(place.x) <= largest_size &&
           std::fabs(place.y) <= largest_size && std::fabs(place.z) <= largest_size;
}

std::optional<Vec3> vector_at(const Operands& operands, std::size_t first) {
    if (operands.size() < first + 3) {
        return std::nullopt;
    }
    const auto x = real_number(operands[first]);
    const auto y = real_number(operands[first + 1]);
    const auto z = real_number(operands[first + 2]);
    return x && y && z ? std::optional(Vec3{*x, *y, *z}) : std::nullopt;
}

std::optional<Colour> colour_at(const Operands& operands, std::size_t index) {
    const auto word = index < operands.size() ? word_number(operands[index]) : std::nullopt;
    return word ? std::optional(static_cast<Colour>(*word) | 0xFF000000) : std::nullopt;
}

Colour swapped(Colour colour) {
    return (colour & 0xFF00FF00) | (colour & 0xFF) << 16 | (colour >> 16 & 0xFF);
}

std::optional<Mark> light(const Operands& operands, const Affine& frame) {
    const auto place = vector_at(operands, 1);
    if (!place) {
        return std::nullopt;
    }
    Mark mark;
    mark.kind = MarkKind::Light;
    mark.name = operands[0];
    mark.cone = mark.name == "LIGHT_LANDING" || mark.name == "LIGHT_TAXI";
    mark.place = frame.point(*place);
    mark.direction = unit(frame.direction(vector_at(operands, 8).value_or(Vec3{})));
    mark.colour = colour_at(operands, 7).value_or(0xFFFFFFFF);
    return mark;
}

std::optional<Mark> effect(std::string_view text, const Affine& frame) {
    const Operands operands = operands_of(text);
    const auto name = operands.empty() ? std::nullopt : quoted(operands[0]);
    if (!name) {
        return std::nullopt;
    }
    Mark mark;
    mark.kind = MarkKind::Effect;
    mark.name = *name;
    mark.parameters = operands.size() > 1 ? quoted(operands[1]).value_or("") : "";
    mark.place = frame.offset;
    mark.colour = 0xFFFF8C1A;
    return mark;
}

std::optional<Mark> windsock(const Operands& operands, const Affine& frame) {
    const auto place = vector_at(operands, 0);
    const auto height = operands.size() > 4 ? real_number(operands[3]) : std::nullopt;
    const auto sock = operands.size() > 4 ? real_number(operands[4]) : std::nullopt;
    if (!place || !height || !sock) {
        return std::nullopt;
    }
    Mark mark;
    mark.kind = MarkKind::Windsock;
    mark.place = frame.point(*place);
    mark.height = length(frame.direction({0, *height, 0}));
    mark.length = length(frame.direction({*sock, 0, 0}));
    mark.colour = swapped(colour_at(operands, 5).value_or(0xFFFFFFFF));
    mark.sock_colour = colour_at(operands, 6).value_or(0xFFFFFFFF);
    mark.lit = operands.size() > 7 && operands[7] == "1";
    return mark;
}

std::optional<Mark> library_call(const Operands& operands, const Affine& frame) {
    Mark mark;
    mark.kind = MarkKind::LibraryCall;
    for (std::size_t i = 0; i < mark.guid.size(); ++i) {
        const auto word = i < operands.size() ? word_number(operands[i]) : std::nullopt;
        if (!word) {
            return std::nullopt;
        }
        mark.guid[i] = *word;
        mark.name += (i > 0 ? "," : "") + std::string(operands[i]);
    }
    mark.place = frame.offset;
    mark.direction = unit(frame.direction({0, 0, 1}));
    mark.colour = 0xFF4FA3FF;
    return mark;
}

std::optional<Mark> decode(Command command, std::string_view text, const Affine& frame) {
    switch (command) {
    case Command::Light:
        return light(operands_of(text), frame);
    case Command::Effect:
        return effect(text, frame);
    case Command::Windsock:
        return windsock(operands_of(text), frame);
    case Command::LibraryCall:
        return library_call(operands_of(text), frame);
    default:
        return std::nullopt;
    }
}

std::string kind_name(Command command) {
    switch (command) {
    case Command::Light:
        return "a light";
    case Command::Effect:
        return "an effect";
    case Command::Windsock:
        return "a windsock";
    default:
        return "a library call";
    }
}

} // namespace

std::optional<Mark> decode_mark(Command command, std::string_view text, const Affine& frame,
                                std::size_t line, Problems& problems) {
    auto mark = decode(command, statement_of(text).rest, frame);
    if (!mark) {
        problems.add(kind_name(command) + " cannot be read", line);
        return std::nullopt;
    }
    if (!is_plausible(mark->place) || !std::isfinite(mark->height + mark->length) ||
        mark->height + mark->length > largest_size) {
        problems.add(kind_name(command) + " is too far away to be drawn", line);
        return std::nullopt;
    }
    mark->frame = frame;
    return mark;
}

std::optional<Affine> decode_transform(std::string_view text) {
    std::array<double, 12> n{};
    if (!read_numbers(statement_of(text).rest, n)) {
        return std::nullopt;
    }
    return Affine{{Vec3{n[3], n[4], n[5]}, Vec3{n[6], n[7], n[8]}, Vec3{n[9], n[10], n[11]}},
                  {n[0], n[1], n[2]}};
}

std::optional<Affine> decode_animation(std::string_view text) {
    const Operands operands = operands_of(statement_of(text).rest);
    const auto by = operands.size() >= 3 ? vector_at(operands, operands.size() - 3) : std::nullopt;
    return by ? std::optional(raster::translation(*by)) : std::nullopt;
}

Affine decode_turn(std::string_view text) {
    const Operands operands = operands_of(statement_of(text).rest);
    const auto degrees = [&](std::size_t i) {
        const auto number = i < operands.size() ? whole_number(operands[i]) : std::nullopt;
        return number ? static_cast<double>(*number) * 360 / 65536 : 0.0;
    };
    return raster::rotation(degrees(3), degrees(1), degrees(2));
}

} // namespace morvane::scene
