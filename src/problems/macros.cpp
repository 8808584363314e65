// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/macros.h"

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

} // namespace morvane
