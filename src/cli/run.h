// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace morvane::cli {

/// Runs the command line (without the program's name) and returns the exit status. Never throws.
int run(const std::vector<std::string>& arguments);

} // namespace morvane::cli
