#pragma once

#include "base/outcome.h"
#include "system/programs.h"
#include "system/services.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace morvane {

/// A set of files and the place where the compiler's output goes.
struct CompileJob {
    std::string base;           // of the set, no extension; its frame file is compiled
    std::string program_folder; // "comp.txt" is written there
};

/// Where the compiler's output of the last run is kept.
std::string compile_output_file(const CompileJob& job);

/// Starts the compiler that lies in the set's own folder and does not wait for it; its output goes
/// to "comp.txt". Nothing when there is no compiler or it cannot be started; the user has then been
/// told.
std::unique_ptr<RunningProgram> start_compile(const Services& services, Programs& programs,
                                              const CompileJob& job);

/// Runs the compiler to its end, handing its output on as it comes and leaving it in "comp.txt"
/// too. Failed when there is no compiler or it gives another exit status than 0.
Outcome run_compile(const Services& services, Programs& programs, const CompileJob& job,
                    const std::function<void(std::string_view)>& output);

} // namespace morvane
