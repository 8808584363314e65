// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/paths.h"

#include "base/encodings.h"
#include "base/text.h"

#include <algorithm>
#include <filesystem>

namespace morvane {

namespace {

constexpr std::string_view separators = "\\/";

} // namespace

std::string folder_part(std::string_view path) {
    const std::size_t last = path.find_last_of(separators);
    return last == std::string_view::npos ? std::string() : std::string(path.substr(0, last));
}

std::string file_name_part(std::string_view path) {
    const std::size_t last = path.find_last_of(separators);
    return std::string(last == std::string_view::npos ? path : path.substr(last + 1));
}

std::string extension_part(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    return dot == std::string_view::npos ? std::string() : upper_case(path.substr(dot + 1));
}

bool has_ending(std::string_view path, std::string_view ending) {
    return path.size() >= ending.size() &&
           equal_ignoring_case(path.substr(path.size() - ending.size()), ending);
}

std::string join_path(std::string_view folder, std::string_view name) {
    if (folder.empty()) {
        return std::string(name);
    }
    std::string result(folder);
    if (separators.find(result.back()) == std::string_view::npos) {
        result += static_cast<char>(std::filesystem::path::preferred_separator);
    }
    return result += name;
}

bool is_absolute_path(std::string_view path) {
    return path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
}

std::string path_beside(std::string_view file, std::string path) {
#ifndef _WIN32
    std::replace(path.begin(), path.end(), '\\', '/');
#endif
    if (is_absolute_path(path)) {
        return path;
    }
    const std::string name = file_name_part(file);
    return std::string(file.substr(0, file.size() - name.size())) + path;
}

// The library takes a name for the system's 8-bit letters where ours are UTF-8.
std::string absolute_path(const std::string& path) {
#ifdef _WIN32
    return narrow_text(std::filesystem::absolute(wide_text(path)).wstring());
#else
    return std::filesystem::absolute(path).string();
#endif
}

std::string absolute_path(const std::string& path, const std::string& folder) {
#ifdef _WIN32
    const std::filesystem::path named = wide_text(path);
    const std::filesystem::path from = wide_text(folder);
#else
    const std::filesystem::path named = path;
    const std::filesystem::path from = folder;
#endif
    if (named.is_absolute()) {
        return path;
    }
    const std::filesystem::path full = (from / named).lexically_normal();
#ifdef _WIN32
    return narrow_text(full.wstring());
#else
    return full.string();
#endif
}

} // namespace morvane
