// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "source/open_set.h"

#include <vector>

namespace morvane {

/// Why Open refuses a set whose files have been read and analysed.
Note refusal_cause(const OpenSet& set);

/// Materials of a set that Open takes which are easily overlooked: those whose highlight is a pure
/// colour but for 0.02, and marked ones that are drawn in further places.
std::vector<Note> opening_notes(const OpenSet& set);

} // namespace morvane
