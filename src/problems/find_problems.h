// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "problems/problem.h"
#include "problems/set_checks.h"
#include "source/open_set.h"
#include "system/disk.h"
#include "system/services.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// What find_problems is to look at, and what it may know besides.
struct ProblemRequest {
    const OpenSet& set;                   // opened, perhaps processed, perhaps saved
    std::string output{};                 // base path that the set is saved under; empty: its own
    std::vector<std::string> allowed{};   // codes that are not reported
    std::vector<PlannedObject> planned{}; // what materials become; those already processed too
    std::vector<std::string> effects{};   // the effect list; empty: effects are not looked up
    std::vector<KnownObject> objects{};   // of libraries; empty: identifiers are not looked up
    // The frame as it is on the disk, when a recipe has put lines into the set's; problems then
    // name its lines.
    const LineStore* opened_frame = nullptr;
    // What is named as it will be after a save; otherwise lines of the model file are those that
    // are there now, and generated code belongs to the line that it goes before.
    bool saved_lines = false;
    // Called between the parts of the work with how many of them are done, and of how many.
    std::function<void(std::size_t, std::size_t)> progress{};
};

/// A set as it is to be checked, whether Open takes it or not.
struct CheckedSet {
    OpenSet set;
    std::string refusal; // the message that Open shows; empty when it takes the set
    bool loaded = false; // its files were read
};

/// Opens a set for find_problems, without a message.
CheckedSet open_for_check(Disk& disk, const std::string& base);

/// All problems of a set, of the code generated so far, and of the code that would be generated for
/// what is planned, worst first. Never asks, never writes, and reports no message. A set that Open
/// refused can be looked at too, once its files are loaded.
std::vector<Problem> find_problems(Disk& disk, const ProblemRequest& request);

/// The problems at which the assembler would stop in the set as it will be saved under `output`:
/// labels, includes, macros, the dictionary, jumps. Lines are those of the files to be written.
std::vector<Problem> find_set_assembly_problems(Disk& disk, const OpenSet& set,
                                                const std::string& output);

/// The same for a source file on the disk with what it includes, which may lie in `folder` too.
/// A file that cannot be read is one problem, since what was written stays written.
std::vector<Problem> find_file_assembly_problems(Disk& disk, const std::string& path,
                                                 const std::string& folder = {});

/// Reports errors and warnings as notes, at most 20 of one code and none of those `allowed`.
/// Returns whether there were any.
bool note_problems(Reporter& reporter, std::vector<Problem> problems,
                   const std::vector<std::string>& allowed = {});

} // namespace morvane
