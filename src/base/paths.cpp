#include "base/paths.h"

#include "base/text.h"

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

} // namespace morvane
