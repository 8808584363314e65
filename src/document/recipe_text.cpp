// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/recipe_text.h"

#include "base/errors.h"
#include "recipe/edit_recipe.h"
#include "system/disk.h"

#include <algorithm>

namespace morvane {

namespace {

RecipeText edited_text(Disk& disk, const std::string& path, const OpenSet& set,
                       const Recipe& recipe, const std::vector<MadeMaterial>& made,
                       const std::string& default_effect) {
    const RecipeFileReading file = read_recipe_file(disk, path);
    const RecipeReading reading = read_recipe(disk, path, default_effect);
    if (!file.file || !reading.recipe) {
        return {{}, reading.errors.empty() ? file.errors : reading.errors, {}};
    }
    MadeRecipe wanted = with_made(set, *file.file, *reading.recipe, made);
    if (recipe.unique_labels && !reading.recipe->unique_labels) {
        wanted.file.unique_labels = true;
    }
    if (!recipe.macros.empty() && reading.recipe->macros.empty()) {
        wanted.file.macros = recipe.macros;
    }
    for (const std::string& code : recipe.allow) {
        const std::vector<std::string>& known = reading.recipe->allow;
        if (std::find(known.begin(), known.end(), code) == known.end()) {
            wanted.file.allow.push_back(code);
        }
    }
    try {
        return {edit_recipe(*file.file, wanted.file), {}, std::move(wanted.problems)};
    } catch (const RuntimeError& error) {
        return {{}, {path + ": " + error.what()}, {}};
    }
}

} // namespace

RecipeText recipe_text(Disk& disk, const std::string& path, const OpenSet& set,
                       const Recipe& recipe, const std::vector<MadeMaterial>& made,
                       const std::string& default_effect) {
    return disk.is_file(path) ? edited_text(disk, path, set, recipe, made, default_effect)
                              : RecipeText{write_recipe(recipe), {}, {}};
}

} // namespace morvane
