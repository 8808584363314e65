// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "objects/parameters.h"
#include "source/open_set.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

class Disk;

/// What becomes of some of the marked materials. All selectors that are given must hold, a selector
/// of several values when any of them does; without any, every material still unprocessed is meant.
struct Assignment {
    std::vector<std::string> highlight; // colours' names, e.g. "Red"
    std::vector<std::string> color;     // RRGGBB, upper case
    std::vector<std::size_t> material;  // rows of the list of marked materials, from 1
    Kind kind = Kind::Lights;
    bool optional = false; // matching nothing is not an error
    Parameters parameters; // only those of the kind count
    std::size_t source_line = 0;
    std::string source_file{}; // where an included file holds it; otherwise empty
};

struct Recipe {
    std::vector<Assignment> assignments; // those of included files first
    std::string file;                    // as the user named it
    std::string macros{};                // the file that the frame file includes; empty: none
    bool unique_labels = false;
    std::vector<std::string> allow{};                 // codes of problems that are accepted
    std::vector<std::string> files{};                 // all that were read, `file` first
    std::array<Parameters, all_kinds.size()> bases{}; // by position in all_kinds

    /// The parameters of an assignment of the file itself that gives none.
    const Parameters& base_of(Kind kind) const;
};

struct RecipeReading {
    std::optional<Recipe> recipe; // nothing when there are errors
    std::vector<std::string> errors;
    std::vector<Note> problems;     // the same errors, with their places
    std::vector<std::string> files; // all that were read or looked for, `path` first
};

/// Reads a recipe file and what it includes. Parameters that it omits have the defaults that it
/// gives, else the window's; `default_effect` is the effect list's first line. Every error names
/// file, line and key and shows the line with a caret under the place. Never throws.
RecipeReading read_recipe(Disk& disk, const std::string& path, const std::string& default_effect);

/// The file that holds an assignment.
const std::string& file_of(const Recipe& recipe, const Assignment& assignment);

/// The text of a recipe file (UTF-8, LF): selectors and the parameters that are not at their
/// defaults. Reading it gives the same assignments.
std::string write_recipe(const Recipe& recipe);

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
