// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/programs.h"

#include <memory>
#include <string>

namespace morvane {

/// Shows the user a text file that the program wrote, and does not wait for it to be closed. Throws
/// RuntimeError when it cannot.
class ResultsViewer {
  public:
    ResultsViewer() = default;
    ResultsViewer(const ResultsViewer&) = delete;
    ResultsViewer& operator=(const ResultsViewer&) = delete;
    virtual ~ResultsViewer() = default;

    /// A viewer that shows this file already is brought to the front instead of opening another.
    virtual void show_file(const std::string& path) = 0;
    /// Shows a file that the running program is writing.
    virtual void follow(const std::string& path, std::unique_ptr<RunningProgram> program) = 0;
};

/// The system's own viewer: Notepad on Windows, null elsewhere. `programs` starts it and must
/// outlive it.
std::unique_ptr<ResultsViewer> make_system_viewer(Programs& programs);

} // namespace morvane
