// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/console.h"

#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace morvane::cli {

namespace {

bool understands_escapes() {
    const char* terminal = std::getenv("TERM");
    return terminal != nullptr && *terminal != '\0' && std::string_view(terminal) != "dumb";
}

} // namespace

Console::Console() {
    show_readable_output();
}

Console::~Console() {
    restore_output();
}

std::vector<std::string> console_arguments(int argc, char** argv) {
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

bool input_is_terminal() {
    return isatty(STDIN_FILENO) != 0;
}

bool output_is_terminal() {
    return isatty(STDOUT_FILENO) != 0;
}

bool errors_go_to_terminal() {
    return isatty(STDERR_FILENO) != 0;
}

bool output_takes_colors() {
    return output_is_terminal() && understands_escapes();
}

bool errors_can_be_overwritten() {
    return errors_go_to_terminal() && understands_escapes();
}

} // namespace morvane::cli
