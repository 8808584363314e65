// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <string>

namespace morvane::test {

/// What a run of the program left behind.
struct ProgramRun {
    int status = -1;
    std::string output; // of standard output
    std::string errors; // of standard error
};

/// Runs shell commands in `folder`, where `morvane-cli` is the program under test and its settings
/// lie in a folder of their own. Standard input is empty. The status is that of the last command.
ProgramRun run_commands(const std::string& folder, const std::string& commands);

/// Every file below a folder: its bytes by its path in the folder, "/" between names.
std::map<std::string, std::string> files_below(const std::string& folder);

/// Copies everything in a folder into another one.
void copy_into(const std::string& from, const std::string& to);

} // namespace morvane::test
