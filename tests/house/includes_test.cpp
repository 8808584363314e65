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

/// "PATH includes <NAME" for every include that begins with `library` outside of its homes.
std::vector<std::string> includes_outside(std::string_view library,
                                          const std::vector<std::string>& homes) {
    std::vector<std::string> found;
    const fs::path top = source_folder();
    for (const char* folder : {"src", "tests", "fuzz", "bench"}) {
        for (const auto& entry : fs::recursive_directory_iterator(top / folder)) {
            const std::string path = entry.path().lexically_relative(top).generic_string();
            if (!is_source(entry.path()) || is_under(path, homes)) {
                continue;
            }
            std::istringstream lines(read_file(entry.path().string()));
            for (std::string line; std::getline(lines, line);) {
                if (line.starts_with("#include <" + std::string(library))) {
                    found.push_back(path + ": " + line);
                }
            }
        }
    }
    return found;
}

TEST(Walls, QtStaysInTheWindow) {
    EXPECT_THAT(includes_outside("Q", {"src/ui/", "tests/ui/"}), IsEmpty());
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

} // namespace
} // namespace morvane::test
