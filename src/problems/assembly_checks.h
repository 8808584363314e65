// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "problems/flat_source.h"
#include "problems/problem.h"

#include <vector>

namespace morvane {

using Problems = std::vector<Problem>;

// What the assembler stops at wherever it stands in the source. Each adds what it finds.

/// A label or name that is defined again, or with another value.
void check_definitions(const FlatSource& source, Problems& problems);
/// A label that is jumped to, or a name of the parameter dictionary, that is defined nowhere.
void check_uses(const FlatSource& source, Problems& problems);
/// Files that are not found, and include lines that name none.
void check_includes(const FlatSource& source, Problems& problems);
/// A macro of ours that no file defines.
void check_own_macros(const FlatSource& source, Problems& problems);
/// Jumps of 16 bits over more than 32,767 bytes, and those over nine tenths of that.
void check_jumps(const FlatSource& source, Problems& problems);
/// The parameter dictionary and the header before it.
void check_dictionary(const FlatSource& source, Problems& problems);

/// All of them.
Problems find_assembly_problems(const FlatSource& source);

/// A problem at a statement.
Problem problem_at(const FlatSource& source, const Statement& statement, Severity severity,
                   std::string code, std::string text);

} // namespace morvane
