// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "problems/assembly_checks.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace morvane {

namespace {

using Definitions = std::unordered_map<std::string_view, const Statement*>;

bool is_definition(const Statement& statement) {
    return statement.kind == Statement::Kind::Label || statement.kind == Statement::Kind::Equate;
}

// "SKIP_FX", "SKIP_LIB": the closing labels of groups, which nothing jumps to.
bool is_closing_label(std::string_view name) {
    return name == "SKIP_FX" || name == "SKIP_LIB";
}

// "SKIP_FX37", "LBL2a": labels that are numbered by line or row of their own set.
bool is_numbered_label(std::string_view name) {
    for (const std::string_view stem : {"SKIP_FX", "SKIP_LIB", "LBL"}) {
        if (name.starts_with(stem)) {
            const std::string_view number = name.substr(stem.size());
            return !number.empty() && number.front() >= '0' && number.front() <= '9';
        }
    }
    return false;
}

std::string first_place(const FlatSource& source, const Statement& first) {
    return " is defined here again, after " + source.place(first);
}

Problem duplicate(const FlatSource& source, const Statement& first, const Statement& again) {
    const std::string name(again.name);
    std::string code = "duplicate-label";
    std::string advice = "; rename one of the two, and its uses.";
    if (is_closing_label(name)) {
        code = "skip-label";
        advice = "; no code jumps to it: comment this line out, or let the recipe say "
                 "unique_labels = true.";
    } else if (is_numbered_label(name)) {
        advice = ", by code generated for two model files; give all labels of one of them a suffix "
                 "with rename-labels.";
    } else if (name == "model_shadow") {
        advice = "; comment this line out together with the include line after it, unless the "
                 "shadow is to come from that model: then comment the first one out.";
    } else if (again.kind == Statement::Kind::Equate) {
        advice = " with another value; keep one of the two lines.";
    }
    return problem_at(source, again, Severity::Error, std::move(code),
                      name + first_place(source, first) + advice);
}

// An equate may be repeated with its value, and "=" gives new values as often as one likes.
bool may_repeat(const Statement& first, const Statement& again) {
    return first.kind == Statement::Kind::Equate && again.kind == Statement::Kind::Equate &&
           (first.keyword == "=" || first.rest == again.rest);
}

Definitions definitions_of(const FlatSource& source) {
    Definitions definitions;
    for (const Statement& statement : source.statements) {
        if (is_definition(statement)) {
            definitions.try_emplace(statement.name, &statement);
        }
    }
    return definitions;
}

// A plain name; other operands (numbers, expressions) are the assembler's business.
bool is_name(std::string_view text) {
    const auto fits = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               c == '_' || c == '@' || c == '?' || c == '$';
    };
    return !text.empty() && !(text.front() >= '0' && text.front() <= '9') && text != "$" &&
           std::all_of(text.begin(), text.end(), fits);
}

// The line that holds a label as a comment; 0 when there is none.
std::size_t commented_label(const LineStore& lines, std::string_view name) {
    for (std::size_t line = 1; line <= lines.count(); ++line) {
        std::string_view text = cut_white(lines.line(line));
        if (text.starts_with(';')) {
            text = cut_white(text.substr(1));
            if (text.starts_with(name) && read_statement(text).name == name) {
                return line;
            }
        }
    }
    return 0;
}

class UseChecker {
  public:
    UseChecker(const FlatSource& source, Problems& problems)
        : source_(source), problems_(problems), definitions_(definitions_of(source)),
          may_be_elsewhere_(
              std::any_of(source.missing.begin(), source.missing.end(),
                          [](const MissingInclude& file) { return !file.macros && file.named; })) {}

    void check(const Statement& call) {
        if (macro_rule(call.macro).jump == Jump::None) {
            return;
        }
        const Operands operands(call.rest);
        if (!may_be_elsewhere_ && is_name(operands[1]) && is_new(operands[1])) {
            problems_.push_back(undefined_label(call, std::string(operands[1])));
        }
        const bool tests = call.macro == MacroId::IfMsk || call.macro == MacroId::IfIn1;
        if (tests && operands[2].starts_with("dict_") && is_new(operands[2])) {
            problems_.push_back(undefined_entry(call, std::string(operands[2])));
        }
    }

  private:
    // Undefined, and not reported before.
    bool is_new(std::string_view name) {
        return !definitions_.contains(name) && !source_.names.contains(std::string(name)) &&
               reported_.insert(name).second;
    }

    Problem undefined_label(const Statement& call, const std::string& name) const {
        std::string advice = " is defined nowhere; define it, or correct its name.";
        if (name == "model_shadow") {
            advice = " is defined nowhere; put \"model_shadow label BGLCODE\" and a line that "
                     "includes the shadow model before the line BGL_END";
            const std::size_t line = commented_label(*source_.files.front().lines, name);
            advice += line == 0 ? "."
                                : ", or remove the \";\" of line " + to_text(line) +
                                      " to cast the shadow from the whole model.";
        }
        return problem_at(source_, call, Severity::Error, "undefined-label",
                          "the label " + name + advice);
    }

    Problem undefined_entry(const Statement& call, const std::string& name) const {
        const std::string advice =
            definitions_.contains("param_extension_dictionary")
                ? " is not an entry of the parameter dictionary; copy its two lines from the frame "
                  "file of the export that uses it, or process those lights in the complete model."
                : " is used, but the frame file has no parameter dictionary; take the frame file "
                  "of an export that has one.";
        return problem_at(source_, call, Severity::Error, "undefined-dictionary-name",
                          name + advice);
    }

    const FlatSource& source_;
    Problems& problems_;
    Definitions definitions_;
    bool may_be_elsewhere_; // in an included file that was not found
    std::unordered_set<std::string_view> reported_;
};

} // namespace

void check_definitions(const FlatSource& source, Problems& problems) {
    Definitions definitions;
    for (const Statement& statement : source.statements) {
        if (!is_definition(statement)) {
            continue;
        }
        const auto [place, added] = definitions.try_emplace(statement.name, &statement);
        if (!added && !may_repeat(*place->second, statement)) {
            problems.push_back(duplicate(source, *place->second, statement));
        }
    }
}

void check_uses(const FlatSource& source, Problems& problems) {
    UseChecker checker(source, problems);
    for (const Statement& statement : source.statements) {
        if (statement.kind == Statement::Kind::Call) {
            checker.check(statement);
        }
    }
}

} // namespace morvane
