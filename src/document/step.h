// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"
#include "recipe/apply_recipe.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// A material as a step left it.
struct StepMaterial {
    std::size_t row = 0; // of the list of marked materials, from 1
    Kind kind = Kind::Lights;
    Parameters parameters;
    bool processed = false; // false: given up at a flat triangle, with lines commented out
    Change change;          // puts the material back as it was, and again as it became
};

/// One thing that was done to a document and can be undone: a Process, a recipe, or a change of the
/// parameters.
struct Step {
    std::string name;                    // "Process of 3 (MATERIAL 12)", for a menu or a list
    std::vector<StepMaterial> materials; // in the order in which they were processed
    std::optional<FrameChange> frame{};  // of the macros that a recipe included last
    // The parameters that are not in force now: those before the step, and those after it while the
    // step is undone. Only for a change of the parameters.
    std::optional<Parameters> parameters{};
    // What the recipe of the step asked for besides its assignments.
    std::string macros{};
    bool unique_labels = false;

    /// Memory that is held to undo the step, in bytes; an estimate.
    std::size_t bytes() const;
};

} // namespace morvane
