// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "recipe/recipe.h"
#include "source/open_set.h"

#include <string>
#include <vector>

namespace morvane {

/// The text of a recipe file that is to be written.
struct RecipeText {
    std::string text;
    std::vector<std::string> errors; // then there is none: what is wrong with the file as it is
    std::vector<Note> problems;      // what the file cannot say
};

/// What the recipe file of that path has to hold so that it does what `recipe` does, which makes
/// `made` of the set. A file that is there keeps its comments, its order, and whatever the set does
/// not concern; only what differs is changed. Otherwise the text is a new one.
RecipeText recipe_text(Disk& disk, const std::string& path, const OpenSet& set,
                       const Recipe& recipe, const std::vector<MadeMaterial>& made,
                       const std::string& default_effect);

} // namespace morvane
