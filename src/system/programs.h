// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// An outside program and its arguments. No shell reads them: each arrives whole, whatever
/// characters it contains.
struct ProgramCall {
    std::vector<std::string> arguments; // [0] is the program's path
    std::string folder{};               // where it runs; empty: in the current folder
};

/// A program that was started and is not waited for. It runs on when this is destroyed.
class RunningProgram {
  public:
    RunningProgram() = default;
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    virtual ~RunningProgram() = default;

    /// Its exit status once it has ended (128 + number when a signal ended it).
    virtual std::optional<int> exit_status() = 0;
};

/// What a program that is waited for may do.
struct RunOptions {
    /// Called with each piece of what the program prints. Empty: the output is thrown away.
    std::function<void(std::string_view)> output{};
    /// The longest time that the program may take. Empty: as long as it likes.
    std::optional<std::chrono::milliseconds> limit{};
    /// Called about twenty times a second. Return false to end the program.
    std::function<bool()> keep_going{};
};

/// How a program that was waited for ended.
struct ProgramEnd {
    enum class How { Exited, TimedOut, Stopped };
    How how = How::Exited;
    int status = 0; // its exit status when it exited, as RunningProgram gives it
};

/// Finding, starting and running outside programs. A test replaces it to record what would be
/// started. A program that cannot be started throws RuntimeError with its path.
class Programs {
  public:
    Programs() = default;
    Programs(const Programs&) = delete;
    Programs& operator=(const Programs&) = delete;
    virtual ~Programs() = default;

    virtual bool can_execute(const std::string& path) = 0;
    /// The path of the program of that name on the PATH; empty when there is none.
    virtual std::string find_on_path(const std::string& name) = 0;

    /// Starts the program. All its output goes to `output_file`, which is emptied first; with an
    /// empty name the output is thrown away.
    virtual std::unique_ptr<RunningProgram> start(const ProgramCall& call,
                                                  const std::string& output_file) = 0;
    /// Runs the program to its end, without input. With a limit or `keep_going` the program and all
    /// that it started are ended together, also when a signal ends this program.
    virtual ProgramEnd run(const ProgramCall& call, const RunOptions& options) = 0;
};

/// The machine's own programs.
std::unique_ptr<Programs> make_system_programs();

} // namespace morvane
