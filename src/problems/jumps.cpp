// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "problems/assembly_checks.h"
#include "problems/set_checks.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <unordered_map>
#include <unordered_set>

namespace morvane {

namespace {

constexpr std::int64_t farthest = 32767;
constexpr std::int64_t nearly = farthest * 9 / 10;
constexpr std::int64_t effect_bytes = 91;

std::int64_t data_bytes(std::string_view rest, std::int64_t size) {
    const Operands operands(rest);
    std::int64_t bytes = 0;
    for (std::size_t n = 1; n <= operands.count(); ++n) {
        const std::string_view operand = operands[n];
        const bool text = size == 1 && operand.size() >= 2 && operand.front() == operand.back() &&
                          (operand.front() == '"' || operand.front() == '\'');
        bytes += text ? static_cast<std::int64_t>(operand.size()) - 2 : size;
    }
    return bytes;
}

std::int64_t effect_call_bytes(std::string_view rest) {
    const std::string_view parameters = Operands(rest)[2];
    const auto length =
        parameters.size() < 2 ? 0 : static_cast<std::int64_t>(parameters.size()) - 2;
    const std::int64_t bytes = effect_bytes + length;
    return bytes + bytes % 2;
}

// What a line takes up at least.
std::int64_t bytes_of(const Statement& statement) {
    switch (statement.macro) {
    case MacroId::KzmFx1:
        return effect_call_bytes(statement.rest);
    case MacroId::Db:
        return data_bytes(statement.rest, 1);
    case MacroId::Dw:
        return data_bytes(statement.rest, 2);
    case MacroId::Dd:
        return data_bytes(statement.rest, 4);
    default:
        return std::max(macro_rule(statement.macro).bytes, 0);
    }
}

struct NearJump {
    const Statement* call;
    std::string_view target;
    std::int64_t at;
};

struct Layout {
    std::vector<NearJump> jumps;
    std::unordered_map<std::string_view, std::int64_t> labels;
};

// Offsets are the least there can be: lines of an unknown length count as nothing.
Layout lay_out(const FlatSource& source) {
    Layout layout;
    std::int64_t at = 0;
    for (const Statement& statement : source.statements) {
        at += statement.skipped;
        if (statement.kind == Statement::Kind::Label) {
            layout.labels.try_emplace(statement.name, at);
        } else if (statement.kind == Statement::Kind::Call) {
            if (macro_rule(statement.macro).jump == Jump::Near) {
                layout.jumps.push_back({&statement, Operands(statement.rest)[1], at});
            }
            at += bytes_of(statement);
        }
    }
    return layout;
}

std::string too_far(const NearJump& jump, std::int64_t bytes) {
    const std::string keyword(jump.call->keyword);
    std::string text = keyword + " jumps " + std::to_string(bytes) + " bytes to " +
                       std::string(jump.target) + ", but has 16 bits, which reach " +
                       std::to_string(farthest);
    const bool lights = Operands(jump.call->rest)[2].find("dict_g_lightStates") == 0;
    return text + (lights ? "; give the lights at most 744 triangles a material."
                          : "; divide what is in between into smaller parts.");
}

} // namespace

void check_jumps(const FlatSource& source, Problems& problems) {
    const Layout layout = lay_out(source);
    for (const NearJump& jump : layout.jumps) {
        const auto label = layout.labels.find(jump.target);
        if (label == layout.labels.end()) {
            continue;
        }
        const std::int64_t bytes = std::llabs(label->second - jump.at);
        if (bytes > farthest) {
            problems.push_back(problem_at(source, *jump.call, Severity::Error, "jump-too-far",
                                          too_far(jump, bytes)));
        } else if (bytes > nearly) {
            problems.push_back(
                problem_at(source, *jump.call, Severity::Warning, "jump-nearly-too-far",
                           std::string(jump.call->keyword) + " jumps " + std::to_string(bytes) +
                               " bytes of the " + std::to_string(farthest) +
                               " that its 16 bits reach; add no more in between."));
        }
    }
}

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
