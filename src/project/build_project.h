// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/build_plan.h"
#include "project/export_watch.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace morvane {

enum class StepState { Made, UpToDate, Failed, NotReached };

/// "made", "up to date", "failed" or "not reached".
std::string_view step_state_text(StepState state);

/// What became of a step.
struct StepResult {
    std::string name;
    StepKind kind = StepKind::Set;
    StepState state = StepState::NotReached;
    std::string reason;               // why it was to be made; empty when it is up to date
    std::vector<std::string> outputs; // paths
    std::vector<Problem> problems;
    std::string compiler_output; // bytes as the compiler printed them
};

/// How a compiler ended.
struct CompilerEnd {
    bool ok = false;
    std::string problem; // why not
    std::string output;
};

struct BuildOptions {
    std::vector<std::string> names; // of the steps to build; empty: all
    std::size_t jobs = 1;           // how many at a time
    bool keep_going = false;
    bool dry_run = false;
    bool force = false;
    /// Runs the compiler's words in a folder to its end; called by several threads at once.
    std::function<CompilerEnd(const std::vector<std::string>& words, const std::string& folder)>
        compile{};
    /// Whether an export may be read whose files are like this; called by several threads at once.
    /// A step of one that may not, or that changes while it is read, is not reached and stays as it
    /// was. Empty: every export is read, and one that changes meanwhile fails its step.
    ExportGate may_read{};
    /// Whether to stop early; steps that are being made are ended in good order.
    std::function<bool()> interrupted{};
    /// Called for each step in the order of the project, with its place among all, from 1.
    std::function<void(const StepResult& step, std::size_t place, std::size_t total)> finished{};
};

struct BuildResult {
    /// NotStarted: the project is wrong, see errors. Refused: the output folder cannot be used.
    enum class How { Done, Failed, Interrupted, Refused, NotStarted };
    How how = How::Done;
    std::vector<StepResult> steps; // in the order of the project
    std::vector<std::string> errors;
    std::vector<Note> problems; // the same errors, with their places
    std::vector<Note> notes;
};

/// Makes the steps of a project that are not up to date. The manifest in the output folder says
/// what was made from what; a step that failed or was killed is made again next time. Every file is
/// the old one or the new one at each moment. Throws RuntimeError when the output folder or its
/// manifest cannot be read or written.
BuildResult build_project(const Services& services, const Project& project,
                          const BuildSurroundings& surroundings, const BuildOptions& options);

} // namespace morvane
