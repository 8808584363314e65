// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/live_problems.h"

#include "document/coming_file.h"
#include "source/source_set.h"

namespace morvane {

namespace {

// Parameters are in no file: their place is that of the material.
void place_at_material(const OpenSet& set, Problem& problem) {
    if (!problem.path.empty() || !problem.row) {
        return;
    }
    const std::size_t line = set.translation(*problem.row).block.selecting_line;
    problem.path = model_file_name(set.base);
    problem.line = set.saved ? ComingFile::model(set).number_of(line) : line;
}

} // namespace

std::vector<Problem> problems_of(Disk& disk, const Document& document,
                                 const CheckKnowledge& knowledge) {
    const OpenSet& set = document.set();
    if (set.base.empty()) {
        return {};
    }
    ProblemRequest request{set};
    request.allowed = document.allowed();
    request.effects = knowledge.effects;
    request.objects = knowledge.objects;
    request.progress = knowledge.progress;
    request.saved_lines = set.saved;
    request.opened_frame = set.saved ? nullptr : &document.opened_frame();
    for (const StepMaterial* material : document.processed_materials()) {
        request.planned.push_back({material->row, material->kind, material->parameters});
    }
    std::vector<Problem> problems = find_problems(disk, request);
    for (Problem& problem : problems) {
        place_at_material(set, problem);
    }
    return problems;
}

} // namespace morvane
