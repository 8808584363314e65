// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "objects/parameters.h"
#include "problems/line_checks.h"
#include "problems/literals.h"

#include <algorithm>
#include <array>

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

namespace {

constexpr std::size_t longest_effect = 79;
constexpr std::size_t longest_texture = 63;

// What light code tests besides the parameter dictionary.
constexpr std::array<std::string_view, 7> defined_variables{"beacnt", "becon2", "becon3", "becon4",
                                                            "becon5", "tod",    "ground"};
constexpr std::array<std::string_view, 2> unpublished_variables{"six_second_beacon",
                                                                "second_flash"};

template <std::size_t count>
bool is_one_of(const std::array<std::string_view, count>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool is_quoted(std::string_view text) {
    return text.size() >= 2 && text.front() == '"' && text.back() == '"';
}

// The text between the quotes; reports one that is not a text. Nothing when that was reported.
std::optional<std::string_view> text_in(const Statement& statement, std::string_view operand,
                                        const char* what, Problems& problems) {
    if (operand.empty()) {
        return std::nullopt; // reported as an empty operand
    }
    const std::string_view inside =
        is_quoted(operand) ? operand.substr(1, operand.size() - 2) : std::string_view();
    if (!is_quoted(operand) || inside.find('"') != std::string_view::npos) {
        add_at(statement, Severity::Error, "quote-in-text",
               std::string(what) + " " + std::string(operand) +
                   " must begin and end with a quotation mark and have none inside; remove it.",
               problems);
        return std::nullopt;
    }
    if (inside.empty()) {
        add_at(statement, Severity::Error, "empty-text",
               std::string(what) + " is empty; give it a name.", problems);
        return std::nullopt;
    }
    return inside;
}

void check_length(const Statement& statement, std::string_view text, const char* what,
                  std::size_t longest, Problems& problems) {
    if (text.size() > longest) {
        add_at(statement, Severity::Error, "text-too-long",
               std::string(what) + " has " + to_text(text.size()) + " characters; shorten it to " +
                   to_text(longest) + ".",
               problems);
    }
}

void check_effect(const Statement& statement, const Operands& operands, Problems& problems) {
    const auto name = text_in(statement, operands[1], "the effect's name", problems);
    if (!name) {
        return; // quotes that do not match would be found again
    }
    check_length(statement, *name, "the effect's name", longest_effect, problems);
    const auto times = text_in(statement, operands[2], "the time constraints", problems);
    if (!times) {
        return;
    }
    if (times->find_first_of("<>") != std::string_view::npos) {
        add_at(statement, Severity::Error, "text-character",
               "the time constraints hold \"<\" or \">\", which a macro's call cannot; remove it.",
               problems);
    } else if (times->size() != time_constraints_length) {
        add_at(statement, Severity::Warning, "time-constraints",
               "the time constraints have " + to_text(times->size()) +
                   " characters, not 40; write them as \"" + std::string(default_time_constraints) +
                   "\".",
               problems);
    }
}

void check_light_type(const Statement& statement, std::string_view type, Problems& problems) {
    const bool known = std::any_of(light_types.begin(), light_types.end() - 1,
                                   [&](const LightTypeEntry& entry) { return entry.text == type; });
    if (!known && !type.empty() && !whole_number(type)) {
        add_at(statement, Severity::Error, "light-type",
               std::string(type) + " is not a light type that the simulator defines; choose "
                                   "another, such as LIGHT_NONE.",
               problems);
    }
}

void check_variable(const Statement& statement, const Operands& operands, Problems& problems) {
    const std::string_view name = operands[2];
    // Exports test variables of many names; code of lights, whose labels are these, only a few.
    const bool lights = operands[1].starts_with("LBL");
    if (name.empty() || name.starts_with("dict_") || is_one_of(defined_variables, name)) {
        return;
    }
    if (is_one_of(unpublished_variables, name)) {
        add_at(statement, Severity::Note, "flash-variable",
               std::string(name) + " is not in the simulator's public definitions and cannot be "
                                   "checked; use beacnt or becon2 to becon5 to be sure.",
               problems);
    } else if (lights) {
        add_at(statement, Severity::Error, "flash-variable",
               std::string(name) + " is not a flash variable; use beacnt or becon2 to becon5.",
               problems);
    }
}

} // namespace

void check_texts(const Statement& statement, const Operands& operands, Problems& problems) {
    if (statement.macro == MacroId::KzmFx1) {
        check_effect(statement, operands, problems);
    } else if (statement.macro == MacroId::TextureDef && operands.count() == 4) {
        if (const auto name = text_in(statement, operands[4], "the texture's name", problems)) {
            check_length(statement, *name, "the texture's name", longest_texture, problems);
        }
    }
}

void check_names(const Statement& statement, const Operands& operands, Problems& problems) {
    if (statement.macro == MacroId::BglLight) {
        check_light_type(statement, operands[1], problems);
    } else if (statement.macro == MacroId::IfMsk || statement.macro == MacroId::IfIn1) {
        check_variable(statement, operands, problems);
    } else if (statement.macro == MacroId::TextureDef && operands.count() == 4 &&
               !operands[1].starts_with("TEXTURE_") && !whole_number(operands[1])) {
        add_at(statement, Severity::Warning, "texture-class",
               std::string(operands[1]) + " is not a texture class; write one such as "
                                          "TEXTURE_BUILDING.",
               problems);
    }
}

} // namespace morvane
