// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recipe/recipe.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <string>
#include <string_view>

namespace morvane::test {

/// Reads a recipe of this text; errors name it "airport.toml".
inline RecipeReading read_recipe_text(std::string_view text) {
    const TempFolder folder;
    const std::string path = folder.write("airport.toml", text);
    RecipeReading reading = read_recipe(*make_system_disk(), path, "fx_smoke");
    const std::size_t prefix = path.size() - std::string_view("airport.toml").size();
    for (std::string& error : reading.errors) {
        if (error.starts_with(path)) {
            error.erase(0, prefix);
        }
    }
    return reading;
}

} // namespace morvane::test
