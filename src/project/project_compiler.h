// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/build_project.h"

#include <functional>
#include <string>

namespace morvane {

class Programs;

/// Runs the compiler's words in a folder until it ends, or until `keep_going` returns false. Never
/// throws: what is wrong is in the result.
using CompilerRunner =
    std::function<CompilerEnd(const std::vector<std::string>& words, const std::string& folder)>;

/// The way to run the compiler of a project: a program that is given with a path is relative to the
/// project file, others are looked up on the PATH. `programs` must outlive it.
CompilerRunner project_compiler(Programs& programs, const std::string& project_file,
                                std::function<bool()> keep_going);

} // namespace morvane
