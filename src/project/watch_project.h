// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/build_project.h"
#include "project/export_watch.h"

#include <chrono>
#include <functional>
#include <string>

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
