// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "cli/cli.h"
#include "cli/process_set.h"
#include "source/source_set.h"

#include <algorithm>
#include <iostream>

namespace morvane::cli {

namespace {

// The command line as it was typed: bases, and a recipe among them.
struct ProcessArguments {
    std::vector<std::string> words;
    bool output_given = false;
    ProcessOptions options;

    std::vector<std::string> bases{};
    std::string recipe{}; // empty: each base takes its own
};

// Of two words the second is the recipe, whatever its name ends in, unless it is a base.
bool is_recipe(Disk& disk, const std::vector<std::string>& words, std::size_t i) {
    return has_ending(words[i], ".toml") ||
           (words.size() == 2 && i == 1 && !has_ending(words[0], ".toml") &&
            !disk.is_file(model_file_name(words[i])));
}

// Tells bases and recipe apart. Returns what is wrong; empty when nothing is.
std::string sort_words(Disk& disk, ProcessArguments& arguments) {
    for (std::size_t i = 0; i < arguments.words.size(); ++i) {
        const std::string& word = arguments.words[i];
        if (!is_recipe(disk, arguments.words, i)) {
            arguments.bases.push_back(word);
        } else if (arguments.recipe.empty()) {
            arguments.recipe = word;
        } else {
            return "Only one recipe can be given: " + arguments.recipe + " or " + word + ".";
        }
    }
    const std::string& output = arguments.options.output;
    if (arguments.bases.empty()) {
        return "No base path is given.";
    }
    if (arguments.output_given && arguments.bases.size() > 1) {
        return "--output takes one base path, so it cannot be used with several sets.";
    }
    if (arguments.output_given && output.empty()) {
        return "--output is empty. It takes a base path without an ending.";
    }
    if (has_ending(output, ".asm")) {
        return "--output " + output + ": a base path is given without an ending.";
    }
    if (arguments.options.with_frame && !arguments.output_given) {
        return "--with-frame goes with --output.";
    }
    return {};
}

SetResult process_base(Cli& cli, const ProcessArguments& arguments, const std::string& base) {
    return process_set(cli, arguments.options, base,
                       arguments.recipe.empty() ? base + ".toml" : arguments.recipe);
}

int process_one(Cli& cli, const ProcessArguments& arguments) {
    const SetResult result = process_base(cli, arguments, arguments.bases.front());
    if (cli.json && result.status == done) {
        print_json(cli, result.document);
    }
    return result.status;
}

struct Counts {
    std::size_t done = 0;
    std::size_t refused = 0;
    std::size_t failed = 0;
};

SetResult process_guarded(Cli& cli, const ProcessArguments& arguments, const std::string& base) {
    cli.reporter.clear_messages();
    cli.problems.clear();
    cli.error.clear();
    try {
        return process_base(cli, arguments, base);
    } catch (const RuntimeError& error) {
        cli.error = error.what();
        cli.reporter.message_box(cli.error, Icon::None);
        return {failed, false, nullptr};
    }
}

int process_several(Cli& cli, const ProcessArguments& arguments) {
    Counts counts;
    int worst = done;
    Json sets = Json::array();
    for (const std::string& base : arguments.bases) {
        std::cerr << "Note: set " << base << std::endl;
        const SetResult result = process_guarded(cli, arguments, base);
        std::cout.flush();
        worst = std::max(worst, result.status);
        ++(result.status == done ? counts.done : result.refused ? counts.refused : counts.failed);
        sets.push_back(result.status == done ? result.document
                                             : failure_document(cli, result.status));
    }
    if (cli.json) {
        print_json(cli, {{"sets", sets}});
    } else {
        std::cout << arguments.bases.size() << " sets: " << counts.done << " done, "
                  << counts.refused << " refused, " << counts.failed << " failed\n";
    }
    return worst;
}

int run_process(Cli& cli, ProcessArguments arguments) {
    if (const std::string problem = sort_words(*cli.disk, arguments); !problem.empty()) {
        return report_usage(cli, problem);
    }
    return arguments.bases.size() == 1 ? process_one(cli, arguments)
                                       : process_several(cli, arguments);
}

void add_process_options(CLI::App& command, ProcessArguments& arguments) {
    ProcessOptions& options = arguments.options;
    command
        .add_option("BASE", arguments.words,
                    "Base paths of sets, without an ending, and a recipe (.toml) for all of them; "
                    "without one each set takes BASE.toml")
        ->required();
    command
        .add_option_function<std::string>(
            "--output",
            [&arguments](const std::string& base) {
                arguments.options.output = base;
                arguments.output_given = true;
            },
            "Save under another base path; default: the set's own")
        ->type_name("BASE");
    command.add_flag("--with-frame", options.with_frame,
                     "Write the frame file under the other base path too");
    command.add_flag("--backup", options.backup, "Back the set up before it is saved");
    command.add_flag("--force", options.force,
                     "Take materials that are rewritten or hold more than triangles too, and let "
                     "--backup replace the backup of an export");
    command.add_flag("--dry-run", options.dry_run,
                     "Write no file; print the change as a unified diff");
    command.add_flag("--trace", options.trace, "Write the trace files to the current folder");
    command.add_flag("--strict", options.strict,
                     "Materials that no assignment names, and problems of the result, are errors");
}

} // namespace

void add_process_command(CLI::App& app, Cli& cli) {
    auto* command = app.add_subcommand(
        "process", "Rewrite the marked materials of sets by a recipe and save them");
    const auto arguments = std::make_shared<ProcessArguments>();
    add_process_options(*command, *arguments);
    add_example(*command, "process airport airport.toml");
    on_call(*command, cli, [&cli, arguments] { return run_process(cli, *arguments); });
}

} // namespace morvane::cli
