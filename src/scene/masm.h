// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace morvane::scene {

/// Source lines read as the assembler reads them, unlike source/fields.h, whose splitting has
/// bounds of its own that generated code depends on.

/// `text` without blanks and tabs at both ends.
std::string_view stripped(std::string_view text);

/// The first word of a line and the rest of it.
struct Statement {
    std::string_view word;
    std::string_view rest;
};
Statement statement_of(std::string_view line);

/// Operands separated by commas outside of quotes and <>, up to a ";", each without blanks around.
std::vector<std::string_view> operands_of(std::string_view text);

/// The text between the first two double quotes; std::nullopt without two.
std::optional<std::string_view> quoted(std::string_view text);

/// A decimal number, whole text; infinite and not-a-number spellings are none.
std::optional<double> real_number(std::string_view text);

/// A decimal or, with an "h" after it, hexadecimal whole number of at most 32 bits.
std::optional<std::int64_t> whole_number(std::string_view text);
/// Likewise, as a signed 32-bit word.
std::optional<std::int32_t> word_number(std::string_view text);

/// Reads numbers separated by commas into `result`; false unless all of them are there.
bool read_numbers(std::string_view text, std::span<double> result);

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
