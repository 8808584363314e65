// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace morvane {
class Disk;
}

namespace morvane::cli {

/// Lets the help of every command list the options that all commands have.
void use_full_help(CLI::App& app);

/// Adds `help COMMAND`, which prints what `COMMAND --help` prints, and `help TOPIC`, which prints a
/// chapter of the guide or another page. A word that is a command is never a topic.
void add_help_command(CLI::App& app, Disk& disk);

/// The program that a command belongs to.
const CLI::App& program_of(const CLI::App& command);

/// A command as it is typed: "morvane-cli library create".
std::string typed_name(const CLI::App& command);

/// The commands below one, in the order of the help.
std::vector<const CLI::App*> commands_below(const CLI::App& command);

/// The command of that name below one; null when there is none.
const CLI::App* find_command(const CLI::App& above, const std::string& name);

} // namespace morvane::cli
