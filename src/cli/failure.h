// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

namespace morvane::cli {

/// Runs a command and returns its status. Whatever it throws ends it with one message, which
/// `report` prints, and the status that `report` returns.
int run_guarded(const std::function<int()>& command,
                const std::function<int(const std::string&)>& report);

} // namespace morvane::cli
