// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/temp_folder.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace fs = std::filesystem;

namespace morvane::test {

TempFolder::TempFolder() {
    std::random_device random;
    do {
        path_ = (fs::temp_directory_path() / ("morvane-test-" + std::to_string(random()))).string();
    } while (!fs::create_directory(path_));
}

TempFolder::~TempFolder() {
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(path_, error)) {
        if (!entry.is_symlink(error) && entry.is_directory(error)) {
            fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add, error);
        }
    }
    fs::permissions(path_, fs::perms::owner_all, fs::perm_options::add, error);
    fs::remove_all(path_, error);
}

std::string TempFolder::file(std::string_view name) const {
    return (fs::path(path_) / name).make_preferred().string();
}

std::string TempFolder::write(std::string_view name, std::string_view bytes) const {
    fs::create_directories(fs::path(file(name)).parent_path());
    write_file(file(name), bytes);
    return file(name);
}

std::string TempFolder::read(std::string_view name) const {
    return read_file(file(name));
}

bool TempFolder::has(std::string_view name) const {
    return fs::exists(file(name));
}

std::vector<std::string> TempFolder::names() const {
    std::vector<std::string> result;
    for (const auto& entry : fs::directory_iterator(path_)) {
        result.push_back(entry.path().filename().string());
    }
    std::sort(result.begin(), result.end());
    return result;
}

std::string read_file(const std::string& path) {
    std::ifstream file(fs::path(path), std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void write_file(const std::string& path, std::string_view bytes) {
    std::ofstream file(fs::path(path), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

std::string crlf(const std::vector<std::string>& lines) {
    std::string result;
    for (const std::string& line : lines) {
        result += line + "\r\n";
    }
    return result;
}

} // namespace morvane::test
