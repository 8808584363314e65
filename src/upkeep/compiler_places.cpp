// SPDX-License-Identifier: GPL-3.0-or-later
#include "upkeep/compiler_places.h"

#include "base/paths.h"
#include "base/text.h"

#include <algorithm>
#include <charconv>

namespace morvane {

namespace {

constexpr std::string_view digits = "0123456789";

// The number that begins at `at` and ends before one of the characters of `end`; 0 if none does.
std::size_t number_at(std::string_view line, std::size_t at, std::string_view end) {
    const std::size_t after = std::min(line.find_first_not_of(digits, at), line.size());
    std::size_t number = 0;
    const auto result = std::from_chars(line.data() + at, line.data() + after, number);
    const bool ended = after < line.size() && end.find(line[after]) != std::string_view::npos;
    return after > at && ended && result.ec == std::errc() ? number : 0;
}

// A file has an ending, and no line begins with a number in brackets otherwise.
bool is_file_name(std::string_view text) {
    const std::size_t dot = text.rfind('.');
    return !text.empty() && dot != std::string_view::npos && dot > 0 && text.size() - dot <= 5 &&
           text.find_first_of("\"<>|*?\t") == std::string_view::npos;
}

CompilerPlace place_in(std::string_view line) {
    const std::size_t begin = std::min(line.find_first_not_of(" \t"), line.size());
    for (std::size_t at = begin; at < line.size(); ++at) {
        const bool bracket = line[at] == '(';
        if (!bracket && line[at] != ':') {
            continue;
        }
        const std::size_t number = number_at(line, at + 1, bracket ? ")," : ":,");
        if (number > 0 && is_file_name(line.substr(begin, at - begin))) {
            const std::size_t end = line.find_first_not_of(digits, at + 1);
            return {0, begin, end + (bracket && line[end] == ')' ? 1 : 0) - begin,
                    std::string(line.substr(begin, at - begin)), number};
        }
    }
    return {};
}

bool is_full_path(const std::string& path) {
    return !path.empty() && path.front() == '/';
}

} // namespace

std::vector<CompilerPlace> compiler_places(std::string_view output) {
    std::vector<CompilerPlace> places;
    for (std::size_t number = 1; !output.empty(); ++number) {
        const std::size_t end = std::min(output.find('\n'), output.size());
        CompilerPlace place = place_in(output.substr(0, end));
        if (place.line > 0) {
            place.line_of_output = number;
            places.push_back(std::move(place));
        }
        output.remove_prefix(std::min(end + 1, output.size()));
    }
    return places;
}

std::string compiled_file(const std::string& folder, const std::string& file) {
    std::string path = file;
#ifndef _WIN32
    std::replace(path.begin(), path.end(), '\\', '/');
    if (path.size() > 2 && path[1] == ':') {
        path =
            (path[0] == 'Z' || path[0] == 'z') ? path.substr(2) : path.substr(path.rfind('/') + 1);
    }
    return is_full_path(path) ? path : join_path(folder, path);
#else
    const bool full = is_full_path(path) || (path.size() > 1 && path[1] == ':') ||
                      (!path.empty() && path.front() == '\\');
    return full ? path : join_path(folder, path);
#endif
}

} // namespace morvane
