// SPDX-License-Identifier: GPL-3.0-or-later

// Whole commands against files. Every folder of tests/golden is one case; its README says what it
// may hold.

#include "cli/program_run.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

namespace fs = std::filesystem;

const std::string golden_folder = source_folder() + "/tests/golden/";

std::vector<std::string> golden_cases() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(golden_folder)) {
        if (fs::is_regular_file(entry.path() / "command")) {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string text_or_empty(const std::string& path) {
    return fs::exists(path) ? read_file(path) : std::string();
}

// Where two texts part, for a reader of the failure: the first line that differs, from both.
std::string difference(const std::string& found, const std::string& expected) {
    if (found == expected) {
        return {};
    }
    std::istringstream found_lines(found);
    std::istringstream expected_lines(expected);
    for (int number = 1;; ++number) {
        std::string is = "(end)";
        std::string should_be = "(end)";
        const bool more = static_cast<bool>(std::getline(found_lines, is));
        const bool more_expected = static_cast<bool>(std::getline(expected_lines, should_be));
        if (is != should_be || (!more && !more_expected)) {
            return "line " + std::to_string(number) + " is\n" + is + "\nnot\n" + should_be;
        }
    }
}

// Without the hints of the program's own, in a log or in a JSON document: they may be skipped, and
// have tests of their own.
std::string without_hints(const std::string& text) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t start = std::min(line.find_first_not_of(" \""), line.size());
        if (!line.substr(start).starts_with("Note: ")) {
            result += line + (lines.eof() ? "" : "\n");
        }
    }
    return result;
}

// Folders of the checkout, one a line, that the case starts from.
void copy_checkout_folders(const std::string& list, const std::string& work) {
    std::istringstream folders(list);
    for (std::string folder; std::getline(folders, folder);) {
        copy_into(source_folder() + "/" + folder, work);
    }
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, CommandGivesTheFiles) {
    const std::string folder = golden_folder + GetParam() + "/";
    const TempFolder work;
    copy_checkout_folders(text_or_empty(folder + "from"), work.path());
    copy_into(folder + "in", work.path());
    auto expected = files_below(work.path());
    for (const auto& [name, bytes] : files_below(folder + "out")) {
        expected[name] = bytes;
    }

    const ProgramRun run = run_commands(work.path(), read_file(folder + "command"));

    EXPECT_EQ(
        difference(without_hints(run.output), without_hints(text_or_empty(folder + "stdout"))), "");
    EXPECT_EQ(
        difference(without_hints(run.errors), without_hints(text_or_empty(folder + "stderr"))), "");
    const std::string status = text_or_empty(folder + "status");
    EXPECT_EQ(run.status, status.empty() ? 0 : std::stoi(status));
    const auto found = files_below(work.path());
    for (const auto& [name, bytes] : expected) {
        ASSERT_TRUE(found.contains(name)) << name << " is missing";
        EXPECT_EQ(difference(found.at(name), bytes), "") << name;
    }
    for (const auto& [name, bytes] : found) {
        EXPECT_TRUE(expected.contains(name)) << name << " was left behind:\n" << bytes;
    }
}

std::string test_name(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Case, Golden, testing::ValuesIn(golden_cases()), test_name);

} // namespace
} // namespace morvane::test
