// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/program_folder.h"

#include "base/errors.h"
#include "base/paths.h"
#include "system/disk.h"

namespace morvane {

std::string find_program_folder(Disk& disk, const ProgramFolderChoices& choices) {
    if (!choices.option.empty()) {
        return choices.option;
    }
    if (!choices.environment.empty()) {
        return choices.environment;
    }
    if (!choices.executable_folder.empty() && !is_system_folder(choices.executable_folder) &&
        disk.is_writable_folder(choices.executable_folder)) {
        return choices.executable_folder;
    }
    if (choices.user_data_folder.empty()) {
        throw RuntimeError(ErrorNumber::PathNotFound, "no folder for the program's own files");
    }
    return choices.user_data_folder;
}

std::string resolve_program_folder(Disk& disk, const ProgramFolderChoices& choices) {
    std::string folder = find_program_folder(disk, choices);
    if (!disk.is_folder(folder)) {
        disk.create_folder(folder);
    }
    return folder;
}

bool is_system_folder(const std::string& folder) {
    for (const std::string system :
         {"/usr", "/bin", "/sbin", "/lib", "/lib32", "/lib64", "/opt", "/etc", "/var", "/snap"}) {
        if (folder == system || folder.starts_with(system + "/")) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> helper_folders(const std::string& executable_folder) {
    return {executable_folder,
            join_path(join_path(join_path(executable_folder, ".."), "lib"), "morvane")};
}

std::string user_data_folder(const std::string& data_home, const std::string& home) {
    if (data_home.starts_with('/')) {
        return join_path(data_home, "morvane");
    }
    if (home.empty()) {
        return {};
    }
    return join_path(join_path(join_path(home, ".local"), "share"), "morvane");
}

} // namespace morvane
