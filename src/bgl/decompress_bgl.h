#pragma once

#include "system/services.h"
#include "system/unpack_process.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace morvane {

/// How compressed files are unpacked on this machine: by the program `bglunpack`, which calls the
/// simulator's closed library in a process of its own, so that a fault in there stays there.
struct Unpacking {
    /// Where `bglunpack.exe` and `bglunpack64.exe` are looked for, besides the program folder.
    std::vector<std::string> folders;
    /// Whether Windows programs run here as they are; elsewhere they are started through wine.
    bool on_windows =
#ifdef _WIN32
        true;
#else
        false;
#endif
    /// The folders of programs, as the environment names them, in which wine is looked for.
    std::string search_path;
    std::function<int(const std::vector<std::string>&)> run = run_program;
    /// Hints already given by this command: a search would repeat them for every file.
    std::set<std::string> hints_given;
};

/// The unpacking of this machine, with the search path of its environment.
Unpacking system_unpacking(std::vector<std::string> folders);

/// Unpacks the compressed file into "tmp.bgl" in the program folder. Gives false after a hint that
/// says what is missing; then there is no "tmp.bgl", an older one neither.
/// Throws RuntimeError when an older "tmp.bgl" cannot be removed.
bool decompress_bgl(const Services& services, const std::string& program_folder,
                    Unpacking& unpacking, const std::string& path);

/// The name of the unpacked file.
std::string unpacked_path(const std::string& program_folder);

} // namespace morvane
