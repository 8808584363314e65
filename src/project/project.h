// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "aircraft/assemble_aircraft.h"
#include "base/reporter.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

class Disk;

enum class StepKind { Set, Aircraft, Library };

/// "set", "aircraft" or "library".
std::string_view step_kind_text(StepKind kind);

/// How a step's source is compiled.
enum class CompileAs { Nothing, Bgl, Mdl };

/// A `[[set]]`, `[[aircraft]]` or `[[library]]` of a project. Paths are seen from the current
/// folder.
struct ProjectStep {
    StepKind kind = StepKind::Set;
    std::string name;
    CompileAs compile = CompileAs::Bgl;
    std::size_t line = 0; // of the project file
    // A set.
    std::string base;
    std::string recipe;
    std::string suffix; // Windows-1252; empty: labels stay
    // An aircraft; by AircraftPart, empty for what is not given.
    std::array<std::string, 5> parts;
    bool flexing_wings = false;
    bool shadow_optimization = false;
    // A library.
    std::string list;
    std::string output; // a name in the output folder
};

/// The parts of an aircraft that are joined.
std::vector<AircraftPart> parts_used(const ProjectStep& step);

struct Project {
    std::string file;   // as the user named it
    std::string folder; // where everything is made
    std::vector<std::string> compiler;
    std::string macros; // as written; empty: none
    std::size_t macros_line = 0;
    std::vector<ProjectStep> steps;
};

struct ProjectReading {
    std::optional<Project> project; // nothing when there are errors
    std::vector<std::string> errors;
    std::vector<Note> problems; // the same errors, with their places
};

/// Reads a project file. Every error names file, line and key. Never throws.
ProjectReading read_project(Disk& disk, const std::string& path);

/// The name of a file without its folder and last ending.
std::string stem_of(std::string_view path);

} // namespace morvane
