// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/programs.h"
#include "system/services.h"

#include <chrono>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace morvane {

/// How compressed files are unpacked on this machine: by the program `bglunpack`, which calls the
/// simulator's closed library in a process of its own, so that a crash of the library ends only
/// that process.
struct Unpacking {
    Programs& programs;
    /// Where `bglunpack.exe` and `bglunpack64.exe` are looked for after the program folder.
    std::vector<std::string> folders{};
    /// Whether Windows programs run here as they are; elsewhere they are started through wine.
    bool on_windows =
#ifdef _WIN32
        true;
#else
        false;
#endif
    /// How long one file may take.
    std::chrono::milliseconds limit = std::chrono::minutes(2);
    /// Asked before each unpacking, and about twenty times a second during it. Return false to
    /// stop; `stopped` is then set.
    std::function<bool()> keep_going{};
    /// Called with a compressed file and the file that it was unpacked to, which the next one
    /// replaces.
    std::function<void(const std::string&, const std::string&)> unpacked{};

    // What happened in the command that runs.
    std::set<std::string> hints_given{}; // a search would repeat them for every file
    bool timed_out = false;              // nothing more is unpacked then
    bool stopped = false;
};

/// Forgets what happened in the command before.
void begin_command(Unpacking& unpacking);

/// Unpacks a compressed file into the program folder. Returns the unpacked file: "tmp.bgl", or
/// "tmp2.bgl" when a file named tmp.bgl is compressed itself or is the one to unpack. Either
/// replaces what an earlier command unpacked. Returns std::nullopt, after a hint that says why,
/// when the file could not be unpacked; what is in "tmp.bgl" then is not its contents.
std::optional<std::string> decompress_bgl(const Services& services,
                                          const std::string& program_folder, Unpacking& unpacking,
                                          const std::string& path);

} // namespace morvane
