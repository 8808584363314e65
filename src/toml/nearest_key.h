// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// The candidate that takes the fewest changes to get from `name` (a letter changed, added,
/// omitted, two neighbours swapped; letter case aside); the first of several. Empty when even that
/// one differs in more than half of its letters, so that nobody would have meant it.
std::string nearest_key(std::string_view name, const std::vector<std::string_view>& candidates);

/// A hint after an error about `name`: ' (did you mean "X"?)', or all candidates when none is
/// near.
std::string suggestion(std::string_view name, const std::vector<std::string_view>& candidates);

} // namespace morvane
