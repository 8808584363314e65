// SPDX-License-Identifier: GPL-3.0-or-later

// The manual page is made from the program's help, so that the two cannot differ; this checks that
// nothing is lost on the way.

#include "cli/program_run.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

std::string output_of(const std::string& command) {
    const TempFolder folder;
    const ProgramRun run = run_commands(folder.path(), command + "\n");
    EXPECT_EQ(run.status, 0) << command << "\n" << run.errors;
    return run.output;
}

// The manual's text without its markup.
std::string plain(std::string page) {
    for (std::size_t at = 0; (at = page.find("\\-", at)) != std::string::npos;) {
        page.replace(at, 2, "-");
    }
    return page;
}

// The long name of an option from the help's "  -y,--yes" or "  --json".
std::string long_name(const std::string& line) {
    const std::size_t dashes = line.find("--");
    return line.substr(dashes, line.find_first_of(" ", dashes) - dashes);
}

struct Help {
    std::vector<std::string> options;     // "--json", "--complete", ... without the common ones
    std::vector<std::string> subcommands; // "inspect", ...
    std::string title;
};

Help help_of(const std::string& command) {
    std::istringstream lines(output_of("morvane-cli " + command + " --help"));
    Help help;
    std::getline(lines, help.title);
    bool in_subcommands = false;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        in_subcommands = in_subcommands || line == "Subcommands:";
        if (line == "Common options:") {
            break;
        }
        if (line.starts_with("  -") && line.find("--") != std::string::npos) {
            help.options.push_back(long_name(line));
        } else if (in_subcommands && line.starts_with("  ") && !line.starts_with("   ")) {
            help.subcommands.push_back(word);
        }
    }
    return help;
}

void expect_documented(const std::string& page, const std::string& command) {
    const Help help = help_of(command);
    for (const std::string& option : help.options) {
        EXPECT_TRUE(page.find("\n.B " + option) != std::string::npos ||
                    page.find(", " + option) != std::string::npos)
            << command << " " << option;
    }
    for (const std::string& inner : help.subcommands) {
        expect_documented(page, command.empty() ? inner : command + " " + inner);
    }
    if (help.subcommands.empty()) {
        EXPECT_NE(page.find("\n.SS " + command + "\n" + help.title + "\n"), std::string::npos)
            << command;
    }
}

TEST(Manual, NamesEveryCommandAndOptionOfTheHelp) {
    const std::string page = plain(
        output_of("'" + source_folder() + "/tools/make-manual' \"$(command -v morvane-cli)\""));
    ASSERT_FALSE(page.empty());
    EXPECT_EQ(page.find('@'), std::string::npos) << "a place of the template was not filled in";
    expect_documented(page, "");
}

TEST(Manual, SaysNothingThatTheHelpDoesNot) {
    const std::string page =
        output_of("'" + source_folder() + "/tools/make-manual' \"$(command -v morvane-cli)\"");
    std::istringstream lines(plain(page));
    const std::string all = output_of("morvane-cli --help") + output_of("morvane-cli --version");
    std::string command_help;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(".SS ")) {
            command_help = output_of("morvane-cli " + line.substr(4) + " --help");
        } else if (line.starts_with(".B -")) {
            const std::string option = long_name(line);
            EXPECT_NE((command_help.empty() ? all : command_help).find(option), std::string::npos)
                << option;
        }
    }
}

} // namespace
} // namespace morvane::test
