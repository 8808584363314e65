// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"
#include "system/services.h"

#include <vector>

namespace morvane {

/// Whether the dictionary has the entry that aircraft lights test.
bool holds_light_states(const std::vector<DictionaryRow>& dictionary);

/// Makes sure that the set's dictionary, and its frame store, hold that entry, and marks the frame
/// as changed. Whether the frame store was rewritten for it. Throws RuntimeError.
bool ensure_light_states(const Services& services, OpenSet& set);

} // namespace morvane
