// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/errors.h"
#include "system/programs.h"

#include <map>
#include <set>

namespace morvane::test {

/// Starts nothing; writes down what would have been started.
class RecordingPrograms final : public Programs {
  public:
    class Ended final : public RunningProgram {
      public:
        std::optional<int> exit_status() override { return 0; }
    };

    bool can_execute(const std::string& path) override { return executables.contains(path); }
    std::string find_on_path(const std::string& name) override { return on_path[name]; }
    std::unique_ptr<RunningProgram> start(const ProgramCall& call,
                                          const std::string& output_file) override {
        record(call);
        output_files.push_back(output_file);
        return std::make_unique<Ended>();
    }
    ProgramEnd run(const ProgramCall& call, const RunOptions& options) override {
        record(call);
        limits.push_back(options.limit);
        if (options.output) {
            options.output("out");
        }
        return on_run(call, options);
    }

    std::set<std::string> executables;
    std::map<std::string, std::string> on_path;
    /// What a program that is run does, and how it ends.
    std::function<ProgramEnd(const ProgramCall&, const RunOptions&)> on_run =
        [](const ProgramCall&, const RunOptions&) { return ProgramEnd{}; };
    std::vector<std::vector<std::string>> calls; // the arguments of each
    std::vector<std::string> folders;            // where each would have run
    std::vector<std::string> output_files;
    std::vector<std::optional<std::chrono::milliseconds>> limits;

  private:
    void record(const ProgramCall& call) {
        calls.push_back(call.arguments);
        folders.push_back(call.folder);
    }
};

} // namespace morvane::test
