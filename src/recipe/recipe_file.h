// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recipe/recipe.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// Parameters of a kind as a file writes them.
struct GivenParameters {
    Parameters values;                  // only those of `keys` count
    std::vector<std::string_view> keys; // that the file gives, in the order of parameter_keys

    bool gives(std::string_view key) const;
};

/// Takes over what is given. A flash variable without a mask brings the mask that the dialog sets
/// for it.
void take_over(Parameters& parameters, const GivenParameters& given, Kind kind);

/// Position of a kind in all_kinds.
std::size_t position_of(Kind kind);

/// An `[[assign]]` table. The parameters of `what` are unused: `given` holds those of the file.
struct WrittenAssignment {
    Assignment what;
    GivenParameters given;
};

struct IncludedFile {
    std::string path; // as written
    std::size_t line = 1;
    std::size_t column = 1;
};

/// What one recipe file says by itself, without the files that it includes.
struct RecipeFile {
    std::string path;
    std::string text;
    std::vector<IncludedFile> includes;
    std::optional<std::string> macros;
    std::optional<bool> unique_labels;
    std::vector<std::string> allow;
    std::array<GivenParameters, all_kinds.size()> defaults; // by position in all_kinds
    std::vector<WrittenAssignment> assignments;

    GivenParameters& defaults_of(Kind kind);
    const GivenParameters& defaults_of(Kind kind) const;
};

struct RecipeFileReading {
    std::optional<RecipeFile> file; // nothing when there are errors
    std::vector<std::string> errors;
    std::vector<Note> problems;
};

/// Reads one recipe file. Never throws.
RecipeFileReading read_recipe_file(Disk& disk, const std::string& path);

/// The same for a text at hand.
RecipeFileReading parse_recipe_file(const std::string& path, std::string text);

/// Whether two files say the same, whatever their texts look like.
bool same_content(const RecipeFile& a, const RecipeFile& b);
bool same_given(const GivenParameters& a, const GivenParameters& b, Kind kind);

} // namespace morvane
