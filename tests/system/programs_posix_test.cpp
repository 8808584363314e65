// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "support/temp_folder.h"
#include "system/programs.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace morvane::test {
namespace {

namespace fs = std::filesystem;
using How = ProgramEnd::How;
using std::chrono::milliseconds;

class SystemPrograms : public testing::Test {
  protected:
    ProgramCall shell(const std::string& script) { return {{"/bin/sh", "-c", script}, {}}; }
    ProgramEnd run(const std::string& script, RunOptions options = {}) {
        return programs->run(shell(script), options);
    }
    std::string output_of(const ProgramCall& call) {
        std::string output;
        programs->run(call, {[&](std::string_view text) { output += text; }});
        return output;
    }
    // A script that starts another one and waits for it, as a wrapper around a program does. The
    // inner one writes its number down.
    std::string wrapper() {
        return "sh -c 'echo $$ >" + folder.file("number") + ".new; mv " + folder.file("number") +
               ".new " + folder.file("number") + "; sleep 60; echo late'; echo done";
    }
    bool inner_runs() {
        std::ifstream stat(
            "/proc/" + folder.read("number").substr(0, folder.read("number").size() - 1) + "/stat");
        std::string number, name, state;
        return (stat >> number >> name >> state) && state != "Z" && state != "X";
    }
    bool inner_ends() {
        for (int i = 0; i < 200 && inner_runs(); ++i) {
            std::this_thread::sleep_for(milliseconds(10));
        }
        return !inner_runs();
    }

    TempFolder folder;
    std::unique_ptr<Programs> programs = make_system_programs();
};

TEST_F(SystemPrograms, TheExitStatusIsReturned) {
    const ProgramEnd end = run("exit 41");
    EXPECT_EQ(end.how, How::Exited);
    EXPECT_EQ(end.status, 41);
    EXPECT_EQ(run("kill -9 $$").status, 137);
    EXPECT_EQ(run("exit 3", {{}, std::chrono::minutes(1), [] { return true; }}).status, 3);
}

TEST_F(SystemPrograms, AProgramThatIsNotThereIsAnError) {
    EXPECT_THROW(programs->run({{"/nowhere/bglunpack.exe"}}, {}), RuntimeError);
    EXPECT_THROW(programs->start({{"/nowhere/bglunpack.exe"}}, {}), RuntimeError);
}

TEST_F(SystemPrograms, OutputArrivesWhenItIsPrinted) {
    std::vector<std::string> pieces;
    const auto keep = [&](std::string_view text) {
        pieces.emplace_back(text);
        folder.write("go", "");
    };
    const std::string script =
        "echo first; while [ ! -e " + folder.file("go") + " ]; do sleep 0.01; done; echo last >&2";
    EXPECT_EQ(run(script, {keep}).status, 0);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0] + pieces[1], "first\nlast\n");
}

TEST_F(SystemPrograms, MuchOutputArrivesWholeWithAndWithoutALimit) {
    for (const auto limit : {std::optional<milliseconds>(), std::optional(milliseconds(60000))}) {
        std::size_t bytes = 0;
        const RunOptions options{[&](std::string_view text) { bytes += text.size(); }, limit};
        EXPECT_EQ(run("head -c 3000000 /dev/zero", options).status, 0);
        EXPECT_EQ(bytes, 3000000U);
    }
}

TEST_F(SystemPrograms, AProgramRunsInItsFolderAndIsNamedFromHere) {
    folder.write("sets/here.txt", "");
    const std::string script = folder.write("sets/list", "#!/bin/sh\nls\n");
    fs::permissions(script, fs::perms::owner_all);
    EXPECT_EQ(output_of({{script}, folder.file("sets")}), "here.txt\nlist\n");
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    EXPECT_EQ(output_of({{"sets/list"}, "sets"}), "here.txt\nlist\n");
    fs::current_path(before);
    EXPECT_THROW(programs->run({{"/bin/ls"}, folder.file("gone")}, {}), RuntimeError);
}

TEST_F(SystemPrograms, ALimitEndsTheProgramAndAllItStarted) {
    const ProgramEnd end = run(wrapper(), {{}, milliseconds(2000)});
    EXPECT_EQ(end.how, How::TimedOut);
    ASSERT_TRUE(folder.has("number")) << "the machine is too slow for this test";
    EXPECT_TRUE(inner_ends());
}

TEST_F(SystemPrograms, ALimitHoldsForAProgramThatPrintsWithoutEnd) {
    const RunOptions options{[](std::string_view) {}, milliseconds(200)};
    EXPECT_EQ(run("while :; do echo more; done", options).how, How::TimedOut);
}

TEST_F(SystemPrograms, WhoeverAsksToStopEndsTheProgramAndAllItStarted) {
    const RunOptions options{{}, {}, [this] { return !folder.has("number"); }};
    EXPECT_EQ(run(wrapper(), options).how, How::Stopped);
    EXPECT_TRUE(inner_ends());
}

TEST_F(SystemPrograms, TheQuestionComesAboutTwentyTimesASecond) {
    int questions = 0;
    run("sleep 0.5", {{}, {}, [&] { return ++questions > 0; }});
    EXPECT_GE(questions, 2);
    EXPECT_LE(questions, 11);
}

// As Ctrl-C at a terminal, which sends the signal to this program's group alone.
TEST_F(SystemPrograms, ASignalThatEndsThisProgramEndsTheOtherToo) {
    const std::string script = wrapper();
    const pid_t child = ::fork();
    if (child == 0) {
        std::signal(SIGINT, SIG_DFL);
        run(script, {{}, std::chrono::minutes(1)});
        ::_exit(0);
    }
    for (int i = 0; i < 1000 && !folder.has("number"); ++i) {
        std::this_thread::sleep_for(milliseconds(10));
    }
    ASSERT_TRUE(folder.has("number"));
    ::kill(child, SIGINT);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGINT);
    EXPECT_TRUE(inner_ends());
}

TEST_F(SystemPrograms, AProgramThatIsStartedWritesIntoItsFileOrNowhere) {
    const auto ended = [](RunningProgram& program) {
        for (int i = 0; i < 1000 && !program.exit_status(); ++i) {
            std::this_thread::sleep_for(milliseconds(10));
        }
        return program.exit_status();
    };
    EXPECT_EQ(ended(*programs->start(shell("echo printed"), folder.file("out.txt"))), 0);
    EXPECT_EQ(folder.read("out.txt"), "printed\n");
    EXPECT_EQ(ended(*programs->start(shell("echo unseen; exit 5"), {})), 5);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"out.txt"});
}

} // namespace
} // namespace morvane::test
