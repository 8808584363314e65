#pragma once

#include "cli/console_reporter.h"
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

    Services services() { return {*disk, reporter}; }
    /// The folder of settings, scratch and report files.
    std::string program_folder();
    /// The effect that a recipe means when it names none: the first of the effect list.
    std::string default_effect();
};

/// Hangs `run` on a command: it is called when the command line has been read, and gives the exit
/// status.
void on_call(CLI::App& command, Cli& cli, std::function<int()> run);

/// Prints messages about a wrong recipe or list to standard error; gives the status for that.
int report_wrong(const std::vector<std::string>& errors);

// One function a command file: adds the commands to the program's command line.
void add_inspect_command(CLI::App& app, Cli& cli);
void add_process_command(CLI::App& app, Cli& cli);
void add_check_command(CLI::App& app, Cli& cli);
void add_tool_commands(CLI::App& app, Cli& cli); // backup, restore, compile, rename-labels
void add_assemble_command(CLI::App& app, Cli& cli);
void add_library_commands(CLI::App& app, Cli& cli);
void add_bgl_commands(CLI::App& app, Cli& cli);
void add_render_command(CLI::App& app, Cli& cli);

} // namespace morvane::cli
