// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/encodings.h"
#include "cli/console.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <memory>
// clang-format off
#include <windows.h> // shellapi.h needs it before
#include <shellapi.h>
// clang-format on

namespace morvane::cli {

namespace {

// A device that is no console ("NUL") must not be taken for one: nobody answers there.
bool is_console(DWORD stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

void allow_erasing(DWORD stream) {
    DWORD mode = 0;
    HANDLE handle = GetStdHandle(stream);
    if (GetConsoleMode(handle, &mode) != 0) {
        SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

} // namespace

// Line ends are ours to write, and what the console shows is UTF-8.
Console::Console() : code_page_before_(GetConsoleOutputCP()) {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    allow_erasing(STD_ERROR_HANDLE);
    show_readable_output();
}

Console::~Console() {
    restore_output();
    if (code_page_before_ != 0) {
        SetConsoleOutputCP(code_page_before_);
    }
}

// What main() is given has lost every letter that the system's 8-bit set lacks.
std::vector<std::string> console_arguments(int /*argc*/, char** /*argv*/) {
    int count = 0;
    const std::unique_ptr<wchar_t*[], HLOCAL(WINAPI*)(HLOCAL)> words(
        CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(narrow_text(words[static_cast<std::size_t>(i)]));
    }
    return arguments;
}

bool input_is_terminal() {
    return is_console(STD_INPUT_HANDLE);
}

bool output_is_terminal() {
    return is_console(STD_OUTPUT_HANDLE);
}

bool errors_go_to_terminal() {
    return is_console(STD_ERROR_HANDLE);
}

bool output_takes_colors() {
    return output_is_terminal();
}

bool errors_can_be_overwritten() {
    return errors_go_to_terminal();
}

} // namespace morvane::cli
