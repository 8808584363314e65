// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/material_code.h"

#include "objects/planned_code.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

// A material's part of the file to come.
struct Part {
    const OpenSet& set;
    const std::vector<std::string>* code; // null: there is none
    std::size_t before_line = 0;          // where the code goes
    std::size_t number = 0;               // of its first line in the file to come
    std::size_t first = 0;                // of the commented lines
    std::size_t lines = 0;
    std::size_t commented = 0; // how many of them the set holds commented out already
    bool planned = false;      // the set does not have the code yet

    // Where a line of the opened model will be.
    std::size_t number_of(std::size_t opened) const {
        const std::size_t number_so_far = ComingFile::model(set).number_of(opened);
        return planned && code != nullptr && opened >= before_line ? number_so_far + code->size()
                                                                   : number_so_far;
    }
};

void add_opened(const Part& part, std::size_t line, std::vector<CodeLine>& lines) {
    if (line >= 1 && line <= part.set.model.count()) {
        lines.push_back(
            {part.number_of(line), std::string(part.set.model.line(line)), LineFate::Same});
    }
}

void add_code(const Part& part, std::vector<CodeLine>& lines) {
    if (part.code == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < part.code->size(); ++i) {
        lines.push_back({part.number + i, (*part.code)[i], LineFate::Added});
    }
}

void add_comments(const Part& part, std::vector<CodeLine>& lines) {
    const std::size_t first_number = part.lines > 0 ? part.number_of(part.first) : 0;
    const std::size_t last = std::min(part.first + part.lines, part.set.model.upper());
    for (std::size_t line = part.first; line < last; ++line) {
        const std::string_view text = part.set.model.line(line);
        const bool is_commented = line - part.first < part.commented;
        lines.push_back({first_number + (line - part.first),
                         is_commented ? std::string(text) : "; " + std::string(text),
                         LineFate::Commented});
    }
}

std::vector<CodeLine> lines_of(const Part& part) {
    std::vector<CodeLine> lines;
    if (part.code == nullptr || part.before_line == part.first) {
        add_opened(part, part.first - 1, lines);
        add_code(part, lines);
        add_comments(part, lines);
        return lines;
    }
    const bool code_first = part.before_line < part.first;
    if (code_first) {
        add_opened(part, part.before_line - 1, lines);
        add_code(part, lines);
    }
    add_opened(part, part.first - 1, lines);
    add_comments(part, lines);
    if (!code_first) {
        add_opened(part, part.before_line - 1, lines);
        add_code(part, lines);
    }
    return lines;
}

// Where the code of a replacement that comes after all those of its place begins.
std::size_t number_after_all(const OpenSet& set, std::size_t before_line) {
    std::size_t number = before_line;
    for (const Replacement& replacement : set.replacements) {
        number += replacement.before_line <= before_line ? replacement.code.size() : 0;
    }
    return number;
}

std::size_t number_of_code(const OpenSet& set, const Replacement& wanted) {
    std::size_t number = wanted.before_line;
    for (const Replacement& replacement : set.replacements) {
        const bool before =
            replacement.before_line < wanted.before_line ||
            (replacement.before_line == wanted.before_line && &replacement < &wanted);
        number += before ? replacement.code.size() : 0;
    }
    return number;
}

MaterialCode planned_code(const Document& document, std::size_t row, Kind kind) {
    const OpenSet& set = document.set();
    PlannedCode plan = plan_code(set, row, kind, document.parameters());
    Part part{set, nullptr, 0, 0, plan.first, plan.lines, set.translation(row).given_up, true};
    if (!plan.code.empty()) {
        part.code = &plan.code;
        part.before_line = plan.before_line;
        part.number = number_after_all(set, plan.before_line);
    }
    MaterialCode result{true, std::move(plan.refusal), {}};
    if (plan.lines > 0) {
        result.lines = lines_of(part);
    }
    return result;
}

} // namespace

MaterialCode material_code(const Document& document, std::size_t row, Kind kind) {
    const OpenSet& set = document.set();
    if (!set.opened || row < 1 || row > set.translations.size()) {
        return {};
    }
    const Replacement* replacement = document.replacement_of(row);
    if (replacement == nullptr) {
        return planned_code(document, row, kind);
    }
    const StepMaterial& made = *document.made(row);
    const std::size_t first = set.translation(row).block.selecting_line + 1;
    const std::size_t lines = made.change.lines();
    return {false,
            {},
            lines_of({set, &replacement->code, replacement->before_line,
                      number_of_code(set, *replacement), first, lines, lines, false})};
}

} // namespace morvane
