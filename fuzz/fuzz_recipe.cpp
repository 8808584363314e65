// SPDX-License-Identifier: GPL-3.0-or-later

// Recipes and settings of any bytes; a recipe that is read can be written and read again.

#include "base/errors.h"
#include "recipe/recipe.h"
#include "target.h"
#include "upkeep/settings.h"

namespace {

using namespace morvane;
using namespace morvane::fuzz;

void read_and_write(World& world) {
    const RecipeReading first = read_recipe(world.disk, "recipe.toml", "fx_a");
    require(first.recipe.has_value() == first.errors.empty(), "a recipe or errors");
    for (const std::string& error : first.errors) {
        require(error.starts_with("recipe.toml"), "errors name the file");
    }
    if (!first.recipe) {
        return;
    }
    const std::string text = write_recipe(*first.recipe);
    world.disk.files["recipe.toml"] = text;
    const RecipeReading second = read_recipe(world.disk, "recipe.toml", "fx_a");
    require(second.recipe.has_value(), "what was written can be read");
    require(second.recipe->assignments.size() == first.recipe->assignments.size(),
            "as many assignments");
    require(write_recipe(*second.recipe) == text, "what is read again is the same");
}

void read_settings(World& world) {
    read_main_paths(world.services, "home", {"", ""});
    read_aircraft_paths(world.services, "home");
    read_library_folder(world.disk, "home");
    read_effect_names(world.services, "home");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const LinearTime linear(20 * size);
    World world;
    for (const char* name : {"recipe.toml", "home/morvane.ini", "home/model.ini",
                             "home/libview.ini", "home/fx_list.txt"}) {
        world.disk.files[name] = bytes;
    }
    read_and_write(world);
    read_settings(world);
    return 0;
}
