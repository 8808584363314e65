// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// Something about a source that its author should know.
struct Problem {
    std::string code; // such as "skip-label"; docs/problems.md explains each
    Severity severity = Severity::Error;
    std::string text;                 // what is wrong and what to do, in one sentence
    std::string path{};               // empty: about no file
    std::size_t line = 0;             // from 1; 0: about the whole file
    std::optional<std::size_t> row{}; // of the list of marked materials, from 1

    bool operator==(const Problem&) const = default;
};

/// Puts errors before warnings before notes; otherwise their order stays.
void sort_worst_first(std::vector<Problem>& problems);

/// The note that reports a problem in a message log: its text, then its code in brackets.
Note note_of(const Problem& problem);

} // namespace morvane
