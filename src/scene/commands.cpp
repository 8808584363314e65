// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/commands.h"

#include "base/text.h"
#include "scene/masm.h"

#include <algorithm>
#include <array>
#include <utility>

namespace morvane::scene {

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
