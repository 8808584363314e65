// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/masm.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

namespace morvane::scene {

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

const char* skip_blanks(const char* at, const char* end) {
    while (at != end && is_blank(*at)) {
        ++at;
    }
    return at;
}

// Reads a number at the start; nullptr when there is none.
const char* read_real(const char* at, const char* end, double& value) {
    if (at != end && *at == '+') {
        ++at;
    }
    const auto [next, error] = std::from_chars(at, end, value);
    return error == std::errc() && std::isfinite(value) ? next : nullptr;
}

// Where the operand that begins at `from` ends: at a comma, at a comment or at the text's end.
std::size_t operand_end(std::string_view text, std::size_t from) {
    char closing = 0;
    for (std::size_t i = from; i < text.size(); ++i) {
        const char c = text[i];
        if (closing != 0) {
            closing = c == closing ? '\0' : closing;
        } else if (c == '"' || c == '\'' || c == '<') {
            closing = c == '<' ? '>' : c;
        } else if (c == ',' || c == ';') {
            return i;
        }
    }
    return text.size();
}

} // namespace

std::string_view stripped(std::string_view text) {
    while (!text.empty() && is_blank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && is_blank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

Statement statement_of(std::string_view line) {
    line = stripped(line);
    std::size_t end = 0;
    while (end < line.size() && !is_blank(line[end]) && line[end] != ';') {
        ++end;
    }
    return {line.substr(0, end), stripped(line.substr(end))};
}

std::vector<std::string_view> operands_of(std::string_view text) {
    std::vector<std::string_view> result;
    text = stripped(text);
    for (std::size_t from = 0; !text.empty();) {
        const std::size_t end = operand_end(text, from);
        result.push_back(stripped(text.substr(from, end - from)));
        if (end == text.size() || text[end] == ';') {
            break;
        }
        from = end + 1;
    }
    return result;
}

std::optional<std::string_view> quoted(std::string_view text) {
    const std::size_t open = text.find('"');
    const std::size_t close = open == text.npos ? open : text.find('"', open + 1);
    if (close == text.npos) {
        return std::nullopt;
    }
    return text.substr(open + 1, close - open - 1);
}

std::optional<double> real_number(std::string_view text) {
    text = stripped(text);
    const char* end = text.data() + text.size();
    double value = 0;
    if (read_real(text.data(), end, value) != end || text.empty()) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::int64_t> whole_number(std::string_view text) {
    text = stripped(text);
    const bool hex = !text.empty() && (text.back() == 'h' || text.back() == 'H');
    const std::string_view digits = text.substr(0, text.size() - (hex ? 1 : 0));
    std::int64_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto [next, error] = std::from_chars(digits.data(), end, value, hex ? 16 : 10);
    if (error != std::errc() || next != end || value > 0xFFFFFFFF || value < -0x80000000LL) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::int32_t> word_number(std::string_view text) {
    const auto value = whole_number(text);
    return value ? std::optional(static_cast<std::int32_t>(static_cast<std::uint32_t>(*value)))
                 : std::nullopt;
}

bool read_numbers(std::string_view text, std::span<double> result) {
    const char* at = text.data();
    const char* end = at + text.size();
    for (std::size_t i = 0; i < result.size(); ++i) {
        if (i > 0) {
            if (at == end || *at != ',') {
                return false;
            }
            ++at;
        }
        at = read_real(skip_blanks(at, end), end, result[i]);
        if (at == nullptr) {
            return false;
        }
        at = skip_blanks(at, end);
    }
    return true;
}

namespace {

using Entry = std::pair<std::string_view, Command>;

// In the order of bytes, for a binary search.
constexpr std::array<Entry, 47> commands{{
    {"BGL_ANIMATE", Command::Animate},
    {"BGL_CALL", Command::Call},
    {"BGL_CALL_32", Command::Call},
    {"BGL_EFFECT", Command::Effect},
    {"BGL_JUMP", Command::Jump},
    {"BGL_JUMP_32", Command::Jump},
    {"BGL_LIBRARY_CALL", Command::LibraryCall},
    {"BGL_LIGHT", Command::Light},
    {"BGL_RETURN", Command::Return},
    {"BGL_TRANSFORM_END", Command::TransformEnd},
    {"BGL_TRANSFORM_MAT", Command::Transform},
    {"BGL_WINDSOCK", Command::Windsock},
    {"DRAW_LINE", Command::Line},
    {"DRAW_LINE_BEGIN", Command::Lines},
    {"DRAW_LINE_END", Command::BlockEnd},
    {"DRAW_POINT_END", Command::BlockEnd},
    {"DRAW_TRI", Command::Triangle},
    {"DRAW_TRI_BEGIN", Command::Triangles},
    {"DRAW_TRI_END", Command::BlockEnd},
    {"IFIN1", Command::Condition},
    {"IFINF1", Command::Condition},
    {"IFMSK", Command::Condition},
    {"IFSIZEV", Command::DetailCondition},
    {"INSTANCE_CALL", Command::TurnedCall},
    {"KZM_FX1", Command::Effect},
    {"KZM_LIBRARY_CALL", Command::LibraryCall},
    {"KZM_WINDSOCK", Command::Windsock},
    {"MATERIAL", Command::Material},
    {"MATERIAL_DEF", Command::MaterialDefinition},
    {"MATERIAL_LIST_BEGIN", Command::MaterialList},
    {"MATERIAL_LIST_END", Command::ListEnd},
    {"POINT_VICALL", Command::TurnedCall},
    {"SCALE", Command::Scale},
    {"SCALE_AGL", Command::Scale},
    {"SHADOW_CALL", Command::ShadowCall},
    {"SHADOW_CALL32", Command::ShadowCall},
    {"SHADOW_VICALL", Command::ShadowCall},
    {"SHADOW_VICALL32", Command::ShadowCall},
    {"TEXTURE_DEF", Command::TextureDefinition},
    {"TEXTURE_LIST_BEGIN", Command::TextureList},
    {"TEXTURE_LIST_END", Command::ListEnd},
    {"VERTEX_DEF", Command::VertexDefinition},
    {"VERTEX_LIST_BEGIN", Command::VertexList},
    {"VERTEX_LIST_END", Command::ListEnd},
    {"VINSTANCE_CALL", Command::TurnedCall},
    {"VINSTANCE_CALL32", Command::TurnedCall},
    {"VINSTANCE_CALL_32", Command::TurnedCall},
}};
static_assert(std::is_sorted(commands.begin(), commands.end(),
                             [](const Entry& a, const Entry& b) { return a.first < b.first; }));

Command of_word(std::string_view word) {
    const auto found = std::lower_bound(
        commands.begin(), commands.end(), word,
        [](const Entry& entry, std::string_view key) { return entry.first < key; });
    return found != commands.end() && found->first == word ? found->second : Command::None;
}

Command of_comment(std::string_view comment) {
    if (!comment.starts_with("DRAW_TRI")) {
        return Command::None; // the fast way out: most comments are words
    }
    switch (of_word(statement_of(comment).word)) {
    case Command::Triangles:
        return Command::CommentedTriangles;
    case Command::Triangle:
        return Command::CommentedTriangle;
    case Command::BlockEnd:
        return Command::CommentedEnd;
    default:
        return Command::None;
    }
}

} // namespace

Command command_of(std::string_view line) {
    const Statement statement = statement_of(line);
    if (!statement.word.empty()) {
        const Command command = of_word(statement.word);
        return command == Command::None && !label_name(line).empty() ? Command::Label : command;
    }
    const std::string_view rest = statement.rest;
    return rest.starts_with(';') ? of_comment(stripped(rest.substr(1))) : Command::None;
}

std::string_view label_name(std::string_view line) {
    const Statement statement = statement_of(line);
    if (statement.word.size() > 1 && statement.word.back() == ':') {
        return statement.word.substr(0, statement.word.size() - 1);
    }
    const std::string_view second = statement_of(statement.rest).word;
    return second.size() == 5 && equal_ignoring_case(second, "label") ? statement.word
                                                                      : std::string_view();
}

bool draws(Command command) {
    switch (command) {
    case Command::Triangle:
    case Command::Line:
    case Command::Light:
    case Command::Effect:
    case Command::Windsock:
    case Command::LibraryCall:
        return true;
    default:
        return false;
    }
}

} // namespace morvane::scene
