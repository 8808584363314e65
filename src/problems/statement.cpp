// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/statement.h"

#include "base/text.h"

#include <array>
#include <unordered_map>

namespace morvane {

namespace {

// In the order of MacroId.
constexpr auto rules = [] {
    using enum MacroId;
    using enum Jump;
    return std::array{
        MacroRule{"", Other},
        MacroRule{"ADDOBJ", AddObj, -1, -1, -1, Far},
        MacroRule{"BGL_ANIMATE", BglAnimate},
        MacroRule{"BGL_BEGIN", BglBegin, -1, -1, 6},
        MacroRule{"BGL_CALL", BglCall, 1, 1, 4, Near},
        MacroRule{"BGL_CALL_32", BglCall32, 1, 1, 6, Far},
        MacroRule{"BGL_END", BglEnd, 0, 0, 2},
        MacroRule{"BGL_JUMP", BglJump, 1, 1, 4, Near},
        MacroRule{"BGL_JUMP_32", BglJump32, 1, 1, 6, Far},
        MacroRule{"BGL_LIGHT", BglLight, 11, 11, 44},
        MacroRule{"BGL_RETURN", BglReturn, 0, 0, 2},
        MacroRule{"BGL_TRANSFORM_END", TransformEnd, 0, 0, 2},
        MacroRule{"BGL_TRANSFORM_MAT", TransformMat, 12, 12, 50},
        MacroRule{"DRAW_LINE", DrawLine, 2, 2, 4},
        MacroRule{"DRAW_LINE_BEGIN", DrawLineBegin, -1, -1, 8},
        MacroRule{"DRAW_LINE_END", DrawLineEnd, 0, 0, 0},
        MacroRule{"DRAW_POINT", DrawPoint, 1, 1, 2},
        MacroRule{"DRAW_POINT_BEGIN", DrawPointBegin, -1, -1, 8},
        MacroRule{"DRAW_POINT_END", DrawPointEnd, 0, 0, 0},
        MacroRule{"DRAW_TRI", DrawTri, 3, 3, 6},
        MacroRule{"DRAW_TRI_BEGIN", DrawTriBegin, 2, 2, 8},
        MacroRule{"DRAW_TRI_END", DrawTriEnd, 0, 0, 0},
        MacroRule{"IFIN1", IfIn1, 4, 4, 10, Near},
        MacroRule{"IFINF1", IfInF1, 4, 4, 16, Far},
        MacroRule{"IFMSK", IfMsk, 3, 3, 8, Near},
        MacroRule{"IFSIZEV", IfSizeV, 3, 3, 8, Near},
        MacroRule{"INSTANCE_CALL", InstanceCall, 4, 4, 10, Near},
        MacroRule{"KZM_FX1", KzmFx1, 2, 2},
        MacroRule{"KZM_LIBRARY_CALL", KzmLibraryCall, 4, 4, 20},
        MacroRule{"KZM_WINDSOCK", KzmWindsock, 8, 8, 36},
        MacroRule{"MATERIAL", Material, 1, 2, 6},
        MacroRule{"MATERIAL_DEF", MaterialDef, 14, 14, 68},
        MacroRule{"MATERIAL_LIST_BEGIN", MaterialListBegin, -1, -1, 8},
        MacroRule{"MATERIAL_LIST_END", MaterialListEnd, 0, 0, 0},
        MacroRule{"POINT_VICALL", PointVicall},
        MacroRule{"SCALE", Scale, 10, 10, 32, Near},
        MacroRule{"SCALE_AGL", ScaleAgl, 10, 10, 32, Near},
        MacroRule{"SHADOW_CALL", ShadowCall, -1, -1, -1, Far},
        MacroRule{"SHADOW_VICALL", ShadowVicall, 2, 2, -1, Far},
        MacroRule{"SHADOW_VICALL32", ShadowVicall32, 2, 2, 16, Far},
        MacroRule{"SHADOW_VPOSITION", ShadowVposition, 1, 1},
        MacroRule{"TEXTURE_DEF", TextureDef, 4, 4, 80},
        MacroRule{"TEXTURE_LIST_BEGIN", TextureListBegin, -1, -1, 8},
        MacroRule{"TEXTURE_LIST_END", TextureListEnd, 0, 0, 0},
        MacroRule{"VAR_BASE_OVERRIDE", VarBaseOverride, 1, 1, 6},
        MacroRule{"VERTEX_DEF", VertexDef, 8, 8, 32},
        MacroRule{"VERTEX_LIST_BEGIN", VertexListBegin, -1, -1, 8},
        MacroRule{"VERTEX_LIST_END", VertexListEnd, 0, 0, 0},
        MacroRule{"VICALL", Vicall, -1, -1, -1, Far},
        MacroRule{"VINSTANCE_CALL", VinstanceCall, 2, 2, -1, Far},
        MacroRule{"VINSTANCE_CALL32", VinstanceCall32, 2, 2, 16, Far},
        MacroRule{"VPOSITION", Vposition, 0, 4, 12},
        MacroRule{"END", End},
        MacroRule{"db", Db},
        MacroRule{"dd", Dd},
        MacroRule{"dw", Dw},
    };
}();
static_assert(rules.size() == static_cast<std::size_t>(MacroId::Dw) + 1);

std::unordered_map<std::string_view, MacroId> ids_by_name() {
    std::unordered_map<std::string_view, MacroId> ids{
        {"end", MacroId::End}, {"DB", MacroId::Db}, {"DD", MacroId::Dd}, {"DW", MacroId::Dw}};
    for (const MacroRule& rule : rules) {
        ids.emplace(rule.name, rule.id);
    }
    return ids;
}

} // namespace

MacroId macro_id(std::string_view word) {
    static const std::unordered_map<std::string_view, MacroId> ids = ids_by_name();
    const auto found = ids.find(word);
    return found == ids.end() ? MacroId::Other : found->second;
}

const MacroRule& macro_rule(MacroId id) {
    return rules[static_cast<std::size_t>(id)];
}

namespace {

bool is_white(char c) {
    return c == ' ' || c == '\t';
}

bool ends_word(char c) {
    return is_white(c) || c == ';' || c == ',' || c == ':' || c == '=' || c == '"' || c == '\'';
}

std::string_view first_word(std::string_view text) {
    std::size_t end = 0;
    while (end < text.size() && !ends_word(text[end])) {
        ++end;
    }
    return text.substr(0, end);
}

// Quotes hide semicolons and commas; a quote that is never closed hides nothing.
std::size_t behind_quote(std::string_view text, std::size_t open) {
    const std::size_t close = text.find(text[open], open + 1);
    return close == std::string_view::npos ? open + 1 : close + 1;
}

std::string_view without_comment(std::string_view text) {
    if (text.find(';') == std::string_view::npos) {
        return text;
    }
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == ';') {
            return text.substr(0, at);
        }
        at = text[at] == '"' || text[at] == '\'' ? behind_quote(text, at) : at + 1;
    }
    return text;
}

std::string_view rest_of(std::string_view behind) {
    return cut_white(without_comment(behind));
}

bool is_data_directive(std::string_view word) {
    for (const std::string_view directive :
         {"db", "dw", "dd", "dq", "byte", "word", "dword", "real4", "proc"}) {
        if (equal_ignoring_case(word, directive)) {
            return true;
        }
    }
    return false;
}

// Names of types and segments, which may be given again.
bool is_type_directive(std::string_view word) {
    for (const std::string_view directive :
         {"struc", "struct", "segment", "ends", "endp", "typedef", "record", "textequ"}) {
        if (equal_ignoring_case(word, directive)) {
            return true;
        }
    }
    return false;
}

// A line whose first word is no macro that is known: perhaps the second one says what it is.
Statement read_definition(std::string_view name, std::string_view behind) {
    Statement statement;
    const std::string_view text = cut_white(behind);
    const std::string_view word = text.starts_with('=') ? text.substr(0, 1) : first_word(text);
    if (equal_ignoring_case(word, "label") || is_data_directive(word)) {
        statement.kind = Statement::Kind::Label;
    } else if (word == "=" || equal_ignoring_case(word, "equ")) {
        statement.kind = Statement::Kind::Equate;
    } else if (equal_ignoring_case(word, "macro")) {
        statement.kind = Statement::Kind::Macro;
    } else if (is_type_directive(word)) {
        return statement;
    } else {
        statement.kind = Statement::Kind::Call;
        statement.keyword = name;
        statement.rest = rest_of(behind);
        return statement;
    }
    statement.name = name;
    statement.keyword = word;
    statement.rest = rest_of(text.substr(word.size()));
    return statement;
}

} // namespace

std::string_view cut_white(std::string_view text) {
    while (!text.empty() && is_white(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && is_white(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

Statement read_statement(std::string_view line) {
    Statement statement;
    const std::string_view text = cut_white(line);
    if (text.empty() || text.front() == ';') {
        return statement;
    }
    const std::string_view word = first_word(text);
    const std::string_view behind = text.substr(word.size());
    statement.macro = macro_id(word);
    const bool defines = equal_ignoring_case(first_word(cut_white(behind)), "macro");
    if (statement.macro != MacroId::Other && !defines) {
        statement.kind = Statement::Kind::Call;
        statement.keyword = word;
        statement.rest = rest_of(behind);
        return statement;
    }
    if (behind.starts_with(':')) {
        statement.kind = Statement::Kind::Label;
        statement.name = word;
        statement.keyword = behind.substr(0, 1);
        statement.rest = rest_of(behind.substr(1));
        return statement;
    }
    if (equal_ignoring_case(word, "include")) {
        statement.kind = Statement::Kind::Include;
        statement.keyword = word;
        statement.rest = rest_of(behind);
        return statement;
    }
    return read_definition(word, behind);
}

Operands::Operands(std::string_view rest) {
    if (rest.empty()) {
        return;
    }
    std::size_t begin = 0;
    for (std::size_t at = 0; at < rest.size();) {
        const char c = rest[at];
        if (c == ',') {
            add(rest.substr(begin, at - begin));
            begin = ++at;
        } else if (c == '"' || c == '\'') {
            at = behind_quote(rest, at);
        } else if (c == '<' && rest.find('>', at) != std::string_view::npos) {
            at = rest.find('>', at) + 1;
        } else {
            ++at;
        }
    }
    add(rest.substr(begin));
}

void Operands::add(std::string_view operand) {
    if (count_ < most) {
        kept_[count_] = cut_white(operand);
    }
    ++count_;
}

} // namespace morvane
