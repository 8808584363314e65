// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "system/programs.h"
#include "system/services.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// The words of a command line such as `wine "C:\my tools\bglc.exe"`: separated by blanks, which
/// quotes of either kind keep together. Nothing when there is no word or a quote is not closed.
std::optional<std::vector<std::string>> command_words(std::string_view text);

/// What is compiled, and with which compiler.
struct CompileJob {
    std::string base;           // of the set, no extension; its frame file is compiled
    std::string program_folder; // "comp.txt" is written there
    bool mdl = false;           // with "/mdl", as aircraft are, instead of "/bgl"
    /// The command; a program without a folder is looked for on the PATH. Empty: MORVANE_COMPILER,
    /// else "bglc" in the set's folder, else on the PATH.
    std::vector<std::string> compiler{};
};

/// Where the compiler's output of the last run is kept.
std::string compile_output_file(const CompileJob& job);

/// Starts the compiler in the set's folder and does not wait for it; its output goes to "comp.txt".
/// Null when there is no compiler or it cannot be started; the user has then been told why.
std::unique_ptr<RunningProgram> start_compile(const Services& services, Programs& programs,
                                              const CompileJob& job);

/// Runs the compiler to its end in the set's folder, handing its output on as it comes and keeping
/// it in "comp.txt". Failed, after a message, when there is no compiler or its exit status is not
/// 0.
Outcome run_compile(const Services& services, Programs& programs, const CompileJob& job,
                    const std::function<void(std::string_view)>& output);

} // namespace morvane
