// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "base/text.h"
#include "problems/literals.h"
#include "problems/set_checks.h"
#include "source/source_set.h"

#include <array>

namespace morvane {

namespace {

// Operands of the reference line that this program reads as hexadecimal, whatever their last
// character is.
constexpr std::array<std::size_t, 3> hexadecimal_operands{5, 7, 8};

struct FrameLines {
    std::vector<Statement> references;
    Statement last;
    bool aircraft = false;
};

FrameLines read_frame(const LineStore& frame) {
    FrameLines found;
    for (std::size_t line = 1; line <= frame.count(); ++line) {
        Statement statement = read_statement(frame.line(line));
        statement.line = static_cast<std::uint32_t>(line);
        if (statement.kind == Statement::Kind::Empty) {
            continue;
        }
        found.last = statement;
        found.aircraft = found.aircraft || statement.name == "visual_model_header" ||
                         statement.name == "param_extension_dictionary";
        if (statement.macro == MacroId::ScaleAgl) {
            found.references.push_back(statement);
        }
    }
    return found;
}

class FrameChecker {
  public:
    FrameChecker(const OpenSet& set, Problems& problems)
        : path_(frame_file_name(set.base)), problems_(problems) {}

    void check(const FrameLines& frame) {
        if (frame.references.empty() && !frame.aircraft) {
            add(0, Severity::Warning, "reference-missing",
                "the frame file has no SCALE_AGL line, so that effects and library objects have "
                "no place; export the model as scenery.");
        }
        if (frame.references.size() > 1) {
            add(frame.references.back().line, Severity::Warning, "reference-twice",
                "this is not the first SCALE_AGL line (that is line " +
                    to_text(frame.references.front().line) +
                    "), and the last one counts; remove one of them.");
        }
        for (const Statement& reference : frame.references) {
            check(reference);
        }
        if (frame.last.macro != MacroId::End) {
            add(frame.last.line, Severity::Error, "missing-end",
                "the frame file does not end with END; add that line.");
        }
    }

  private:
    void check(const Statement& reference) {
        const Operands operands(reference.rest);
        if (whole_number(operands[4]) == 0) {
            add(reference.line, Severity::Error, "reference-scale",
                "the scale of the reference line is 0; write 65536 for metres.");
        }
        for (const std::size_t number : hexadecimal_operands) {
            const std::string_view text = operands[number];
            if (text != "0" && !text.empty() && !hexadecimal_fault(text).empty()) {
                add(reference.line, Severity::Warning, "reference-hexadecimal",
                    "operand " + to_text(number) + " of SCALE_AGL, \"" + std::string(text) +
                        "\", is read as hexadecimal without its last character; write it as in "
                        "051EDB8h.");
            }
        }
    }

    void add(std::size_t line, Severity severity, std::string code, std::string text) {
        problems_.push_back({std::move(code), severity, std::move(text), path_, line});
    }

    std::string path_;
    Problems& problems_;
};

} // namespace

void check_frame(const OpenSet& set, Problems& problems) {
    FrameChecker(set, problems).check(read_frame(set.frame));
}

} // namespace morvane
