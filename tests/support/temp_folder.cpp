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

namespace {

// Paths are UTF-8 here as in the program; a plain text would be the system's code page on Windows.
fs::path path_of(std::string_view utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

std::string text_of(const fs::path& path) {
    const std::u8string utf8 = path.u8string();
    return {utf8.begin(), utf8.end()};
}

} // namespace

TempFolder::TempFolder() {
    std::random_device random;
    do {
        path_ = text_of(fs::temp_directory_path() / ("morvane-test-" + std::to_string(random())));
    } while (!fs::create_directory(path_of(path_)));
}

TempFolder::~TempFolder() {
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(path_of(path_), error)) {
        if (!entry.is_symlink(error) && entry.is_directory(error)) {
            fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add, error);
        }
    }
    fs::permissions(path_of(path_), fs::perms::owner_all, fs::perm_options::add, error);
    fs::remove_all(path_of(path_), error);
}

std::string TempFolder::file(std::string_view name) const {
    return text_of((path_of(path_) / path_of(name)).make_preferred());
}

std::string TempFolder::write(std::string_view name, std::string_view bytes) const {
    fs::create_directories(path_of(file(name)).parent_path());
    write_file(file(name), bytes);
    return file(name);
}

std::string TempFolder::read(std::string_view name) const {
    return read_file(file(name));
}

bool TempFolder::has(std::string_view name) const {
    return fs::exists(path_of(file(name)));
}

std::vector<std::string> TempFolder::names() const {
    std::vector<std::string> result;
    for (const auto& entry : fs::directory_iterator(path_of(path_))) {
        result.push_back(text_of(entry.path().filename()));
    }
    std::sort(result.begin(), result.end());
    return result;
}

std::string read_file(const std::string& path) {
    std::ifstream file(path_of(path), std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void write_file(const std::string& path, std::string_view bytes) {
    std::ofstream file(path_of(path), std::ios::binary | std::ios::trunc);
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
