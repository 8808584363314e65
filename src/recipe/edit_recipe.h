// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recipe/recipe.h"
#include "recipe/recipe_file.h"
#include "source/open_set.h"

#include <string>
#include <vector>

namespace morvane {

/// The text of a recipe file changed in place so that it says what `wanted` says: comments, order
/// and form of everything else stay as they are. `file` is the file as it was read. Throws
/// InvalidProcedureCall when its text is written in a form that cannot be changed so.
std::string edit_recipe(const RecipeFile& file, const RecipeFile& wanted);

struct MadeRecipe {
    RecipeFile file;
    /// What the file cannot say: a material that falls to an assignment of an included file.
    std::vector<Note> problems;
};

/// The file changed so that its recipe makes `made` of the set. `recipe` is what the file reads as,
/// with the files that it includes. An assignment that makes the same already stays as it is; one
/// whose materials were all made into the same other thing is changed; a single material gets an
/// assignment of its own before the one that it would fall to. Assignments that no material of
/// `made` falls to stay.
MadeRecipe with_made(const OpenSet& set, const RecipeFile& file, const Recipe& recipe,
                     const std::vector<MadeMaterial>& made);

} // namespace morvane
