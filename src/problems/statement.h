// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
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

/// What a source line does, as the assembler reads it: tabs are blanks, a comment begins at the
/// first ";" outside of quotes. The views are of the line that was read.
struct Statement {
    enum class Kind : std::uint8_t {
        Empty,   // nothing, or a comment
        Label,   // NAME label TYPE, NAME:, NAME dd ...
        Equate,  // NAME equ VALUE; rest is the value
        Macro,   // NAME macro ..., the beginning of a definition
        Include, // rest is the path
        Call,    // KEYWORD OPERANDS: a macro's call, or a directive without a name
    };

    Kind kind = Kind::Empty;
    MacroId macro = MacroId::Other; // of a call
    std::string_view name;          // that the line defines
    std::string_view keyword;       // as written
    std::string_view rest;          // after the keyword, without comment and blanks at the ends
    std::uint32_t file = 0;         // of the FlatSource that the line belongs to
    std::uint32_t line = 0;         // in the file, from 1
    std::uint32_t skipped = 0;      // bytes of vertices and triangles before it
};

/// Reads one line; `file` and `line` stay 0.
Statement read_statement(std::string_view line);

/// The operands of a call: separated by commas outside of quotes and "<>", blanks and tabs at
/// their ends cut.
class Operands {
  public:
    static constexpr std::size_t most = 48; // further ones are counted but not kept

    explicit Operands(std::string_view rest);
    std::size_t count() const { return count_; }
    /// Operand `number`, from 1; empty for one that is not there.
    std::string_view operator[](std::size_t number) const {
        return number >= 1 && number <= count_ && number <= most ? kept_[number - 1]
                                                                 : std::string_view();
    }

  private:
    void add(std::string_view operand);

    std::array<std::string_view, most> kept_;
    std::size_t count_ = 0;
};

/// `text` without the blanks and tabs at both ends.
std::string_view cut_white(std::string_view text);

} // namespace morvane
