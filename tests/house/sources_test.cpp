// SPDX-License-Identifier: GPL-3.0-or-later

// The walls around libraries. Arrows between our own rooms need no test: a room that is not named
// in a CMakeLists.txt cannot be included.

#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace morvane::test {
namespace {

using testing::IsEmpty;

bool is_source(const fs::path& path) {
    return path.extension() == ".cpp" || path.extension() == ".h";
}

bool is_under(const std::string& path, const std::vector<std::string>& homes) {
    for (const std::string& home : homes) {
        if (path.starts_with(home)) {
            return true;
        }
    }
    return false;
}

/// Paths below the project's folder of all C++ sources.
std::vector<std::string> sources() {
    std::vector<std::string> found;
    for (const char* folder : {"src", "tests", "fuzz", "bench"}) {
        for (const auto& entry :
             fs::recursive_directory_iterator(fs::path(source_folder()) / folder)) {
            if (is_source(entry.path())) {
                found.push_back(entry.path().lexically_relative(source_folder()).generic_string());
            }
        }
    }
    return found;
}

std::string read_source(const std::string& path) {
    return read_file((fs::path(source_folder()) / path).string());
}

/// "PATH: LINE" for every include that begins with `library` outside of its homes.
std::vector<std::string> includes_outside(std::string_view library,
                                          const std::vector<std::string>& homes) {
    std::vector<std::string> found;
    for (const std::string& path : sources()) {
        if (is_under(path, homes)) {
            continue;
        }
        std::istringstream lines(read_source(path));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("#include <" + std::string(library))) {
                found.push_back(path + ": " + line);
            }
        }
    }
    return found;
}

TEST(Walls, QtStaysInTheWindow) {
    // The benchmark of pictures compares with Qt's painter.
    EXPECT_THAT(includes_outside("Q", {"src/ui/", "tests/ui/", "bench/draw_bench.cpp"}), IsEmpty());
    EXPECT_GT(includes_outside("Q", {}).size(), 50U); // the search does find them
}

TEST(Walls, TomlStaysInItsRoom) {
    EXPECT_THAT(includes_outside("toml++", {"src/toml/"}), IsEmpty());
}

TEST(Walls, CommandLineAndJsonStayInTheCommandLine) {
    EXPECT_THAT(includes_outside("CLI/", {"src/cli/"}), IsEmpty());
    EXPECT_THAT(includes_outside("nlohmann/", {"src/cli/", "tests/cli/", "src/project/"}),
                IsEmpty());
}

TEST(House, EachSourceNamesTheLicence) {
    std::vector<std::string> without;
    for (const std::string& path : sources()) {
        if (!read_source(path).starts_with("// SPDX-License-Identifier: GPL-3.0-or-later\n")) {
            without.push_back(path);
        }
    }
    EXPECT_THAT(without, IsEmpty());
}

} // namespace
} // namespace morvane::test
