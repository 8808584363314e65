// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/cli.h"
#include "project/build_project.h"

#include <memory>
#include <string>
#include <vector>

namespace morvane {

class Programs;

namespace cli {

/// What a build of this run depends on besides the project.
BuildSurroundings build_surroundings(Cli& cli);

/// Gives a build the way to run a project's compiler, until Ctrl-C ends it.
void let_compile(BuildOptions& options, Programs& programs, const Project& project);

/// "3 steps: 1 made, 2 up to date, 0 failed", and how many were not reached.
std::string build_summary(const BuildResult& result);

/// The problems of a step, one a line, and after a failure what the compiler printed. Notes only
/// when `notes` says so.
std::string step_problem_lines(const StepResult& step, bool notes);

} // namespace cli
} // namespace morvane
