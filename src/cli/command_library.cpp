// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "cli/cli.h"
#include "cli/json_text.h"
#include "library/create_library.h"
#include "library/design.h"
#include "library/library_list_file.h"
#include "problems/find_problems.h"
#include "problems/libraries.h"
#include "source/opened_file.h"

#include <iostream>

namespace morvane::cli {

namespace {

struct CreateOptions {
    std::string list;
    std::string output;
    bool output_given = false;
    bool generate_guids = false;
};

int run_describe(Cli& cli, const std::string& design) {
    cli.reporter.print_notes_at_once();
    const auto description = describe_design(cli.services(), design);
    if (!description) {
        return failed;
    }
    if (cli.json) {
        print_json(cli, {{"scale", json_text(description->scale)},
                         {"size", json_text(description->size)},
                         {"name", json_path(description->name)},
                         {"messages", json_texts(cli.reporter.messages())}});
        return done;
    }
    std::cout << "Scale: " << description->scale << "\nObject Size: " << description->size
              << "\nObject Name: " << description->name << '\n';
    return done;
}

int fill_guids(Cli& cli, const std::string& list) {
    const GuidFilling filling = generate_guids(cli.services(), list, random_guid);
    if (!filling.errors.empty()) {
        return report_wrong(cli, filling.errors, filling.problems);
    }
    const std::string text = "Identifiers generated : " + to_text(filling.filled);
    cli.reporter.add_message(text);
    if (!cli.json) {
        std::cout << text << '\n';
    }
    return done;
}

// The file that the output would destroy.
std::optional<std::string> overwritten_input(Cli& cli, const LibraryList& list,
                                             const CreateOptions& options) {
    if (is_same_file(*cli.disk, absolute_path(options.output), absolute_path(options.list))) {
        return options.list;
    }
    return overwritten_design(*cli.disk, list, options.output);
}

// What was written stays written: a file that cannot be read again is only noted.
void note_what_may_not_assemble(Cli& cli, const LibraryList& list, const CreateOptions& options) {
    try {
        std::vector<Problem> problems =
            find_file_assembly_problems(*cli.disk, options.output, folder_part(options.list));
        // A design without its file has been named already.
        std::erase_if(problems, [](const Problem& p) { return p.code == "include-missing"; });
        for (Problem& problem : find_library_list_problems(*cli.disk, list, options.list)) {
            if (problem.code != "library-model-missing") {
                problems.push_back(std::move(problem));
            }
        }
        note_problems(cli.reporter, problems);
    } catch (const RuntimeError& error) {
        cli.reporter.note({std::string("The designs could not be checked (") + error.description() +
                           ": " + error.about() + ")."});
    }
}

int create(Cli& cli, const CreateOptions& options) {
    const LibraryListReading reading = read_library_list(cli.services(), options.list);
    if (!reading.list) {
        return report_wrong(cli, reading.errors, reading.problems);
    }
    if (const auto input = overwritten_input(cli, *reading.list, options)) {
        return report_usage(cli, "--output: " + options.output + " would overwrite " + *input);
    }
    if (!create_library(cli.services(), *reading.list, options.output)) {
        return failed;
    }
    note_what_may_not_assemble(cli, *reading.list, options);
    return done;
}

int run_create(Cli& cli, const CreateOptions& options) {
    cli.reporter.print_notes_at_once();
    int status = options.generate_guids ? fill_guids(cli, options.list) : done;
    if (status == done && options.output_given) {
        status = create(cli, options);
        if (status != done && options.generate_guids) {
            cli.reporter.note({"the identifiers in " + options.list + " stay as they are now."});
        }
    }
    if (cli.json && status == done) {
        Json saved = Json::array();
        if (options.output_given) {
            saved.push_back(json_path(options.output));
        }
        print_json(cli, {{"saved", saved}, {"messages", json_texts(cli.reporter.messages())}});
    }
    return status;
}

void add_describe_command(CLI::App& library, Cli& cli) {
    auto* command =
        library.add_subcommand("describe", "Show scale, size and name that a design gives");
    const auto design = std::make_shared<std::string>();
    command->add_option("DESIGN", *design, "Base path of the design, without an ending")
        ->required();
    add_example(*command, "library describe hangar");
    on_call(*command, cli, [&cli, design] { return run_describe(cli, *design); });
}

void add_create_command(CLI::App& library, Cli& cli) {
    auto* command = library.add_subcommand("create", "Write the source of a library");
    const auto options = std::make_shared<CreateOptions>();
    command->add_option("LIST", options->list, "Library list (TOML)")->required();
    auto* output = command->add_option("--output", options->output, "The library's source file")
                       ->type_name("FILE");
    command->add_flag("--generate-guids", options->generate_guids,
                      "Write new identifiers into LIST where they are missing; without --output "
                      "nothing else");
    add_example(*command, "library create objects.toml --output objects.asm");
    on_call(*command, cli, [&cli, options, output] {
        options->output_given = output->count() > 0;
        if (!options->output_given && !options->generate_guids) {
            return report_usage(cli, "--output is required");
        }
        return run_create(cli, *options);
    });
}

} // namespace

void add_library_commands(CLI::App& app, Cli& cli) {
    auto* library = app.add_subcommand("library", "Describe designs and write library sources");
    library->require_subcommand(1);
    add_describe_command(*library, cli);
    add_create_command(*library, cli);
}

} // namespace morvane::cli
