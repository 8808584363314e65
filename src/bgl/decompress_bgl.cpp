#include "bgl/decompress_bgl.h"

#include "base/paths.h"
#include "base/reporter.h"
#include "bgl/unpack/statuses.h"
#include "system/absolute_path.h"
#include "system/disk.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace morvane {

namespace {

using Words = std::vector<std::string>;

void hint(const Services& services, Unpacking& unpacking, const std::string& text) {
    if (unpacking.hints_given.insert(text).second) {
        services.reporter.note({text});
    }
}

// The 32-bit program comes first, since the simulator's library is 32-bit code.
Words unpacking_programs(Disk& disk, const Words& folders) {
    Words programs;
    for (const char* name : {"bglunpack.exe", "bglunpack64.exe"}) {
        for (const std::string& folder : folders) {
            const std::string program = join_path(folder, name);
            if (disk.is_file(program)) {
                programs.push_back(program);
                break;
            }
        }
    }
    return programs;
}

std::string find_wine(Disk& disk, std::string_view search_path) {
    while (!search_path.empty()) {
        const std::size_t end = std::min(search_path.find(':'), search_path.size());
        std::string program = join_path(search_path.substr(0, end), "wine");
        if (end > 0 && disk.is_file(program)) {
            return program;
        }
        search_path.remove_prefix(std::min(end + 1, search_path.size()));
    }
    return {};
}

// What stands before a Windows program on the command line: nothing on Windows, else wine, which
// is an empty word when it is missing.
Words find_launcher(Disk& disk, const Unpacking& unpacking) {
    return unpacking.on_windows ? Words{} : Words{find_wine(disk, unpacking.search_path)};
}

std::string what_is_missing(const Words& programs, const Words& launcher,
                            const std::string& program_folder) {
    if (programs.empty()) {
        return "bglunpack.exe was not found in the program folder " + program_folder;
    }
    return !launcher.empty() && launcher[0].empty() ? "wine is not installed" : "";
}

// Wine shows this system's files as drive Z.
std::string windows_name(const std::string& path, bool on_windows) {
    if (on_windows) {
        return absolute_path(path);
    }
    std::string name = std::filesystem::absolute(path).lexically_normal().string();
    std::replace(name.begin(), name.end(), '/', '\\');
    return name.insert(0, "Z:");
}

std::string reason(int status) {
    switch (status) {
    case unpack_no_library:
        return "the simulator's library sup.dll was not found or cannot be loaded (put it into "
               "the program folder, or name it in MORVANE_SUP_DLL)";
    case unpack_no_function:
        return "the library sup.dll lacks a function for reading compressed files";
    case unpack_nothing:
        return "the library sup.dll could not unpack the file";
    case unpack_cannot_write:
        return "tmp.bgl cannot be written";
    case program_not_started:
        return "the unpacking program could not be started";
    case program_timed_out:
        return "the unpacking program did not end in time";
    default:
        return "the unpacking program failed with status " + std::to_string(status);
    }
}

// Whether the other of the two programs may do what this one could not: the library may be code of
// the other width, or only one width runs here at all.
bool try_other_width(int status) {
    return status != unpack_done && status != unpack_nothing && status != unpack_cannot_write &&
           status != program_timed_out;
}

bool says_why(int status) {
    return status >= unpack_wrong_usage && status <= unpack_cannot_write;
}

// Wine ends well even when it could not start a program of the other width.
int run_one(Disk& disk, const Words& command, const std::string& unpacked,
            const Unpacking& unpacking) {
    const int status = unpacking.run(command);
    return status == unpack_done && !disk.is_file(unpacked) ? program_not_started : status;
}

int run_programs(Disk& disk, const Words& programs, const Words& launcher, const Words& arguments,
                 const std::string& unpacked, const Unpacking& unpacking) {
    int result = program_not_started;
    for (const std::string& program : programs) {
        Words command = launcher;
        command.push_back(program);
        command.insert(command.end(), arguments.begin(), arguments.end());
        const int status = run_one(disk, command, unpacked, unpacking);
        if (!says_why(result) || !try_other_width(status)) {
            result = status;
        }
        if (!try_other_width(status)) {
            break;
        }
    }
    return result;
}

} // namespace

Unpacking system_unpacking(std::vector<std::string> folders) {
    Unpacking unpacking;
    unpacking.folders = std::move(folders);
    if (const char* search_path = std::getenv("PATH")) {
        unpacking.search_path = search_path;
    }
    return unpacking;
}

std::string unpacked_path(const std::string& program_folder) {
    return join_path(program_folder, "tmp.bgl");
}

bool decompress_bgl(const Services& services, const std::string& program_folder,
                    Unpacking& unpacking, const std::string& path) {
    const std::string unpacked = unpacked_path(program_folder);
    if (services.disk.is_file(unpacked)) {
        services.disk.remove(unpacked);
    }
    Words folders = unpacking.folders;
    folders.insert(folders.begin(), program_folder);
    const Words programs = unpacking_programs(services.disk, folders);
    const Words launcher = find_launcher(services.disk, unpacking);
    const std::string missing = what_is_missing(programs, launcher, program_folder);
    if (!missing.empty()) {
        hint(services, unpacking, "Compressed files cannot be unpacked: " + missing + ".");
        return false;
    }
    const bool on_windows = unpacking.on_windows;
    const Words arguments{windows_name(path, on_windows), windows_name(unpacked, on_windows),
                          windows_name(program_folder, on_windows)};
    const int status =
        run_programs(services.disk, programs, launcher, arguments, unpacked, unpacking);
    if (status != unpack_done) {
        hint(services, unpacking, path + " was not unpacked: " + reason(status) + ".");
    }
    return status == unpack_done;
}

} // namespace morvane
