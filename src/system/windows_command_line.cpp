// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/windows_command_line.h"

#include "base/paths.h"

#include <algorithm>
#include <string_view>

namespace morvane {

namespace {

enum class Reader { Program, Interpreter };

bool is_plain(char c) {
    constexpr std::string_view others = "\\/:._-+";
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           others.find(c) != std::string_view::npos;
}

// A program counts backslashes double before a quote and nowhere else. The interpreter knows no
// quoted quotes, and inside quotes "%" still acts: a caret outside of them stops it from naming a
// variable.
std::string quoted(std::string_view text, Reader reader) {
    if (!text.empty() && std::all_of(text.begin(), text.end(), is_plain)) {
        return std::string(text);
    }
    const bool by_program = reader == Reader::Program;
    std::string result = "\"";
    std::size_t backslashes = 0;
    for (const char c : text) {
        if (c == '%' && !by_program) {
            result += "\"^%\"";
        } else if (c == '"' && by_program) {
            result.append(backslashes + 1, '\\') += c;
        } else if (c != '"') {
            result += c;
        }
        backslashes = c == '\\' ? backslashes + 1 : 0;
    }
    result.append(by_program ? backslashes : 0, '\\');
    return result + "\"";
}

} // namespace

bool is_batch_file(const std::string& program) {
    return has_ending(program, ".BAT") || has_ending(program, ".CMD");
}

std::string windows_command_line(const ProgramCall& call) {
    const bool batch = is_batch_file(call.arguments[0]);
    std::string line;
    for (const std::string& argument : call.arguments) {
        line += (line.empty() ? "" : " ") +
                quoted(argument, batch ? Reader::Interpreter : Reader::Program);
    }
    // No start-up commands, no expansion of "!", and only the outermost quotes are taken off.
    return batch ? "cmd.exe /d /v:off /s /c \"" + line + "\"" : line;
}

} // namespace morvane
