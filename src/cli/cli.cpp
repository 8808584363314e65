// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/cli.h"

#include "base/encodings.h"
#include "problems/libraries.h"
#include "system/program_places.h"
#include "upkeep/settings.h"

#include <iostream>
#include <utility>

namespace morvane::cli {

std::string Cli::program_folder() {
    return resolve_program_folder(*disk, program_places(program_folder_option));
}

std::vector<std::string> Cli::effects() {
    return effect_names(services(),
                        find_program_folder(*disk, program_places(program_folder_option)));
}

std::vector<KnownObject> Cli::searched_objects() {
    return morvane::searched_objects(
        *disk, find_program_folder(*disk, program_places(program_folder_option)));
}

std::string Cli::default_effect() {
    const std::vector<std::string> names = effects();
    return names.empty() ? std::string() : names.front();
}

namespace {

// A problem with a document goes on with an excerpt of it.
std::string first_line(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

Json failure_problem_json(const Note& problem) {
    return {{"code", "document"},
            {"severity", "error"},
            {"text", json_path(first_line(problem.text))},
            {"path", json_path(problem.path)},
            {"line", problem.line},
            {"row", nullptr}};
}

std::string failure_text(const Cli& cli) {
    if (!cli.error.empty()) {
        return cli.error;
    }
    if (!cli.problems.empty()) {
        return first_line(place_and_text(cli.problems.front()));
    }
    const std::string& refusal = cli.reporter.last_refusal();
    return refusal.empty() ? "The command failed." : refusal;
}

} // namespace

Json failure_document(const Cli& cli, int status) {
    Json problems = Json::array();
    for (const Note& problem : cli.problems) {
        problems.push_back(failure_problem_json(problem));
    }
    return {{"error",
             {{"status", status}, {"text", json_path(failure_text(cli))}, {"problems", problems}}},
            {"messages", json_texts(cli.reporter.messages())}};
}

void on_call(CLI::App& command, Cli& cli, std::function<int()> run) {
    command.callback([&cli, run = std::move(run)] {
        cli.status = run();
        cli.reporter.end_progress();
    });
}

void add_example(CLI::App& command, const std::string& line) {
    command.footer("Example:\n  morvane-cli " + line);
}

int report_wrong(Cli& cli, const std::vector<std::string>& errors,
                 const std::vector<Note>& problems) {
    for (const std::string& error : errors) {
        std::cerr << readable_text(error) << '\n';
    }
    cli.problems.insert(cli.problems.end(), problems.begin(), problems.end());
    return wrong;
}

int report_usage(Cli& cli, const std::string& problem) {
    std::cerr << readable_text(problem) << '\n';
    cli.error = problem;
    return wrong;
}

void print_json(Cli& cli, const Json& document) {
    std::cout << document.dump(2) << '\n';
    cli.document_printed = true;
}

} // namespace morvane::cli
