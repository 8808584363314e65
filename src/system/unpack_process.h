#pragma once

#include <string>
#include <vector>

namespace morvane {

inline constexpr int program_not_started = -1;
inline constexpr int program_timed_out = -2;

/// Runs a program (its full name, then its arguments) with no input and its output thrown away,
/// and waits for it, up to two minutes. No command interpreter is involved: arguments arrive as
/// they are. Gives its exit status, 128 + n when signal n ended it, or a constant above.
int run_program(const std::vector<std::string>& command);

} // namespace morvane
