// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/process.h"
#include "recipe/plan_recipe.h"
#include "source/open_set.h"
#include "system/services.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// An error, at the recipe's line, for each planned material that Process would not take as a
/// whole; the text names the line of the model file too. See check_block.
std::vector<Note> unfit_materials(const OpenSet& set, const Recipe& recipe, const RecipePlan& plan);

struct ProcessedMaterial {
    std::size_t row = 0;
    Kind kind = Kind::Lights;
    std::size_t lines = 0; // lines of new code
    Parameters parameters; // those of its assignment
    Change change;
};

struct ApplyResult {
    bool ok = false;
    std::vector<ProcessedMaterial> processed; // in their order
    std::optional<Change> given_up;           // of the last step, when a windsock was given up
    std::optional<FrameChange> frame;         // when the macros were included
};

/// Processes every step of a plan without errors. The log gets a note for each material that says
/// what became of it, and at the end how many are left as they are; what is wrong with parameters
/// is noted with the line of the recipe. Stops at the first that is not processed, after that one's
/// own message box and a note naming the assignment; what was processed before it stays so. Labels
/// are made unique, and the macros included, as the recipe says.
/// `trace_folder`: where the trace files are written, once, for the last material that was
/// processed; none when it is empty.
ApplyResult apply_recipe(const Services& services, OpenSet& set, const Recipe& recipe,
                         const RecipePlan& plan,
                         const std::optional<std::string>& trace_folder = {});

} // namespace morvane
