#pragma once

#include "source/open_set.h"
#include "system/services.h"

#include <optional>
#include <string>

namespace morvane {

/// Makes sure that the set's dictionary, and its frame store, hold the light-states entry that
/// aircraft lights test, and marks the frame as changed. Throws RuntimeError.
void ensure_light_states(const Services& services, OpenSet& set,
                         const std::optional<std::string>& trace_folder);

} // namespace morvane
