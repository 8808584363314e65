// SPDX-License-Identifier: GPL-3.0-or-later

// What is different where somebody sits at a terminal: questions are asked, progress is shown.

#include "cli/program_run.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace morvane::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

/// Runs a command of the program in a folder with a terminal for all its streams. `typed` waits
/// there for it. The output is what the terminal shows, the typed text too.
ProgramRun run_at_terminal(const std::string& folder, const std::string& command,
                           const std::string& typed) {
    const TempFolder home;
    const std::string programs = std::filesystem::path(MORVANE_CLI).parent_path().string();
    const std::string line = "cd '" + folder + "' && MORVANE_HOME='" + home.path() + "' PATH='" +
                             programs + "':\"$PATH\" " + command;
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        ::_exit(127);
    }
    EXPECT_EQ(::write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    ProgramRun run;
    std::array<char, 4096> buffer{};
    // Reading fails when nobody has the terminal open any more.
    for (ssize_t got = 0; (got = ::read(terminal, buffer.data(), buffer.size())) > 0;) {
        run.output.append(buffer.data(), static_cast<std::size_t>(got));
    }
    ::close(terminal);
    int status = 0;
    ::waitpid(child, &status, 0);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

class Terminal : public testing::Test {
  protected:
    Terminal() {
        folder_.write("plane.asm", "new frame\r\n");
        folder_.write("plane_0.asm", "new model\r\n");
        folder_.write("plane_azm.bck", "old frame\r\n");
        folder_.write("plane_asm.bck", "old model\r\n");
    }
    ProgramRun back_up(const std::string& typed) {
        return run_at_terminal(folder_.path(), "morvane-cli backup plane", typed);
    }
    void expect_refused(const ProgramRun& run) {
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(folder_.read("plane_azm.bck"), "old frame\r\n");
    }

    TempFolder folder_;
};

TEST_F(Terminal, AQuestionIsAskedAndAnswered) {
    const ProgramRun run = back_up("y\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, HasSubstr("[question] A previous backup of the file exists. Do you "
                                      "want to overwrite it ?"));
    EXPECT_EQ(folder_.read("plane_azm.bck"), "new frame\r\n\r\n"); // a copy gains an empty line
}

TEST_F(Terminal, YesMayBeWrittenOutInCapitals) {
    EXPECT_EQ(back_up("Yes\n").status, 0);
}

TEST_F(Terminal, AnythingElseIsNo) {
    expect_refused(back_up("n\n"));
    expect_refused(back_up("\n"));
    expect_refused(back_up("ok, y\n"));
    expect_refused(back_up("\x04")); // the end of the input
}

TEST_F(Terminal, AnOptionAnswersBeforeAnythingIsRead) {
    expect_refused(run_at_terminal(folder_.path(), "morvane-cli --no backup plane", "y\n"));
}

TEST_F(Terminal, ProgressIsShownAndTakenAwayAgain) {
    folder_.write("scenery/a.bgl", "");
    const ProgramRun run = run_at_terminal(folder_.path(), "morvane-cli bgl search scenery", "");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, HasSubstr("\rListing folders 0\x1b[K"));
    EXPECT_THAT(run.output, HasSubstr("\rSearching folders 0 of 1\x1b[K"));
    const std::string behind = run.output.substr(run.output.rfind("Searching folders"));
    EXPECT_THAT(behind, HasSubstr("\r\x1b[K")) << "the line is emptied before the report";
}

TEST_F(Terminal, GetsNothingButUtf8) {
    folder_.write("bglc", "#!/bin/sh\nprintf 'caf\\351 caf\\303\\251\\n'\n");
    std::filesystem::permissions(folder_.file("bglc"), std::filesystem::perms(0755));
    EXPECT_THAT(run_at_terminal(folder_.path(), "morvane-cli compile ./plane", "").output,
                HasSubstr("caf\xC3\xA9 caf\xC3\xA9\r\n"));
    EXPECT_THAT(run_commands(folder_.path(), "morvane-cli compile ./plane").output,
                HasSubstr("caf\xE9 caf\xC3\xA9\n"));
}

TEST_F(Terminal, ProgressIsShownToNobodyElse) {
    folder_.write("scenery/a.bgl", "");
    const ProgramRun run = run_commands(folder_.path(), "morvane-cli bgl search scenery");
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(run.output, Not(HasSubstr("Searching folders 0")));
}

} // namespace
} // namespace morvane::test
