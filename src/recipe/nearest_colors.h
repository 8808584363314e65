// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recipe/recipe.h"
#include "source/open_set.h"

#include <cstddef>
#include <string>
#include <vector>

namespace morvane {

/// A hint for an assignment that matches nothing: which of the materials left (rows of the list,
/// from 1) have the colours nearest to the one it asks for, at most three; without a colour, which
/// are left. Empty when none are.
std::string nearest_colors(const OpenSet& set, const Assignment& assignment,
                           const std::vector<std::size_t>& rows_left);

/// Whether the list shows `listed` for a colour that gmax shows as `wanted` (RRGGBB both): each
/// part the same or one less, since the list cuts off the fraction that gmax rounds.
bool differs_by_rounding(const std::string& listed, const std::string& wanted);

} // namespace morvane
