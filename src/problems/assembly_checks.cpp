// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/assembly_checks.h"

#include "base/paths.h"
#include "base/text.h"

#include <algorithm>
#include <unordered_set>

namespace morvane {

Problem problem_at(const FlatSource& source, const Statement& statement, Severity severity,
                   std::string code, std::string text) {
    return {std::move(code), severity, std::move(text), source.path(statement), statement.line};
}

Problems find_assembly_problems(const FlatSource& source) {
    Problems problems;
    check_includes(source, problems);
    check_definitions(source, problems);
    check_uses(source, problems);
    check_own_macros(source, problems);
    check_dictionary(source, problems);
    check_jumps(source, problems);
    return problems;
}

namespace {

// The simulator's macros are wherever its author installed them, and need not be on this machine.
bool is_elsewhere(std::string_view path) {
    return path.find_first_of("\\/") != std::string_view::npos;
}

std::string_view line_of(const FlatSource& source, const Statement& statement) {
    return source.files[statement.file].lines->line(statement.line);
}

// A ";" in the middle of a word is no comment's beginning that anybody meant.
bool is_cut_by_semicolon(std::string_view line) {
    const std::size_t at = line.find(';');
    return at != std::string_view::npos && at > 0 && at + 1 < line.size() && line[at - 1] != ' ' &&
           line[at - 1] != '\t' && line[at + 1] != ' ' &&
           (line.find('\\', at) != std::string_view::npos ||
            line.find('/', at) != std::string_view::npos ||
            line.find(".asm", at) != std::string_view::npos);
}

void report(const FlatSource& source, const MissingInclude& missing, Problems& problems) {
    const Statement& include = source.statements[missing.statement];
    const std::string path(include.rest);
    const std::string name = file_name_part(path);
    if (is_cut_by_semicolon(line_of(source, include))) {
        problems.push_back(problem_at(source, include, Severity::Error, "include-semicolon",
                                      "a \";\" in the path begins a comment, so that only \"" +
                                          path +
                                          "\" is included; move the file to a folder "
                                          "without one."));
    } else if (!missing.named) {
        problems.push_back(problem_at(source, include, Severity::Error, "include-nameless",
                                      "this line includes no model, as none was given; comment it "
                                      "out, or name a model file."));
    } else if (!missing.macros) {
        problems.push_back(problem_at(source, include, Severity::Error, "include-missing",
                                      path + " is not there, and no file " + name +
                                          " is beside the frame file; correct the path."));
    } else if (!is_elsewhere(path)) {
        problems.push_back(problem_at(source, include, Severity::Note, "include-missing",
                                      name + " is not beside the frame file; copy it there, "
                                             "unless the compiler finds it elsewhere."));
    }
}

bool defines_own_macros(std::string_view path) {
    const std::string name = file_name_part(path);
    return equal_ignoring_case(name, "morvane.inc") || equal_ignoring_case(name, "model.inc");
}

} // namespace

void check_includes(const FlatSource& source, Problems& problems) {
    for (const MissingInclude& missing : source.missing) {
        report(source, missing, problems);
    }
}

void check_own_macros(const FlatSource& source, Problems& problems) {
    std::unordered_set<std::string_view> reported;
    for (const Statement& statement : source.statements) {
        if (statement.kind == Statement::Kind::Include && defines_own_macros(statement.rest)) {
            return; // what follows has them all, and nobody calls them earlier
        }
        if (statement.kind != Statement::Kind::Call || !statement.keyword.starts_with("KZM_") ||
            source.macros.contains(std::string(statement.keyword)) ||
            !reported.insert(statement.keyword).second) {
            continue;
        }
        problems.push_back(problem_at(source, statement, Severity::Error, "macro-undefined",
                                      std::string(statement.keyword) +
                                          " is called, but no included file defines it; put "
                                          "\"include morvane.inc\" before the line that includes "
                                          "the model file."));
    }
}

} // namespace morvane
