// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/assembly_checks.h"

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

} // namespace morvane
