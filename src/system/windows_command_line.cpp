#include "system/windows_command_line.h"

#include "base/paths.h"

#include <algorithm>

namespace morvane {

namespace {

bool is_plain(char c) {
    constexpr std::string_view others = "\\/:._-+";
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           others.find(c) != std::string_view::npos;
}

// Inside quotes only "%" still acts; a caret outside of them stops it from naming a variable. A
// quote cannot be part of a name on Windows, and is left out.
std::string quoted(std::string_view text) {
    if (!text.empty() && std::all_of(text.begin(), text.end(), is_plain)) {
        return std::string(text);
    }
    std::string result = "\"";
    for (const char c : text) {
        if (c == '%') {
            result += "\"^%\"";
        } else if (c != '"') {
            result += c;
        }
    }
    return result + "\"";
}

// Backslashes count double before a quote and nowhere else.
std::string program_argument(std::string_view text) {
    std::string result = "\"";
    std::size_t backslashes = 0;
    for (const char c : text) {
        if (c == '"') {
            result.append(backslashes + 1, '\\');
        }
        backslashes = c == '\\' ? backslashes + 1 : 0;
        result += c;
    }
    result.append(backslashes, '\\');
    return result + "\"";
}

} // namespace

std::string windows_words_line(const ProgramCall& call) {
    std::string line;
    for (const std::string& argument : call.arguments) {
        line += (line.empty() ? "" : " ") + quoted(argument);
    }
    return line;
}

std::string windows_command_line(const ProgramCall& call, std::string_view output_file) {
    return windows_words_line(call) + " > " + quoted(output_file);
}

std::string windows_program_line(const ProgramCall& call) {
    std::string line;
    for (const std::string& argument : call.arguments) {
        line += (line.empty() ? "" : " ") + program_argument(argument);
    }
    return line;
}

std::string windows_interpreter_line(std::string_view command_line) {
    // No start-up commands, no expansion of "!", and only the outermost quotes are taken off.
    return "cmd.exe /d /v:off /s /c \"" + std::string(command_line) + "\"";
}

} // namespace morvane
