#pragma once

#include <string>

namespace morvane {

class Disk;

/// Where the program folder may be; empty text for what is not known.
struct ProgramFolderChoices {
    std::string option;            // given on the command line
    std::string environment;       // MORVANE_HOME
    std::string executable_folder; // taken only when it can be written to
    std::string user_data_folder;  // the user's own data folder for the program
};

/// The first of the choices that is there to be taken. A folder that was asked for, or the user's
/// own, is created when it is missing. Throws RuntimeError when that fails, PathNotFound when there
/// is no choice left.
std::string resolve_program_folder(Disk& disk, const ProgramFolderChoices& choices);

/// The user's own data folder for the program: "morvane" in `data_home` (XDG_DATA_HOME, only if it
/// is absolute), else in ".local/share" of `home`; empty when neither is known.
std::string user_data_folder(const std::string& data_home, const std::string& home);

} // namespace morvane
