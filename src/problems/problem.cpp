// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/problem.h"

#include <algorithm>

namespace morvane {

void sort_worst_first(std::vector<Problem>& problems) {
    std::stable_sort(problems.begin(), problems.end(),
                     [](const Problem& a, const Problem& b) { return a.severity > b.severity; });
}

Note note_of(const Problem& problem) {
    return {problem.text + " [" + problem.code + "]", problem.path, problem.line, problem.severity,
            problem.code};
}

} // namespace morvane
