// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/paths.h"
#include "base/text.h"
#include "cli/cli.h"
#include "cli/json_text.h"
#include "cli/project_builds.h"
#include "project/project.h"
#include "system/interruption.h"
#include "system/programs.h"

#include <algorithm>
#include <iostream>
#include <thread>

namespace morvane::cli {

namespace {

struct BuildArguments {
    std::vector<std::string> words; // the project and names of steps
    std::size_t jobs = std::max(1U, std::thread::hardware_concurrency());
    bool keep_going = false;
    bool dry_run = false;
    bool explain = false;
    bool force = false;
};

Json build_problem_json(const Problem& problem) {
    constexpr std::array<std::string_view, 3> severities{"note", "warning", "error"};
    return {{"code", problem.code},
            {"severity", severities.at(static_cast<std::size_t>(problem.severity))},
            {"text", json_text(problem.text)},
            {"path", json_path(problem.path)},
            {"line", problem.line},
            {"row", problem.row ? Json(*problem.row) : Json(nullptr)}};
}

Json build_problems_json(const std::vector<Problem>& problems) {
    Json list = Json::array();
    for (const Problem& problem : problems) {
        list.push_back(build_problem_json(problem));
    }
    return list;
}

Json step_json(const StepResult& step) {
    Json outputs = Json::array();
    for (const std::string& path : step.outputs) {
        outputs.push_back(json_path(path));
    }
    return {
        {"name", json_path(step.name)},         {"kind", step_kind_text(step.kind)},
        {"state", step_state_text(step.state)}, {"reason", step.reason},
        {"outputs", std::move(outputs)},        {"problems", build_problems_json(step.problems)}};
}

// The errors of a project as problems with a code.
Json wrong_project_json(const std::vector<Note>& problems) {
    Json list = Json::array();
    for (const Note& note : problems) {
        list.push_back(build_problem_json(
            {"project", note.severity, note.text, note.path, note.line, std::nullopt}));
    }
    return list;
}

void print_build_json(Cli& cli, const BuildResult& result, int status, const std::string& error) {
    Json document = Json::object();
    if (status != done) {
        document["error"] = {{"status", status},
                             {"text", json_text(error)},
                             {"problems", wrong_project_json(result.problems)}};
    }
    document["steps"] = Json::array();
    for (const StepResult& step : result.steps) {
        document["steps"].push_back(step_json(step));
    }
    document["messages"] = json_texts(cli.reporter.messages());
    print_json(cli, document);
}

std::string failed_names(const BuildResult& result) {
    std::string names;
    for (const StepResult& step : result.steps) {
        if (step.state == StepState::Failed) {
            names += (names.empty() ? "" : ", ") + step.name;
        }
    }
    return names;
}

// What standard error says of a build that did not end well.
std::string build_error(const BuildResult& result) {
    switch (result.how) {
    case BuildResult::How::Interrupted:
        return "The build was interrupted; the next one goes on.";
    case BuildResult::How::Failed:
        return "Failed: " + failed_names(result);
    default:
        break;
    }
    std::string text;
    for (const std::string& error : result.errors) {
        text += (text.empty() ? "" : "\n") + error;
    }
    return text;
}

int status_of(const BuildResult& result) {
    return result.how == BuildResult::How::Done         ? done
           : result.how == BuildResult::How::NotStarted ? wrong
                                                        : failed;
}

int report_build(Cli& cli, const BuildResult& result) {
    const int status = status_of(result);
    const std::string error = status == done ? std::string() : build_error(result);
    for (const Note& note : result.notes) {
        cli.reporter.note(note);
    }
    if (status == wrong) {
        return result.problems.empty() ? report_usage(cli, error)
                                       : report_wrong(cli, result.errors, result.problems);
    }
    if (!cli.json) {
        cli.reporter.print_log();
        if (result.how != BuildResult::How::Refused) {
            std::cout << build_summary(result) << '\n';
        }
    }
    if (status != done) {
        cli.reporter.message_box(error, Icon::None);
    }
    if (cli.json) {
        print_build_json(cli, result, status, error);
    }
    return status;
}

void print_step(const StepResult& step, std::size_t place, std::size_t total, bool explain) {
    if (step.state == StepState::UpToDate && !explain) {
        return;
    }
    std::cout << '[' << place << '/' << total << "] " << step.name << ": "
              << (step.state == StepState::UpToDate ? "up to date" : step.reason) << '\n'
              << step_problem_lines(step, explain) << std::flush;
}

// The one word that names a project file; the others stay. Empty when there are several.
std::string take_project(std::vector<std::string>& words) {
    std::string project;
    for (auto word = words.begin(); word != words.end();) {
        if (!has_ending(*word, ".toml")) {
            ++word;
        } else if (!project.empty()) {
            return {};
        } else {
            project = *word;
            word = words.erase(word);
        }
    }
    return project.empty() ? "morvane.toml" : project;
}

BuildOptions options_of(const Cli& cli, const BuildArguments& arguments,
                        std::vector<std::string> names) {
    BuildOptions options;
    options.names = std::move(names);
    options.jobs = arguments.jobs;
    options.keep_going = arguments.keep_going;
    options.dry_run = arguments.dry_run;
    options.force = arguments.force;
    options.interrupted = Interruption::requested;
    if (!cli.json) {
        options.finished = [explain = arguments.explain](const StepResult& step, std::size_t place,
                                                         std::size_t total) {
            print_step(step, place, total, explain);
        };
    }
    return options;
}

int run_build(Cli& cli, const BuildArguments& arguments) {
    std::vector<std::string> names = arguments.words;
    const std::string file = take_project(names);
    if (file.empty()) {
        return report_usage(cli, "build takes one project (a file that ends in .toml)");
    }
    const ProjectReading reading = read_project(*cli.disk, file);
    if (!reading.project) {
        BuildResult result;
        result.how = BuildResult::How::NotStarted;
        result.errors = reading.errors;
        result.problems = reading.problems;
        return report_build(cli, result);
    }
    const Interruption interruption;
    const auto programs = make_system_programs();
    BuildOptions options = options_of(cli, arguments, std::move(names));
    let_compile(options, *programs, *reading.project);
    return report_build(
        cli, build_project(cli.services(), *reading.project, build_surroundings(cli), options));
}

} // namespace

void add_build_command(CLI::App& app, Cli& cli) {
    auto* command =
        app.add_subcommand("build", "Process, assemble and compile what has changed in a project");
    const auto arguments = std::make_shared<BuildArguments>();
    command->add_option("PROJECT.toml NAME", arguments->words,
                        "The project (morvane.toml if none is given) and the steps to build (all "
                        "if none is given)");
    command
        ->add_option("--jobs", arguments->jobs,
                     "How many steps to make at a time; default: one for each processor")
        ->type_name("N")
        ->check(CLI::Range(1, 1000).description(""));
    command->add_flag("--keep-going", arguments->keep_going,
                      "Make the other steps when one has failed");
    command->add_flag("--dry-run", arguments->dry_run, "Make nothing; say what would be made");
    command->add_flag("--explain", arguments->explain,
                      "Name the steps that are up to date too, and print notes");
    command->add_flag("--force", arguments->force, "Make everything again");
    add_example(*command, "build scenery/morvane.toml terminal --explain");
    on_call(*command, cli, [&cli, arguments] { return run_build(cli, *arguments); });
}

} // namespace morvane::cli
