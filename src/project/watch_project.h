// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/build_project.h"
#include "project/export_watch.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace morvane {

/// How a watch passes its time and what it tells.
struct WatchOptions {
    std::chrono::milliseconds quiet = export_quiet_time; // see is_pair_quiet
    std::chrono::milliseconds interval{100};             // between two looks
    std::function<bool()> stopped;
    /// Called after every build that made something or failed.
    std::function<void(const BuildResult&)> built{};
    /// Called with what is wrong or incomplete, once for each state of the files.
    std::function<void(const std::string&)> said{};
    /// The time, and how it passes until the next look.
    std::function<ExportWatch::Clock::time_point()> now = ExportWatch::Clock::now;
    std::function<void(std::chrono::milliseconds)> pass = [](std::chrono::milliseconds time) {
        std::this_thread::sleep_for(time);
    };
};

/// A watch on a project, for who has a clock of their own. An export is read only while its files
/// are the very ones that were quiet; one that changes meanwhile is left until it is quiet again.
class ProjectWatch {
  public:
    /// `services` must outlive the watch.
    ProjectWatch(const Services& services, const std::string& project_file,
                 const BuildSurroundings& surroundings, BuildOptions build, WatchOptions options);
    ProjectWatch(const ProjectWatch&) = delete;
    ProjectWatch& operator=(const ProjectWatch&) = delete;
    ~ProjectWatch();

    /// Reads the project and builds it. To be called once, before the first look.
    void begin();
    /// Looks at all files and builds what has changed and is quiet. Both throw RuntimeError only
    /// when the output folder cannot be used.
    void look();

  private:
    class State;
    std::unique_ptr<State> state_;
};

/// Builds a project, then again whenever a file that it is made from has changed and is quiet: both
/// files of an export with their end marks. What is wrong is told and the watch goes on, until
/// `stopped`. Throws RuntimeError only when the output folder cannot be used.
void watch_project(const Services& services, const std::string& project_file,
                   const BuildSurroundings& surroundings, BuildOptions build,
                   const WatchOptions& options);

/// Likewise rewrites one set by a recipe and writes it under another base path.
void watch_set(const Services& services, const std::string& base, const std::string& recipe,
               const std::string& output, const BuildSurroundings& surroundings,
               const WatchOptions& options);

} // namespace morvane
