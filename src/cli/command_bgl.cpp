// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/universal.h"
#include "cli/bgl_json.h"
#include "cli/cli.h"
#include "cli/console.h"
#include "system/program_places.h"

#include <iostream>

namespace morvane::cli {

namespace {

Inspector make_inspector(Cli& cli, Programs& programs) {
    return {cli.services(), cli.program_folder(), programs, helper_folders(executable_folder())};
}

void print_with_plain_line_ends(std::string_view text) {
    for (std::size_t end = 0; (end = text.find("\r\n")) != std::string_view::npos;) {
        std::cout << text.substr(0, end) << '\n';
        text.remove_prefix(end + 2);
    }
    std::cout << text;
}

// The report is printed as it grows, since a long one is emptied into "out.txt" on the way.
void print_report(Cli& cli, OutputBox& box) {
    const bool progress_is_seen = errors_go_to_terminal();
    box.on_text = [&cli, progress_is_seen](std::string_view text) {
        cli.reporter.end_progress();
        print_with_plain_line_ends(text);
        if (progress_is_seen) {
            std::cout.flush();
        }
    };
}

int finish(Cli& cli, Json document, bool succeeded) {
    if (cli.json) {
        document["messages"] = json_texts(cli.reporter.messages());
        print_json(cli, document);
    }
    if (!cli.json || !succeeded) {
        std::cout.flush();
        cli.reporter.print_notes();
    }
    return succeeded ? done : failed;
}

int run_analyse(Cli& cli, const std::string& path, bool show_header) {
    const auto programs = make_system_programs();
    Inspector inspector = make_inspector(cli, *programs);
    if (!cli.json) {
        print_report(cli, inspector.box);
    }
    const Analysis analysis = analyse_file(inspector, path, show_header, true);
    if (analysis.state == BglState::Invalid) {
        cli.reporter.note({path + " is no valid BGL file: FL_world_set is " +
                           std::to_string(analysis.header.FL_world_set) + ", not 1, 3 or 4."});
    }
    return finish(cli, cli.json ? analysis_json(path, analysis) : Json(), analysis.done);
}

int run_search(Cli& cli, const std::string& folder) {
    const auto programs = make_system_programs();
    Inspector inspector = make_inspector(cli, *programs);
    Json objects = Json::array();
    LibraryFound found;
    if (cli.json) {
        found = [&](const std::string& path, const std::vector<LibraryObject>& entries) {
            for (const LibraryObject& object : entries) {
                objects.push_back(object_json(path, object));
            }
        };
    } else {
        print_report(cli, inspector.box);
    }
    const SearchResult result = search_folder(inspector, folder, true, found);
    cli.reporter.end_progress();
    return finish(cli, cli.json ? search_json(folder, result, std::move(objects)) : Json(),
                  result.done);
}

int finish_change(Cli& cli, const std::string& path, bool changed) {
    return finish(cli, {{"file", json_path(path)}, {"changed", changed}}, changed);
}

using RunOnPath = std::function<int(const std::string&)>;

CLI::App* add_path_command(CLI::App& app, Cli& cli, const char* name, const char* argument,
                           const char* text, const char* argument_text, const RunOnPath& run) {
    const std::string example = argument == std::string("DIR") ? "Scenery" : "objects.bgl";
    auto* command = app.add_subcommand(name, text);
    const auto path = std::make_shared<std::string>();
    command->add_option(argument, *path, argument_text)->required();
    add_example(*command, std::string("bgl ") + name + " " + example);
    on_call(*command, cli, [run, path] { return run(*path); });
    return command;
}

} // namespace

void add_bgl_commands(CLI::App& app, Cli& cli) {
    auto* bgl = app.add_subcommand("bgl", "Inspect BGL files and widen the bounds of libraries");
    bgl->require_subcommand(1);
    const auto show_header = std::make_shared<bool>(false);
    add_path_command(*bgl, cli, "analyse", "FILE", "Report on one BGL file and its objects",
                     "The BGL file",
                     [&cli, show_header](const std::string& path) {
                         return run_analyse(cli, path, *show_header);
                     })
        ->add_flag("--show-header", *show_header, "Print every field of the header too");
    add_path_command(*bgl, cli, "search", "DIR", "List the library objects of a folder tree",
                     "The folder",
                     [&cli](const std::string& folder) { return run_search(cli, folder); });
    add_path_command(*bgl, cli, "universal", "FILE",
                     "Make the objects of a library available everywhere", "The library file",
                     [&cli](const std::string& path) {
                         return finish_change(
                             cli, path, make_universal(cli.services(), path, cli.program_folder()));
                     });
    add_path_command(*bgl, cli, "revert", "FILE", "Put a library back as it was",
                     "The library file or its copy", [&cli](const std::string& path) {
                         return finish_change(cli, path, revert(cli.services(), path));
                     });
}

} // namespace morvane::cli
