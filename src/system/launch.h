#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// An outside program and its arguments, each of which arrives whole whatever characters it holds.
struct ProgramCall {
    std::vector<std::string> arguments; // [0] is the program's path
};

/// A program that was started and is not waited for. It runs on when this is destroyed.
class RunningProgram {
  public:
    RunningProgram() = default;
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    virtual ~RunningProgram() = default;

    /// Its exit status when it has ended (128 + number when a signal ended it).
    virtual std::optional<int> exit_status() = 0;
};

/// Starting outside programs goes through this interface, so that a test can record what would be
/// started. A program that cannot be started throws RuntimeError with its path.
class Launcher {
  public:
    Launcher() = default;
    Launcher(const Launcher&) = delete;
    Launcher& operator=(const Launcher&) = delete;
    virtual ~Launcher() = default;

    virtual bool can_execute(const std::string& path) = 0;
    /// The program's path by the PATH; empty when it is not there.
    virtual std::string find_on_path(const std::string& name) = 0;

    /// Starts the program, all its output going to `output_file`, which is emptied first.
    virtual std::unique_ptr<RunningProgram> start(const ProgramCall& call,
                                                  const std::string& output_file) = 0;
    /// Runs the program to its end, handing its output on as it comes; gives its exit status.
    virtual int run(const ProgramCall& call,
                    const std::function<void(std::string_view)>& output) = 0;
};

/// The machine's own programs.
std::unique_ptr<Launcher> make_system_launcher();

} // namespace morvane
