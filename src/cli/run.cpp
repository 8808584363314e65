// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/run.h"

#include "base/paths.h"
#include "base/version.h"
#include "cli/cli.h"
#include "cli/completions.h"
#include "cli/failure.h"
#include "cli/help.h"
#include "toml/nearest_key.h"

#include <algorithm>
#include <iostream>

namespace morvane::cli {

namespace {

void add_common_options(CLI::App& app, Cli& cli) {
    app.set_version_flag("-V,--version", "morvane-cli " + std::string(version_number),
                         "Print the version and leave");
    app.set_help_flag("-h,--help", "Print this help and leave");
    app.add_option("--program-folder", cli.program_folder_option,
                   "Folder of settings, scratch and report files; default: $MORVANE_HOME, else the "
                   "program's own folder or the user's data folder")
        ->type_name("DIR");
    app.add_flag("--json", cli.json, "Print one JSON document instead of text");
    auto* yes = app.add_flag_callback(
        "-y,--yes", [&cli] { cli.reporter.set_answer(Answer::Yes); },
        "Answer all questions with Yes; default: ask at a terminal, else No");
    app.add_flag_callback(
           "-n,--no", [&cli] { cli.reporter.set_answer(Answer::No); },
           "Answer all questions with No")
        ->excludes(yes);
    app.add_flag_callback(
        "-q,--quiet", [&cli] { cli.reporter.set_quiet(); }, "Omit the message log");
}

void add_commands(CLI::App& app, Cli& cli) {
    add_inspect_command(app, cli);
    add_process_command(app, cli);
    add_check_command(app, cli);
    add_tool_commands(app, cli);
    add_assemble_command(app, cli);
    add_library_commands(app, cli);
    add_bgl_commands(app, cli);
    add_render_command(app, cli);
    add_build_command(app, cli);
    add_watch_command(app, cli);
    add_help_command(app, *cli.disk);
}

std::string file_name_problem(const CLI::Option& option, const std::string& text) {
    if (text == "-") {
        return "\"-\" is not a file name here: files are read and written by name (write ./- for a "
               "file that is called so)";
    }
    if (option.get_name() == "--output" && text.empty()) {
        return "an empty name";
    }
    if (option.get_name() == "--output" && option.get_type_name() == "BASE" &&
        has_ending(text, ".asm")) {
        return text + " ends in .asm; a base path is written without it";
    }
    return {};
}

// "-" means standard input or output to many programs. Here it would be a file of that name.
void check_file_names(CLI::App& app) {
    for (CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) {
        for (CLI::Option* option : command->get_options([](CLI::Option*) { return true; })) {
            if (option->get_items_expected_max() > 0 && option->get_name() != "SUFFIX") {
                option->check(CLI::Validator(
                    [option](const std::string& text) { return file_name_problem(*option, text); },
                    ""));
            }
        }
        check_file_names(*command);
    }
}

// The command that was typed, as far as it is one.
const CLI::App& innermost(const CLI::App& app) {
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? app : innermost(*chosen.front());
}

std::string unknown_command(const CLI::App& command, const std::string& word) {
    std::vector<std::string_view> names;
    for (const CLI::App* below : commands_below(command)) {
        names.emplace_back(below->get_name());
    }
    return "There is no command \"" + word + "\"" + suggestion(word, names);
}

void add_option_names(const CLI::App& command, std::vector<std::string>& names) {
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    if (command.get_parent() != nullptr) {
        add_option_names(*command.get_parent(), names);
    }
}

std::string unknown_option(const CLI::App& command, const std::string& word) {
    const std::string typed = word.substr(0, word.find('='));
    std::vector<std::string> names;
    add_option_names(command, names);
    const std::string nearest = nearest_key(typed, {names.begin(), names.end()});
    return "There is no option \"" + typed + "\"" +
           (nearest.empty() ? "" : " (did you mean \"" + nearest + "\"?)");
}

// The parser only says that a command is missing, not that the word in its place is not one.
std::string parse_problem(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> left = app.remaining(true);
    const CLI::App& command = innermost(app);
    const auto option = std::find_if(left.begin(), left.end(), [](const std::string& word) {
        return word.size() > 1 && word.starts_with('-');
    });
    if (option != left.end()) {
        return unknown_option(command, *option);
    }
    const bool required = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (required && !left.empty() && !commands_below(command).empty()) {
        return unknown_command(command, left.front());
    }
    return error.what();
}

int report_parse_error(const CLI::App& app, Cli& cli, const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
        return app.exit(error) == 0 ? done : failed; // prints the help or the version
    }
    const int status = report_usage(cli, parse_problem(app, error));
    std::cerr << "Run with --help for more information.\n";
    return status;
}

// Reversed, as the parser takes them.
std::vector<std::string> reversed(std::vector<std::string> words) {
    std::reverse(words.begin(), words.end());
    return words;
}

int run_command(Cli& cli, const std::vector<std::string>& arguments) {
    CLI::App app("Turns marked triangles of gmax exports into lights, effects, windsocks and "
                 "library objects",
                 "morvane-cli");
    app.require_subcommand(1);
    app.fallthrough();
    use_full_help(app);
    add_common_options(app, cli);
    add_completions_option(app);
    add_commands(app, cli);
    check_file_names(app);
    if (print_candidates(*cli.disk, app, arguments)) {
        return done;
    }
    try {
        app.parse(reversed(arguments));
    } catch (const CLI::ParseError& error) {
        return report_parse_error(app, cli, error);
    }
    return cli.status;
}

int report_failure(Cli& cli, const std::string& text) {
    std::cerr << "[message] " << text << '\n';
    cli.error = text;
    return failed;
}

} // namespace

int run(const std::vector<std::string>& arguments) {
    Cli cli;
    const auto report = [&cli](const std::string& text) { return report_failure(cli, text); };
    return run_guarded(
        [&] {
            // A command line that is wrong is not parsed to its end.
            cli.json = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
            const int status = run_guarded([&] { return run_command(cli, arguments); }, report);
            if (cli.json && status != done && !cli.document_printed) {
                print_json(cli, failure_document(cli, status));
            }
            std::cout.flush();
            if (!std::cout && status == done) {
                return report("The output could not be written.");
            }
            return status;
        },
        report);
}

} // namespace morvane::cli
