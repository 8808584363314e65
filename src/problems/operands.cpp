// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "problems/line_checks.h"
#include "problems/literals.h"

#include <algorithm>

namespace morvane {

namespace {

// What each operand must be: r a real number, W a whole one of 32 bits, w of 16 bits; anything else
// is left to other checks.
std::string_view forms_of(MacroId macro) {
    switch (macro) {
    case MacroId::BglLight:
        return "-rrrWrrWrrr";
    case MacroId::VertexDef:
        return "rrrrrrrr";
    case MacroId::MaterialDef:
        return "rrrrrrrrrrrrrr";
    case MacroId::TransformMat:
        return "rrrrrrrrrrrr";
    case MacroId::KzmWindsock:
        return "rrrrrWWw";
    case MacroId::KzmLibraryCall:
        return "WWWW";
    case MacroId::Scale:
    case MacroId::ScaleAgl:
        return "-wwWWwWwWw";
    case MacroId::InstanceCall:
        return "-www";
    case MacroId::IfMsk:
        return "--w";
    case MacroId::IfIn1:
        return "--ww";
    case MacroId::IfSizeV:
        return "-ww";
    case MacroId::Material:
    case MacroId::DrawTriBegin:
        return "ww";
    case MacroId::DrawTri:
        return "www";
    case MacroId::TextureDef:
        return "--r-";
    default:
        return {};
    }
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// "FF00h": meant as a number, but read as a name.
bool is_hexadecimal_name(std::string_view text) {
    return text.size() > 1 && (text.back() == 'h' || text.back() == 'H') &&
           std::all_of(text.begin(), text.end() - 1, [](char c) {
               return is_digit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
           });
}

// Names and expressions are the assembler's business.
bool is_meant_as_number(std::string_view text) {
    if (is_digit(text.front())) {
        return text.find_first_of("+-*/() ") == std::string_view::npos;
    }
    return is_hexadecimal_name(text) ||
           (text.size() > 1 && (text[0] == '-' || text[0] == '+') && is_digit(text[1]));
}

std::string operand_of(const Statement& statement, std::size_t number) {
    return "operand " + to_text(number) + " of " + std::string(statement.keyword);
}

void check_real(const Statement& statement, std::size_t number, std::string_view text,
                Problems& problems) {
    if (!is_real_number(text)) {
        add_at(statement, Severity::Error, "real-number",
               operand_of(statement, number) + " is \"" + std::string(text) +
                   "\"; write a number with digits before a point, as in 0.4.",
               problems);
    }
}

void check_whole(const Statement& statement, std::size_t number, std::string_view text, int bits,
                 Problems& problems) {
    const auto value = whole_number(text);
    if (value) {
        const std::int64_t least = -(std::int64_t{1} << (bits - 1));
        const std::int64_t most = (std::int64_t{1} << bits) - 1;
        if (*value < least || *value > most) {
            add_at(statement, Severity::Error, "number-too-wide",
                   operand_of(statement, number) + " is " + std::string(text) + ", but has " +
                       std::to_string(bits) + " bits; write a smaller number.",
                   problems);
        }
        return;
    }
    if (!is_meant_as_number(text)) {
        return;
    }
    if (text.find('.') != std::string_view::npos) {
        add_at(statement, Severity::Error, "whole-number",
               operand_of(statement, number) + " is \"" + std::string(text) +
                   "\", which assembles to the bits of a real number; write a whole number.",
               problems);
    } else if (is_real_number(text)) {
        return;
    } else {
        add_at(statement, Severity::Error, "hexadecimal",
               operand_of(statement, number) + ", \"" + std::string(text) + "\", " +
                   hexadecimal_fault(text) + "; write it as 0CCCCh or in decimal.",
               problems);
    }
}

// Whether there are as many as the macro takes; otherwise that is reported.
bool has_right_count(const Statement& statement, std::size_t count, Problems& problems) {
    const MacroRule& rule = macro_rule(statement.macro);
    const auto found = static_cast<int>(count);
    // VPOSITION has all or none.
    const bool odd = statement.macro == MacroId::Vposition && found != 0 && found != 4;
    if (rule.least < 0 || (found >= rule.least && found <= rule.most && !odd)) {
        return true;
    }
    std::string wanted = std::to_string(rule.most);
    if (rule.least != rule.most) {
        wanted = std::to_string(rule.least) + " or " + wanted;
    }
    add_at(statement, Severity::Error, "operand-count",
           std::string(rule.name) + " takes " + wanted + " operands, not " + to_text(count) +
               "; correct the line.",
           problems);
    return false;
}

} // namespace

void check_operands(const Statement& statement, const Operands& operands, Problems& problems) {
    if (!has_right_count(statement, operands.count(), problems)) {
        return; // which is which cannot be told
    }
    const std::string_view forms = forms_of(statement.macro);
    const bool counted = macro_rule(statement.macro).least >= 0;
    for (std::size_t number = 1; number <= operands.count(); ++number) {
        const std::string_view text = operands[number];
        const char form = number <= forms.size() ? forms[number - 1] : '-';
        if (text.empty()) {
            if (counted) {
                add_at(statement, Severity::Error, "empty-operand",
                       operand_of(statement, number) + " is empty; give it a value.", problems);
            }
        } else if (form == 'r') {
            check_real(statement, number, text, problems);
        } else if (form != '-') {
            check_whole(statement, number, text, form == 'w' ? 16 : 32, problems);
        }
    }
}

} // namespace morvane
