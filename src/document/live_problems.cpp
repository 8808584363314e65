// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/live_problems.h"

namespace morvane {

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
    request.saved_lines = set.saved;
    request.opened_frame = set.saved ? nullptr : &document.opened_frame();
    for (const StepMaterial* material : document.processed_materials()) {
        request.planned.push_back({material->row, material->kind, material->parameters});
    }
    return find_problems(disk, request);
}

} // namespace morvane
