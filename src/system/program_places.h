// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace morvane {

class Disk;

/// Where the program folder may be; empty text for what is not known.
struct ProgramFolderChoices {
    std::string option;            // given on the command line
    std::string environment;       // MORVANE_HOME
    std::string executable_folder; // only if it can be written to and is not the system's
    std::string user_data_folder;  // the user's own data folder for the program
};

/// The first of the choices that can be used, whether it is there yet or not. Creates nothing.
/// Throws PathNotFound when there is no choice left.
std::string find_program_folder(Disk& disk, const ProgramFolderChoices& choices);

/// The first of the choices that can be used. A folder that was asked for, or the user's
/// own, is created when it is missing. Throws RuntimeError when that fails, PathNotFound when there
/// is no choice left.
std::string resolve_program_folder(Disk& disk, const ProgramFolderChoices& choices);

/// The user's own data folder for the program: "morvane" in `data_home` (XDG_DATA_HOME, only if it
/// is absolute), else in ".local/share" of `home`; empty when neither is known.
std::string user_data_folder(const std::string& data_home, const std::string& home);

/// Whether a folder belongs to the system (`/usr`, `/bin`, `/opt` and others, with all below): even
/// root, who may write there, has no settings in it. Never on Windows, where a program keeps its
/// settings beside itself.
bool is_system_folder(const std::string& folder);

/// Where the helper programs that come with this one are looked for, given the folder of the
/// running program: in that folder (as installed on Windows), then in `lib/morvane` beside it (as
/// installed elsewhere, and as built).
std::vector<std::string> helper_folders(const std::string& executable_folder);

/// Where the documents are looked for: in `docs` beside the running program (as installed on
/// Windows), in `share/doc/morvane` (as installed elsewhere), in `docs` of the checkout that the
/// program was built in.
std::vector<std::string> document_folders(const std::string& executable_folder);

/// Where the macro files (`morvane.inc`) are looked for: in `share/morvane`, beside the running
/// program, in `share` of the checkout.
std::vector<std::string> macro_folders(const std::string& executable_folder);

/// Where the program folder may be on this machine. `option` is what the user asked for when
/// starting the program, empty when nothing.
ProgramFolderChoices program_places(const std::string& option);

/// The folder of the running program; empty when the system does not tell.
std::string executable_folder();

/// A variable of the environment, in UTF-8; empty when it is not set.
std::string environment_variable(const std::string& name);

} // namespace morvane
