// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/set_checks.h"

#include <unordered_set>

namespace morvane {

namespace {

std::unordered_set<std::string_view> jump_targets(const FlatSource& source) {
    std::unordered_set<std::string_view> targets;
    for (const Statement& statement : source.statements) {
        if (macro_rule(statement.macro).jump != Jump::None) {
            targets.insert(Operands(statement.rest)[1]);
        }
    }
    return targets;
}

bool ends_the_way(MacroId macro) {
    return macro == MacroId::BglReturn || macro == MacroId::BglJump || macro == MacroId::BglJump32;
}

bool is_generated_call(MacroId macro) {
    return macro == MacroId::KzmFx1 || macro == MacroId::KzmLibraryCall ||
           macro == MacroId::KzmWindsock || macro == MacroId::BglLight;
}

} // namespace

void check_flow(const FlatSource& source, Problems& problems) {
    const std::unordered_set<std::string_view> targets = jump_targets(source);
    const Statement* stop = nullptr; // what the way here ended at
    bool reported = false;
    for (const Statement& statement : source.statements) {
        if (statement.kind == Statement::Kind::Label && targets.contains(statement.name)) {
            // The jumps of an object's own code are after the same stop.
            stop = statement.name.starts_with("SKIP_") ? stop : nullptr;
            reported = reported && stop != nullptr;
        } else if (ends_the_way(statement.macro)) {
            stop = &statement;
            reported = false;
        } else if (is_generated_call(statement.macro) && stop != nullptr && !reported) {
            problems.push_back(problem_at(
                source, statement, Severity::Warning, "code-after-return",
                "this object is never drawn, as " + std::string(stop->keyword) + " in " +
                    source.place(*stop) + " ends the way to it; move that line after it."));
            reported = true;
        }
    }
}

} // namespace morvane
