// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "recipe/recipe.h"
#include "source/open_set.h"

#include <cstddef>
#include <string>
#include <vector>

namespace morvane {

/// One Process command of a recipe.
struct PlannedStep {
    std::size_t assignment = 0; // position in the recipe, from 0
    std::size_t row = 0;        // of the list of marked materials, from 1

    bool operator==(const PlannedStep&) const = default;
};

struct RecipePlan {
    std::vector<PlannedStep> steps;  // in the order in which they are to be done
    std::size_t left = 0;            // unprocessed materials that no assignment names
    std::vector<std::string> errors; // naming file and line; then the plan must not be carried out
    std::vector<Note> problems{};    // the same errors, with their places
    std::vector<Note> hints{};       // what the errors may mean
};

/// Which material falls to which assignment: the assignments in their order, and within one the
/// matching materials, in list order, that are unprocessed and fell to none before. An assignment
/// that is left without any is an error unless it is optional.
RecipePlan plan_recipe(const OpenSet& set, const Recipe& recipe);

} // namespace morvane
