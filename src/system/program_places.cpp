// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/program_places.h"

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

namespace {

// `path` has "/" between its folders, on every platform.
std::string below(const std::string& folder, const std::string& path) {
    const std::size_t end = path.find('/');
    const std::string joined = join_path(folder, path.substr(0, end));
    return end == std::string::npos ? joined : below(joined, path.substr(end + 1));
}

// A checkout's build is in build/PRESET, its programs in src/cli and src/ui of that.
std::string checkout_of(const std::string& executable_folder) {
    return below(executable_folder, "../../../..");
}

} // namespace

std::vector<std::string> document_folders(const std::string& executable_folder) {
    return {below(executable_folder, "docs"), below(executable_folder, "../share/doc/morvane"),
            below(checkout_of(executable_folder), "docs")};
}

std::vector<std::string> macro_folders(const std::string& executable_folder) {
    return {below(executable_folder, "../share/morvane"), executable_folder,
            below(checkout_of(executable_folder), "share")};
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
