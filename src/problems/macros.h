// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace morvane {

/// The simulator's macros that exports and generated code call, and the three of our own.
enum class MacroId : std::uint8_t {
    Other, // none of them
    AddObj,
    BglAnimate,
    BglBegin,
    BglCall,
    BglCall32,
    BglEnd,
    BglJump,
    BglJump32,
    BglLight,
    BglReturn,
    TransformEnd,
    TransformMat,
    DrawLine,
    DrawLineBegin,
    DrawLineEnd,
    DrawPoint,
    DrawPointBegin,
    DrawPointEnd,
    DrawTri,
    DrawTriBegin,
    DrawTriEnd,
    IfIn1,
    IfInF1,
    IfMsk,
    IfSizeV,
    InstanceCall,
    KzmFx1,
    KzmLibraryCall,
    KzmWindsock,
    Material,
    MaterialDef,
    MaterialListBegin,
    MaterialListEnd,
    PointVicall,
    Scale,
    ScaleAgl,
    ShadowCall,
    ShadowVicall,
    ShadowVicall32,
    ShadowVposition,
    TextureDef,
    TextureListBegin,
    TextureListEnd,
    VarBaseOverride,
    VertexDef,
    VertexListBegin,
    VertexListEnd,
    Vicall,
    VinstanceCall,
    VinstanceCall32,
    Vposition,
    End,
    Db,
    Dd,
    Dw,
};

enum class Jump : std::uint8_t { None, Near, Far }; // 16 bits, 32 bits

/// What is known of a macro. Data directives are in the table too, without a length.
struct MacroRule {
    std::string_view name;
    MacroId id = MacroId::Other;
    int least = -1; // operands; -1: not checked
    int most = -1;
    int bytes = -1;         // that a call takes up; -1: not known, or not always the same
    Jump jump = Jump::None; // operand 1 is a label
};

/// The macro of that name, letter case counting; MacroId::Other for any other word. "END" and data
/// directives are found in lower case too.
MacroId macro_id(std::string_view word);

/// The rule of a macro other than MacroId::Other.
const MacroRule& macro_rule(MacroId id);

} // namespace morvane
