#pragma once

#include "base/errors.h"
#include "system/launch.h"

#include <map>
#include <set>

namespace morvane::test {

/// Starts nothing; writes down what would have been started.
class RecordingLauncher final : public Launcher {
  public:
    class Ended final : public RunningProgram {
      public:
        std::optional<int> exit_status() override { return 0; }
    };

    bool can_execute(const std::string& path) override { return executables.contains(path); }
    std::string find_on_path(const std::string& name) override { return on_path[name]; }
    std::unique_ptr<RunningProgram> start(const ProgramCall& call,
                                          const std::string& output_file) override {
        calls.push_back(call.arguments);
        output_files.push_back(output_file);
        return std::make_unique<Ended>();
    }
    int run(const ProgramCall& call, const std::function<void(std::string_view)>& output) override {
        calls.push_back(call.arguments);
        output("out");
        return status;
    }

    std::set<std::string> executables;
    std::map<std::string, std::string> on_path;
    int status = 0;
    std::vector<std::vector<std::string>> calls;
    std::vector<std::string> output_files;
};

} // namespace morvane::test
