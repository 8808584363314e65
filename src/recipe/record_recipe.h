// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recipe/recipe.h"
#include "source/open_set.h"

#include <cstddef>
#include <vector>

namespace morvane {

/// What a material was turned into, and with which parameters.
struct MadeMaterial {
    std::size_t row = 0; // of the list of marked materials, from 1
    Kind kind = Kind::Lights;
    Parameters parameters;
};

/// The recipe that makes the same of the same export again. A material is named by its two colours,
/// and by its place in the list only where those fit another marked material too: so the recipe
/// outlives a change of the list's order as far as it can.
Recipe record_recipe(const OpenSet& set, const std::vector<MadeMaterial>& made);

} // namespace morvane
