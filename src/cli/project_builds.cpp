// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project_builds.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "base/version.h"
#include "base/windows1252.h"
#include "system/absolute_path.h"
#include "system/interruption.h"
#include "system/program_places.h"
#include "system/programs.h"

#include <algorithm>

namespace morvane::cli {

namespace {

bool is_path(const std::string& program) {
    return file_name_part(program) != program;
}

// The compiler's own path: a program given with a path is relative to the project.
std::string find_compiler(Programs& programs, const std::string& program,
                          const std::string& project_file) {
    return is_path(program) ? absolute_path(path_beside(project_file, program))
                            : programs.find_on_path(program);
}

CompilerEnd run_project_compiler(Programs& programs, const std::string& project_file,
                                 std::vector<std::string> words, const std::string& folder) {
    CompilerEnd end;
    const std::string program = find_compiler(programs, words.front(), project_file);
    if (program.empty()) {
        end.problem = "the compiler " + words.front() + " was not found";
        return end;
    }
    words.front() = program;
    RunOptions options;
    options.output = [&](std::string_view text) { end.output += text; };
    options.keep_going = [] { return !Interruption::requested(); };
    try {
        const ProgramEnd ended = programs.run({words, folder}, options);
        end.ok = ended.how == ProgramEnd::How::Exited && ended.status == 0;
        end.problem = ended.how == ProgramEnd::How::Exited
                          ? "the compiler ended with status " + std::to_string(ended.status)
                          : "the compiler was ended";
    } catch (const RuntimeError& error) {
        end.problem = "the compiler cannot be started: " + std::string(error.what());
    }
    return end;
}

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
    const std::string program = executable_folder();
    const std::string effects = join_path(
        find_program_folder(*cli.disk, program_places(cli.program_folder_option)), "fx_list.txt");
    return {cli.default_effect(),
            cli.disk->is_file(effects) ? effects : std::string(),
            {join_path(folder_part(program), "share/morvane"), program},
            std::string(version_caption)};
}

void let_compile(BuildOptions& options, Programs& programs, const Project& project) {
    options.compile = [&programs, file = project.file](const std::vector<std::string>& words,
                                                       const std::string& folder) {
        return run_project_compiler(programs, file, words, folder);
    };
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
