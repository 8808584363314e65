// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>

namespace morvane::scene {

/// What a line of a model file is, as far as a picture is concerned.
enum class Command : std::uint8_t {
    None,               // nothing to draw, blank lines and unknown macros included
    CommentedTriangles, // "; DRAW_TRI_BEGIN", as a rewritten block begins
    CommentedTriangle,
    CommentedEnd, // "; DRAW_TRI_END"
    Label,
    MaterialList,
    MaterialDefinition,
    TextureList,
    TextureDefinition,
    VertexList,
    VertexDefinition,
    ListEnd,
    Material,
    Triangles, // DRAW_TRI_BEGIN
    Triangle,
    Lines, // DRAW_LINE_BEGIN
    Line,
    BlockEnd, // DRAW_TRI_END and its kin
    Transform,
    Animate,
    TransformEnd,
    Scale,
    Jump,
    Call,
    TurnedCall, // INSTANCE_CALL and its kin
    ShadowCall,
    Condition,
    DetailCondition, // IFSIZEV
    Return,
    Light,
    Effect,
    Windsock,
    LibraryCall,
};

Command command_of(std::string_view line);

/// The name that a label line defines; empty for other lines.
std::string_view label_name(std::string_view line);

/// Whether a command brings something to see.
bool draws(Command command);

} // namespace morvane::scene
