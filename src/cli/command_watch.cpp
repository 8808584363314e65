// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/paths.h"
#include "base/text.h"
#include "cli/cli.h"
#include "cli/project_builds.h"
#include "project/project.h"
#include "project/watch_project.h"
#include "source/opened_file.h"
#include "source/source_set.h"
#include "system/interruption.h"
#include "system/programs.h"

#include <algorithm>
#include <iostream>
#include <thread>

namespace morvane::cli {

namespace {

struct WatchArguments {
    std::vector<std::string> words; // a project, or a base path and perhaps a recipe
    std::string output;
};

void print_built(const BuildResult& result) {
    const std::size_t total = result.steps.size();
    for (std::size_t i = 0; i < total; ++i) {
        const StepResult& step = result.steps[i];
        if (step.state == StepState::Made || step.state == StepState::Failed) {
            std::cout << '[' << i + 1 << '/' << total << "] " << step.name << ": " << step.reason
                      << '\n'
                      << step_problem_lines(step, false);
        }
    }
    std::cout << build_summary(result) << std::endl;
}

WatchOptions watch_options() {
    WatchOptions options;
    options.stopped = Interruption::requested;
    options.built = print_built;
    options.said = [](const std::string& text) { std::cout << text << std::endl; };
    return options;
}

int run_project_watch(Cli& cli, const std::string& file) {
    const ProjectReading reading = read_project(*cli.disk, file);
    if (!reading.project) {
        return report_wrong(cli, reading.errors, reading.problems);
    }
    const Interruption interruption;
    const auto programs = make_system_programs();
    BuildOptions build;
    build.jobs = std::max(1U, std::thread::hardware_concurrency());
    let_compile(build, *programs, *reading.project);
    watch_project(cli.services(), file, build_surroundings(cli), build, watch_options());
    return done;
}

int run_set_watch(Cli& cli, const std::string& base, const std::string& recipe,
                  const std::string& output) {
    for (const auto name : {model_file_name, frame_file_name}) {
        if (is_same_file(*cli.disk, name(base), name(output))) {
            return report_usage(cli, "--output: " + name(output) + " is a file of the export");
        }
    }
    const Interruption interruption;
    watch_set(cli.services(), base, recipe, output, build_surroundings(cli), watch_options());
    return done;
}

int run_watch_command(Cli& cli, const WatchArguments& arguments) {
    const std::vector<std::string>& words = arguments.words;
    const bool project = words.empty() || has_ending(words.front(), ".toml");
    if (project) {
        if (words.size() > 1 || !arguments.output.empty()) {
            return report_usage(cli, "watch takes one project, or a base path with --output");
        }
        return run_project_watch(cli, words.empty() ? "morvane.toml" : words.front());
    }
    if (arguments.output.empty()) {
        return report_usage(cli,
                            "--output is required: the base path under which the set is written");
    }
    if (words.size() > 2 || (words.size() == 2 && !has_ending(words.back(), ".toml"))) {
        return report_usage(cli, "watch takes one base path and one recipe (RECIPE.toml)");
    }
    return run_set_watch(cli, words.front(),
                         words.size() == 2 ? words.back() : words.front() + ".toml",
                         arguments.output);
}

} // namespace

void add_watch_command(CLI::App& app, Cli& cli) {
    auto* command = app.add_subcommand(
        "watch", "Build again whenever an export, a recipe or a list has changed");
    const auto arguments = std::make_shared<WatchArguments>();
    command->add_option("PROJECT.toml", arguments->words,
                        "The project (morvane.toml if none is given), or the base path of a set "
                        "and its recipe (BASE.toml if none is given)");
    command->add_option("--output", arguments->output, "Where a single set is written")
        ->type_name("BASE");
    add_example(*command, "watch exports/terminal terminal.toml --output scenery/terminal");
    on_call(*command, cli, [&cli, arguments] { return run_watch_command(cli, *arguments); });
}

} // namespace morvane::cli
