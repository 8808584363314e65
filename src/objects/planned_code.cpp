// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/planned_code.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "objects/model_header.h"

#include <iterator>
#include <utility>

namespace morvane {

namespace {

void append(std::vector<std::string>& code, std::vector<std::string> lines) {
    code.insert(code.end(), std::make_move_iterator(lines.begin()),
                std::make_move_iterator(lines.end()));
}

} // namespace

Rewrite generate_code(DrawBlock& block, const ObjectCode& kind) {
    Rewrite result;
    block.next_line();
    if (block.at_triangle()) {
        result.code = kind.opening;
    }
    for (; block.at_triangle(); block.next_line()) {
        auto lines = kind.triangle(block, block.triangle());
        if (!lines) {
            return {{}, block.line() - block.first_line(), 0, block.line()};
        }
        result.count += lines->size();
        append(result.code, std::move(*lines));
    }
    result.lines = block.line() + 1 - block.first_line();
    result.count += kind.closing_counts ? kind.closing.size() : 0;
    append(result.code, kind.closing);
    return result;
}

namespace {

// False when a triangle cannot be used.
bool make_code(const OpenSet& set, const Translation& material, const ObjectCode& kind,
               PlannedCode& plan) {
    DrawBlock block(set.model, set.vertex_list, material);
    Rewrite rewrite = generate_code(block, kind);
    plan.first = block.first_line();
    plan.lines = rewrite.lines;
    plan.code = std::move(rewrite.code);
    if (rewrite.unusable_line != 0) {
        plan.refusal =
            std::string(kind.unusable) + " (line " + to_text(rewrite.unusable_line) + ")";
    }
    return plan.refusal.empty();
}

// Returns the line, 0 when there is none. Those that would be commented out do not count.
std::size_t bgl_end_beside(const OpenSet& set, const PlannedCode& plan, Reporter& reporter) {
    const std::size_t found = find_bgl_end(set.model, reporter, set.bgl_end);
    const std::size_t behind = plan.first + plan.lines;
    return found >= plan.first && found < behind ? find_bgl_end(set.model, reporter, behind)
                                                 : found;
}

// False when the model has no place for the code.
bool find_place(const OpenSet& set, const Translation& material, Kind kind, PlannedCode& plan) {
    plan.before_line = material.block.selecting_line + 1;
    if (goes_after_bgl_end(kind)) {
        QuietReporter reporter;
        plan.before_line = bgl_end_beside(set, plan, reporter) + 1;
        plan.refusal = reporter.last_box;
    }
    return plan.refusal.empty();
}

PlannedCode refused(std::string refusal) {
    PlannedCode plan;
    plan.refusal = std::move(refusal);
    return plan;
}

} // namespace

bool goes_after_bgl_end(Kind kind) {
    return kind == Kind::Library || kind == Kind::Effects;
}

void require_room(const OpenSet& set, std::size_t lines) {
    if (set.replacements.size() == OpenSet::max_replacements) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "more than 100 processed materials");
    }
    for (const Replacement& replacement : set.replacements) {
        lines += replacement.code.size();
    }
    if (lines > OpenSet::max_code_lines) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                           "more than 50000 lines of generated code");
    }
}

PlannedCode plan_code(const OpenSet& set, std::size_t row, Kind kind,
                      const Parameters& parameters) {
    try {
        const Translation& material = set.translation(row);
        if (!material.processed.empty()) {
            return refused("This material is already processed.");
        }
        PlannedCode plan;
        if (!make_code(set, material, object_code(set, material, kind, parameters), plan)) {
            return plan;
        }
        if (!find_place(set, material, kind, plan)) {
            return refused(plan.refusal);
        }
        require_room(set, plan.code.size());
        return plan;
    } catch (const RuntimeError& error) {
        return refused(error.about().empty()
                           ? std::string(error.description())
                           : std::string(error.description()) + ": " + error.about());
    }
}

} // namespace morvane
