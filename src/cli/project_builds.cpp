// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project_builds.h"

#include "base/paths.h"
#include "base/text.h"
#include "project/build_plan.h"
#include "project/project_compiler.h"
#include "system/interruption.h"
#include "system/program_places.h"

#include <algorithm>

namespace morvane::cli {

namespace {

std::string_view severity_word(Severity severity) {
    return severity == Severity::Error     ? "error"
           : severity == Severity::Warning ? "warning"
                                           : "note";
}

std::size_t count_of(const BuildResult& result, StepState state) {
    return static_cast<std::size_t>(
        std::count_if(result.steps.begin(), result.steps.end(),
                      [&](const StepResult& step) { return step.state == state; }));
}

} // namespace

BuildSurroundings build_surroundings(Cli& cli) {
    return morvane::build_surroundings(
        *cli.disk, find_program_folder(*cli.disk, program_places(cli.program_folder_option)),
        cli.default_effect());
}

void let_compile(BuildOptions& options, Programs& programs, const Project& project) {
    options.compile =
        project_compiler(programs, project.file, [] { return !Interruption::requested(); });
}

std::string build_summary(const BuildResult& result) {
    const std::size_t total = result.steps.size();
    const std::size_t not_reached = count_of(result, StepState::NotReached);
    std::string text = to_text(total) + (total == 1 ? " step: " : " steps: ") +
                       to_text(count_of(result, StepState::Made)) + " made, " +
                       to_text(count_of(result, StepState::UpToDate)) + " up to date, " +
                       to_text(count_of(result, StepState::Failed)) + " failed";
    return not_reached == 0 ? text : text + ", " + to_text(not_reached) + " not reached";
}

std::string step_problem_lines(const StepResult& step, bool notes) {
    std::string text;
    for (const Problem& problem : step.problems) {
        if (problem.severity == Severity::Note && !notes) {
            continue;
        }
        text += (problem.path.empty() ? step.name : problem.path + ":" + to_text(problem.line)) +
                ": " + std::string(severity_word(problem.severity)) + ": " + problem.text + " [" +
                problem.code + "]\n";
    }
    if (step.state == StepState::Failed && !step.compiler_output.empty()) {
        text += step.compiler_output + (step.compiler_output.ends_with('\n') ? "" : "\n");
    }
    return text;
}

} // namespace morvane::cli
