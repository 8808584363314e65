// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "cli/console_reporter.h"
#include "cli/json_text.h"
#include "problems/set_checks.h"
#include "system/disk.h"
#include "system/services.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace morvane::cli {

/// The exit status of a command.
enum Status {
    done = 0,
    failed = 1, // refused, declined or failed; a message on standard error says why
    wrong = 2,  // the command line, a recipe or a library list is wrong
};

/// What every command has at hand.
struct Cli {
    std::unique_ptr<Disk> disk = make_system_disk();
    ConsoleReporter reporter;
    std::string program_folder_option; // as typed, empty when not given
    bool json = false;
    int status = done;
    std::vector<Note> problems;    // of a recipe, a list or a project
    std::string error;             // what else ended the command; empty when a message box says it
    bool document_printed = false; // a command that fails may have printed one all the same

    Services services() { return {*disk, reporter}; }
    /// The folder of settings, scratch and report files; created when missing. Throws RuntimeError.
    std::string program_folder();
    /// The effect list. Writes nothing, so that no program folder is needed.
    std::vector<std::string> effects();
    /// The objects that the last search of libraries found. Needs no program folder either.
    std::vector<KnownObject> searched_objects();
    /// The effect that a recipe means when it names none: the first of the effect list.
    std::string default_effect();
};

/// Sets what a command does: `run` is called once the command line has been read, and returns the
/// exit status.
void on_call(CLI::App& command, Cli& cli, std::function<int()> run);

/// The example that ends the help of a command: its line, without "morvane-cli ".
void add_example(CLI::App& command, const std::string& line);

/// Prints what is wrong with a recipe, list or project to standard error; returns the status for
/// that. `problems` are the same errors, for the document of --json.
int report_wrong(Cli& cli, const std::vector<std::string>& errors,
                 const std::vector<Note>& problems);

/// The same for the command line.
int report_usage(Cli& cli, const std::string& problem);

/// The document of a command that failed, or of one of its sets: what ended it, and the log.
Json failure_document(const Cli& cli, int status);

/// Prints the one document of a command that runs with --json.
void print_json(Cli& cli, const Json& document);

// One function a command file: adds the commands to the program's command line.
void add_inspect_command(CLI::App& app, Cli& cli);
void add_process_command(CLI::App& app, Cli& cli);
void add_check_command(CLI::App& app, Cli& cli);
void add_tool_commands(CLI::App& app, Cli& cli); // backup, restore, rename-labels
void add_compile_command(CLI::App& app, Cli& cli);
void add_assemble_command(CLI::App& app, Cli& cli);
void add_library_commands(CLI::App& app, Cli& cli);
void add_bgl_commands(CLI::App& app, Cli& cli);
void add_render_command(CLI::App& app, Cli& cli);
void add_build_command(CLI::App& app, Cli& cli);
void add_watch_command(CLI::App& app, Cli& cli);

} // namespace morvane::cli
