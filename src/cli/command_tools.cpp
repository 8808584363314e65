// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/cli.h"
#include "cli/json_text.h"
#include "upkeep/backup.h"
#include "upkeep/rename_labels.h"

#include <iostream>

namespace morvane::cli {

namespace {

using Bases = std::vector<std::string>;

// Prints the outcome as JSON if that is wanted; gives the exit status.
int finish(Cli& cli, Outcome outcome, Json document = Json::object()) {
    if (cli.json && outcome == Outcome::Done) {
        document["messages"] = json_texts(cli.reporter.messages());
        print_json(cli, document);
    }
    return outcome == Outcome::Done ? done : failed;
}

// Prints what was copied. A base of which nothing was there to be copied is a failure.
int finish_copies(Cli& cli, const CopyResult& result) {
    Json copied = Json::array();
    for (const FileCopy& copy : result.copied) {
        copied.push_back({{"from", json_path(copy.from)}, {"to", json_path(copy.to)}});
        if (!cli.json) {
            std::cout << "Copied " << copy.from << " to " << copy.to << '\n';
        }
    }
    Outcome outcome = result.outcome;
    for (const std::string& base : result.bases_without_files()) {
        cli.reporter.message_box("There was nothing to copy for " + base + ".", Icon::Critical);
        outcome = Outcome::Failed;
    }
    return finish(cli, outcome, {{"copied", std::move(copied)}});
}

int run_backup(Cli& cli, const Bases& bases, bool force) {
    cli.reporter.print_notes_at_once();
    if (!force && would_lose_export(cli.services(), bases)) {
        return failed;
    }
    return finish_copies(cli, bases.size() == 1 ? backup_source_set(cli.services(), bases.front())
                                                : backup_aircraft_sets(cli.services(), bases));
}

int run_restore(Cli& cli, const Bases& bases) {
    cli.reporter.print_notes_at_once();
    return finish_copies(cli, restore_source_sets(cli.services(), bases));
}

int run_rename_labels(Cli& cli, const std::string& file, const std::string& suffix) {
    const Outcome outcome = rename_labels(cli.services(), file, suffix);
    if (!cli.json) {
        cli.reporter.print_log();
    }
    return finish(cli, outcome);
}

std::shared_ptr<Bases> add_bases(CLI::App& command) {
    auto bases = std::make_shared<Bases>();
    command
        .add_option("BASE", *bases,
                    "Base path of the set, without an ending; several for an aircraft")
        ->required();
    return bases;
}

void add_backup_command(CLI::App& app, Cli& cli) {
    auto* command = app.add_subcommand("backup", "Copy the files of a set aside");
    const auto bases = add_bases(*command);
    const auto force = std::make_shared<bool>(false);
    command->add_flag("--force", *force,
                      "Also copy a set that was rewritten over the backup of one that was not");
    add_example(*command, "backup airport");
    on_call(*command, cli, [&cli, bases, force] { return run_backup(cli, *bases, *force); });
}

void add_restore_command(CLI::App& app, Cli& cli) {
    auto* command = app.add_subcommand("restore", "Copy the backups of a set back");
    const auto bases = add_bases(*command);
    add_example(*command, "restore airport");
    on_call(*command, cli, [&cli, bases] { return run_restore(cli, *bases); });
}

void add_rename_labels_command(CLI::App& app, Cli& cli) {
    auto* command =
        app.add_subcommand("rename-labels", "Append a suffix to all labels of a MASM file");
    const auto file = std::make_shared<std::string>();
    const auto suffix = std::make_shared<std::string>();
    command->add_option("FILE", *file, "The file's full name, with its ending")->required();
    command->add_option("SUFFIX", *suffix, "The text to append, for example G2")->required();
    add_example(*command, "rename-labels hangar_0.asm G2");
    on_call(*command, cli, [&cli, file, suffix] { return run_rename_labels(cli, *file, *suffix); });
}

} // namespace

void add_tool_commands(CLI::App& app, Cli& cli) {
    add_backup_command(app, cli);
    add_restore_command(app, cli);
    add_compile_command(app, cli);
    add_rename_labels_command(app, cli);
}

} // namespace morvane::cli
