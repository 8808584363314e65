// The arrows between the rooms, held against what the sources include.

#include "house/checkout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

namespace morvane::test {
namespace {

using testing::IsEmpty;

/// Which rooms a room may include, itself not named.
const std::map<std::string, std::set<std::string>> arrows{
    {"core", {}},
    {"tools", {"core"}},
    {"replace", {"core"}},
    {"bgl", {"core"}},
    {"model", {"core", "tools", "replace", "bgl"}},
    {"libcomp", {"core", "tools", "replace", "bgl"}},
    {"recipe", {"core", "tools", "replace", "bgl", "model", "libcomp"}},
    {"cli", {"core", "tools", "replace", "bgl", "model", "libcomp", "recipe"}},
    {"ui", {"core", "tools", "replace", "bgl", "model", "libcomp", "recipe"}},
};

const std::set<std::string> outer_rooms{"cli", "ui"};

const std::set<std::string> standard_headers{
    "algorithm",
    "any",
    "array",
    "atomic",
    "barrier",
    "bit",
    "bitset",
    "cassert",
    "cctype",
    "cerrno",
    "cfenv",
    "cfloat",
    "charconv",
    "chrono",
    "cinttypes",
    "climits",
    "clocale",
    "cmath",
    "compare",
    "complex",
    "concepts",
    "condition_variable",
    "coroutine",
    "csetjmp",
    "csignal",
    "cstdarg",
    "cstddef",
    "cstdint",
    "cstdio",
    "cstdlib",
    "cstring",
    "ctime",
    "cuchar",
    "cwchar",
    "cwctype",
    "deque",
    "exception",
    "execution",
    "filesystem",
    "forward_list",
    "fstream",
    "functional",
    "future",
    "initializer_list",
    "iomanip",
    "ios",
    "iosfwd",
    "iostream",
    "istream",
    "iterator",
    "latch",
    "limits",
    "list",
    "locale",
    "map",
    "memory",
    "memory_resource",
    "mutex",
    "new",
    "numbers",
    "numeric",
    "optional",
    "ostream",
    "queue",
    "random",
    "ranges",
    "ratio",
    "regex",
    "scoped_allocator",
    "semaphore",
    "set",
    "shared_mutex",
    "span",
    "sstream",
    "stack",
    "stdexcept",
    "stop_token",
    "streambuf",
    "string",
    "string_view",
    "system_error",
    "thread",
    "tuple",
    "type_traits",
    "typeindex",
    "typeinfo",
    "unordered_map",
    "unordered_set",
    "utility",
    "valarray",
    "variant",
    "vector",
    "version",
};

struct Include {
    std::string path; // of the including file
    std::string name;
    bool angled = false;

    std::string text() const { return path + " includes " + name; }
};

std::vector<Include> includes_of(const CheckedFile& file) {
    std::vector<Include> result;
    std::istringstream lines(file.text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t word = line.find_first_not_of(" \t#");
        if (line.find('#') >= word || line.compare(word, 7, "include") != 0) {
            continue;
        }
        const std::size_t open = line.find_first_of("<\"");
        const std::size_t close = line.find_first_of(">\"", open + 1);
        if (open != std::string::npos && close != std::string::npos) {
            result.push_back(
                {file.path, line.substr(open + 1, close - open - 1), line[open] == '<'});
        }
    }
    return result;
}

/// The includes of every C++ source whose path begins with `folder`.
std::vector<Include> includes_under(std::string_view folder) {
    std::vector<Include> result;
    for (const CheckedFile& file : checkout_files()) {
        if (file.path.starts_with(folder) &&
            (file.path.ends_with(".cpp") || file.path.ends_with(".h"))) {
            const std::vector<Include> found = includes_of(file);
            result.insert(result.end(), found.begin(), found.end());
        }
    }
    return result;
}

std::string first_folder(std::string_view path) {
    return std::string(path.substr(0, path.find('/')));
}

std::string room_of(const Include& include) {
    return first_folder(std::string_view(include.path).substr(std::string_view("src/").size()));
}

/// The few files that speak to the system itself.
bool may_use_platform(std::string_view path) {
    const bool named_for_it = path.ends_with("_posix.cpp") || path.ends_with("_windows.cpp");
    return path == "src/core/disk_posix.cpp" || path == "src/core/disk_windows.cpp" ||
           path.starts_with("src/bgl/unpack") || (path.starts_with("src/tools/") && named_for_it);
}

bool is_qt(std::string_view name) {
    return name.starts_with("Q") || name.starts_with("q");
}

std::vector<std::string> offenders(std::string_view folder, bool (*is_library)(std::string_view),
                                   std::string_view home) {
    std::vector<std::string> result;
    for (const Include& include : includes_under(folder)) {
        if (is_library(include.name) && !include.path.starts_with(home)) {
            result.push_back(include.text());
        }
    }
    return result;
}

TEST(House, SourcesAreFound) {
    EXPECT_GT(includes_under("src/core/").size(), 100U);
}

TEST(House, QtStaysInTheWindow) {
    EXPECT_THAT(offenders("src/", is_qt, "src/ui/"), IsEmpty());
    EXPECT_THAT(offenders("tests/", is_qt, "tests/ui/"), IsEmpty());
    EXPECT_THAT(offenders("bench/", is_qt, "src/ui/"), IsEmpty());
    EXPECT_THAT(offenders("fuzz/", is_qt, "src/ui/"), IsEmpty());
}

TEST(House, TomlStaysWithTheRecipes) {
    const auto is_toml = [](std::string_view name) { return name.starts_with("toml"); };
    EXPECT_THAT(offenders("src/", is_toml, "src/recipe/"), IsEmpty());
}

TEST(House, CommandLineAndJsonStayInTheCommandLine) {
    const auto is_cli = [](std::string_view name) {
        return name.starts_with("CLI/") || name.starts_with("nlohmann/");
    };
    EXPECT_THAT(offenders("src/", is_cli, "src/cli/"), IsEmpty());
}

TEST(House, RoomsUseOnlyTheRoomsBelowThem) {
    std::vector<std::string> wrong;
    for (const Include& include : includes_under("src/")) {
        const std::string room = room_of(include);
        ASSERT_TRUE(arrows.contains(room)) << include.path << " lies in no room";
        const std::string used = first_folder(include.name);
        if (!include.angled && used != room && !arrows.at(room).contains(used)) {
            wrong.push_back(include.text());
        }
    }
    EXPECT_THAT(wrong, IsEmpty());
}

TEST(House, InnerRoomsUseOnlyTheStandardLibrary) {
    std::vector<std::string> wrong;
    for (const Include& include : includes_under("src/")) {
        const std::string room = room_of(include);
        const bool toml = room == "recipe" && include.name.starts_with("toml");
        if (include.angled && !outer_rooms.contains(room) && !toml &&
            !standard_headers.contains(include.name) && !may_use_platform(include.path)) {
            wrong.push_back(include.text());
        }
    }
    EXPECT_THAT(wrong, IsEmpty());
}

// Neither the second compiler nor the older library knows these.
TEST(House, NewerHeadersAreNotUsed) {
    std::vector<std::string> wrong;
    for (const Include& include : includes_under("src/")) {
        if (include.angled && (include.name == "format" || include.name == "expected" ||
                               include.name == "source_location")) {
            wrong.push_back(include.text());
        }
    }
    EXPECT_THAT(wrong, IsEmpty());
}

} // namespace
} // namespace morvane::test
