#pragma once

#include "objects/parameters.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

class Disk;

/// What becomes of some of the marked materials. All selectors that are given must hold; without
/// any, every material still unprocessed is meant.
struct Assignment {
    std::optional<std::string> highlight; // a colour's name, e.g. "Red"
    std::optional<std::string> color;     // RRGGBB, upper case
    std::optional<std::size_t> material;  // row of the list of marked materials, from 1
    Kind kind = Kind::Lights;
    Parameters parameters; // only those of the kind count
    std::size_t source_line = 0;
};

struct Recipe {
    std::vector<Assignment> assignments;
    std::string file; // as the user named it
};

struct RecipeReading {
    std::optional<Recipe> recipe; // nothing when there are errors
    std::vector<std::string> errors;
};

/// Reads a recipe file. Parameters that it leaves out have the window's defaults;
/// `default_effect` is the effect list's first line. Every error names file, line and key and shows
/// the line with a caret under the place. Never throws.
RecipeReading read_recipe(Disk& disk, const std::string& path, const std::string& default_effect);

/// The text of a recipe file (UTF-8, LF): selectors and the parameters that are not at their
/// defaults. Reading it gives the same assignments.
std::string write_recipe(const Recipe& recipe);

} // namespace morvane
