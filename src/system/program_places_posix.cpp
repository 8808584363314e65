// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/program_places.h"

#include <cstdlib>
#include <filesystem>

namespace morvane {

std::string executable_folder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::string environment_variable(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::string() : std::string(value);
}

ProgramFolderChoices program_places(const std::string& option) {
    return {option, environment_variable("MORVANE_HOME"), executable_folder(),
            user_data_folder(environment_variable("XDG_DATA_HOME"), environment_variable("HOME"))};
}

} // namespace morvane
