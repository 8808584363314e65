// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/library_list.h"
#include "problems/problem.h"
#include "project/manifest.h"
#include "project/project.h"
#include "recipe/recipe.h"
#include "system/disk.h"
#include "system/services.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// What a build depends on besides the project.
struct BuildSurroundings {
    std::string default_effect; // the first of the effect list
    std::string effect_list;    // its file
    std::vector<std::string>
        share_folders;   // where the macros are looked up after the project's own
    std::string version; // of Morvane
};

/// A file that a step reads.
struct StepInput {
    std::string role; // "export", "recipe", "list", "effects" or "macros"
    std::string path; // seen from the current folder
};

/// A step with all that it reads and writes.
struct PlannedBuildStep {
    ProjectStep step;
    std::optional<Recipe> recipe;     // of a set
    std::optional<LibraryList> list;  // of a library
    std::vector<std::string> exports; // base paths
    std::vector<StepInput> inputs;
    std::vector<std::string> outputs; // names in the output folder; what is compiled comes last
    std::string product;              // the compiled file's name; empty when nothing is compiled
    std::string settings;             // what the project says of it, to notice a change
    std::string compiler;             // the command, likewise
};

struct BuildPlan {
    std::vector<PlannedBuildStep> steps;       // all of the project, in its order
    std::string macros;                        // the file that is copied; empty: none
    std::map<std::string, std::string> models; // bare names of the exports' model files, by their
                                               // lower case
    std::vector<std::string> errors;           // then nothing must be made
    std::vector<Note> problems;                // the same errors, with their places
    std::vector<std::string> files;            // recipes and lists that were read or looked for
};

/// Reads the recipes and lists of a project and says what every step reads and writes.
BuildPlan plan_build(const Services& services, const Project& project,
                     const BuildSurroundings& surroundings);

/// A path of an input as the manifest names it: seen from the project's folder.
std::string stored_path(const Project& project, const std::string& path);

/// What builds of this program depend on besides the project: the effect list in its program
/// folder, whose first name is `default_effect`, and the installed share folder.
BuildSurroundings build_surroundings(Disk& disk, const std::string& program_folder,
                                     const std::string& default_effect);

/// Why a step has to be made, as in "exported again"; empty when it is up to date. Files whose
/// size, times and identity are as the record says count as the same; others are compared by their
/// content, and `record` then takes over what they are like now.
std::string reason_to_make(Disk& disk, const Project& project, const PlannedBuildStep& planned,
                           const BuildSurroundings& surroundings, StepRecord& record);

} // namespace morvane
