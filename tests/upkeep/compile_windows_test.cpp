// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"
#include "upkeep/compile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace morvane::test {
namespace {

/// Stand-ins for the compiler are scripts of the command interpreter.
class CompileOnWindows : public testing::Test {
  protected:
    CompileOnWindows() { folder.write("airport.asm", ""); }

    Outcome run() {
        return run_compile(services, *programs, job,
                           [&](std::string_view text) { output += text; });
    }
    int wait_for(RunningProgram& program) {
        for (int i = 0; i < 1000 && !program.exit_status(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return program.exit_status().value_or(-1);
    }

    TempFolder folder;
    TempFolder home;
    std::unique_ptr<Disk> disk = make_system_disk();
    RecordingReporter reporter;
    Services services{*disk, reporter};
    std::unique_ptr<Programs> programs = make_system_programs();
    CompileJob job{folder.file("airport"), home.path()};
    std::string output;
};

TEST_F(CompileOnWindows, AStandInThatPrintsIsPassedOnAndKept) {
    folder.write("bglc.bat", "@echo compiled\r\n@echo careful>&2\r\n");
    EXPECT_EQ(run(), Outcome::Done);
    EXPECT_EQ(output, "compiled\r\ncareful\r\n");
    EXPECT_EQ(home.read("comp.txt"), output);
    EXPECT_TRUE(reporter.boxes.empty());
}

TEST_F(CompileOnWindows, AStandInThatFailsIsAFailure) {
    folder.write("bglc.bat", "@echo error A2008\r\n@exit 3\r\n");
    EXPECT_EQ(run(), Outcome::Failed);
    EXPECT_EQ(output, "error A2008\r\n");
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "The compiler reported a failure (exit status 3).");
}

TEST_F(CompileOnWindows, StartWritesTheResultsFileThroughTheInterpreter) {
    folder.write("bglc.bat", "@echo compiled\r\n@exit 4\r\n");
    home.write("comp.txt", "output of an earlier and much longer run");
    const auto running = start_compile(services, *programs, job);
    ASSERT_NE(running, nullptr);
    EXPECT_EQ(wait_for(*running), 4);
    EXPECT_EQ(home.read("comp.txt"), "compiled\r\n");
}

TEST_F(CompileOnWindows, AResultsFileThatCannotBeWrittenIsToldBeforeTheStart) {
    folder.write("bglc.bat", "@echo ran>\"%~dp0ran.txt\"\r\n");
    job.program_folder = home.file("gone");
    EXPECT_EQ(start_compile(services, *programs, job), nullptr);
    EXPECT_EQ(reporter.boxes.size(), 1U);
    EXPECT_FALSE(folder.has("ran.txt"));
}

TEST_F(CompileOnWindows, WithoutACompilerTheMessageSaysWhatWasLookedFor) {
    EXPECT_EQ(run(), Outcome::Failed);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text.find("Error ! The compiler bglc was not found:"), 0U);
}

TEST_F(CompileOnWindows, AProgramIsFoundByItsNameWithAndWithoutEnding) {
    const std::string program = folder.write("two blanks/bglc.exe", "");
    EXPECT_TRUE(programs->can_execute(program));
    EXPECT_TRUE(programs->can_execute(folder.path() + "/two blanks/BGLC"));
    EXPECT_FALSE(programs->can_execute(folder.file("airport.asm")));
    EXPECT_FALSE(programs->can_execute(folder.file("two blanks")));
    EXPECT_NE(programs->find_on_path("cmd"), "");
    EXPECT_EQ(programs->find_on_path("no-such-program"), "");
}

TEST_F(CompileOnWindows, AFileThatIsNoProgramIsReported) {
    folder.write("bglc.exe", "this is no program");
    EXPECT_EQ(run(), Outcome::Failed);
    EXPECT_EQ(reporter.boxes.size(), 1U);
}

} // namespace
} // namespace morvane::test
