// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/recording_programs.h"
#include "upkeep/compile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace morvane::test {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::vector<std::string>>;

class Compile : public testing::Test {
  protected:
    Compile() { folder.write("airport.asm", ""); }

    std::string stand_in(const std::string& name, const std::string& script) {
        const std::string path = folder.write(name, "#!/bin/sh\n" + script);
        fs::permissions(path, fs::perms::owner_all);
        return path;
    }
    Outcome run() {
        return run_compile(services, *programs, job,
                           [&](std::string_view text) { output += text; });
    }

    TempFolder folder;
    TempFolder home;
    FaultyDisk disk;
    RecordingReporter reporter;
    Services services{disk, reporter};
    RecordingPrograms recorder;
    std::unique_ptr<Programs> programs = make_system_programs();
    CompileJob job{folder.file("airport"), home.path()};
    std::string output;
};

TEST_F(Compile, TheCompilerBesideTheSetIsRunOnTheFrameFile) {
    const std::string compiler = folder.file("bglc");
    recorder.executables = {compiler};
    EXPECT_NE(start_compile(services, recorder, job), nullptr);
    EXPECT_EQ(recorder.calls, (Arguments{{compiler, "/bgl", folder.file("airport.asm")}}));
    EXPECT_EQ(recorder.output_files, std::vector<std::string>{home.file("comp.txt")});
    EXPECT_TRUE(reporter.boxes.empty());
}

TEST_F(Compile, TheWindowsCompilerIsRunThroughWine) {
    folder.write("bglc.exe", "");
    recorder.on_path["wine"] = "/usr/bin/wine";
    EXPECT_NE(start_compile(services, recorder, job), nullptr);
    ASSERT_EQ(recorder.calls.size(), 1U);
    EXPECT_EQ(recorder.calls[0][0], "/usr/bin/wine");
    EXPECT_EQ(recorder.calls[0][1], folder.file("bglc.exe"));
    EXPECT_EQ(recorder.calls[0][2], "/bgl");
    // A full path of this system would be taken for a switch; drive Z: stands for the root.
    EXPECT_EQ(recorder.calls[0][3].substr(0, 3), "Z:\\");
    EXPECT_EQ(recorder.calls[0][3].find('/'), std::string::npos);
    EXPECT_EQ(recorder.calls[0][3].substr(recorder.calls[0][3].size() - 12), "\\airport.asm");
}

TEST_F(Compile, WithoutACompilerTheMessageSaysWhatWasLookedForAndWhere) {
    EXPECT_EQ(run_compile(services, recorder, job, [](std::string_view) {}), Outcome::Failed);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "Error ! The compiler bglc was not found:\n" +
                                          folder.file("bglc") + " is not there\n" +
                                          folder.file("bglc.exe") + " is not there");
    EXPECT_EQ(reporter.boxes[0].icon, Icon::Critical);
    EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(Compile, WithoutWineOrTheRightToExecuteTheMessageSaysSo) {
    folder.write("bglc", "");
    folder.write("bglc.exe", "");
    EXPECT_EQ(start_compile(services, recorder, job), nullptr);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text,
              "Error ! The compiler bglc was not found:\n" + folder.file("bglc") +
                  " is there, but cannot be executed\n" + folder.file("bglc.exe") +
                  " is there, but \"wine\" to run it was not found on the PATH");
}

TEST_F(Compile, WithoutACompilerInTheSetsFolderThePathIsSearched) {
    recorder.on_path["bglc"] = "/usr/local/bin/bglc";
    start_compile(services, recorder, job);
    recorder.executables = {folder.file("bglc")};
    start_compile(services, recorder, job);
    const std::string source = folder.file("airport.asm");
    EXPECT_EQ(recorder.calls, (Arguments{{"/usr/local/bin/bglc", "/bgl", source},
                                         {folder.file("bglc"), "/bgl", source}}));
}

TEST_F(Compile, AWindowsCompilerOnThePathRunsThroughWine) {
    recorder.on_path["bglc.exe"] = home.write("bglc.exe", "");
    recorder.on_path["wine"] = "/usr/bin/wine";
    start_compile(services, recorder, job);
    ASSERT_EQ(recorder.calls.size(), 1U);
    EXPECT_EQ(recorder.calls[0][0], "/usr/bin/wine");
    EXPECT_EQ(recorder.calls[0][1], home.file("bglc.exe"));
    EXPECT_EQ(recorder.calls[0][3].substr(0, 3), "Z:\\");
}

TEST_F(Compile, TheCompilerThatIsAskedForComesFirst) {
    recorder.executables = {folder.file("bglc"), "my tools/asm"};
    job.compiler = {"my tools/asm", "-q"};
    start_compile(services, recorder, job);
    EXPECT_EQ(recorder.calls,
              (Arguments{{"my tools/asm", "-q", "/bgl", folder.file("airport.asm")}}));
}

TEST_F(Compile, AWindowsProgramThatIsAskedForRunsThroughWine) {
    recorder.on_path["wine"] = "/usr/bin/wine";
    job.compiler = {home.write("bglc.exe", ""), "-q"};
    start_compile(services, recorder, job);
    job.compiler = {"wine", "C:\\bglc.exe"};
    start_compile(services, recorder, job);
    ASSERT_EQ(recorder.calls.size(), 2U);
    EXPECT_EQ(recorder.calls[0][0], "/usr/bin/wine");
    EXPECT_EQ(recorder.calls[0][1], home.file("bglc.exe"));
    EXPECT_EQ(recorder.calls[0][2], "-q");
    EXPECT_EQ(recorder.calls[1][1], "C:\\bglc.exe");
    for (const auto& call : recorder.calls) {
        EXPECT_TRUE(call.back().starts_with("Z:\\")) << call.back();
    }
}

TEST_F(Compile, TheEnvironmentNamesTheCompiler) {
    recorder.executables = {folder.file("bglc")};
    recorder.on_path["masm"] = "/usr/bin/masm";
    ::setenv("MORVANE_COMPILER", "masm 'two words'", 1);
    start_compile(services, recorder, job);
    job.compiler = {folder.file("bglc")}; // what is asked for wins
    start_compile(services, recorder, job);
    ::setenv("MORVANE_COMPILER", "masm 'not closed", 1);
    EXPECT_NE(start_compile(services, recorder, job), nullptr);
    job.compiler.clear();
    EXPECT_EQ(start_compile(services, recorder, job), nullptr);
    ::unsetenv("MORVANE_COMPILER");
    const std::string source = folder.file("airport.asm");
    EXPECT_EQ(recorder.calls, (Arguments{{"/usr/bin/masm", "two words", "/bgl", source},
                                         {folder.file("bglc"), "/bgl", source},
                                         {folder.file("bglc"), "/bgl", source}}));
    EXPECT_EQ(reporter.boxes, (std::vector<RecordingReporter::Box>{
                                  {"Error ! MORVANE_COMPILER is not a command: masm 'not closed",
                                   Icon::Critical}}));
}

TEST_F(Compile, ACompilerThatIsAskedForAndMissingIsNamed) {
    recorder.executables = {folder.file("bglc")};
    job.compiler = {"masm"};
    EXPECT_EQ(start_compile(services, recorder, job), nullptr);
    job.compiler = {home.file("masm")};
    EXPECT_EQ(start_compile(services, recorder, job), nullptr);
    ASSERT_EQ(reporter.boxes.size(), 2U);
    EXPECT_EQ(reporter.boxes[0].text,
              "Error ! The compiler masm was not found:\nmasm is not on the PATH");
    EXPECT_EQ(reporter.boxes[1].text,
              "Error ! The compiler " + home.file("masm") + " was not found:\n" +
                  home.file("masm") + " is not there\n" + home.file("masm.exe") + " is not there");
    EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(Compile, AnAircraftIsCompiledWithItsOwnSwitch) {
    recorder.executables = {folder.file("bglc")};
    job.mdl = true;
    start_compile(services, recorder, job);
    EXPECT_EQ(recorder.calls,
              (Arguments{{folder.file("bglc"), "/mdl", folder.file("airport.asm")}}));
}

TEST_F(Compile, TheFrameOfAnAircraftIsNotedUnlessItsSwitchIsGiven) {
    recorder.executables = {folder.file("bglc")};
    const std::string frame = folder.write(
        "airport.asm", "; frame\r\n\r\nmodel_header label dword\r\n    db  'M','D','L','8'\r\n");
    start_compile(services, recorder, job);
    EXPECT_EQ(reporter.messages,
              std::vector<std::string>{"Note: " + frame +
                                       ":4: this is the frame of an aircraft, which compiles with "
                                       "/mdl (compile --mdl)"});
    reporter.messages.clear();
    job.mdl = true;
    start_compile(services, recorder, job);
    job.mdl = false;
    folder.write("airport.asm", "object_0 label BGLCODE\r\n; visual_model_header\r\n");
    start_compile(services, recorder, job);
    EXPECT_TRUE(reporter.messages.empty());
    folder.write("airport.asm", "visual_model_header label dword");
    start_compile(services, recorder, job);
    EXPECT_EQ(reporter.messages.size(), 1U);
}

TEST_F(Compile, TheCompilerRunsInTheSetsFolder) {
    stand_in("sets/bglc", "printf '%s %s' \"$PWD\" \"$2\"\n");
    folder.write("sets/airport.asm", "");
    job.base = folder.file("sets/airport");
    EXPECT_EQ(run(), Outcome::Done);
    EXPECT_EQ(output, folder.file("sets") + " " + folder.file("sets/airport.asm"));
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    job.base = "sets/airport";
    output.clear();
    EXPECT_EQ(run(), Outcome::Done);
    EXPECT_EQ(output, folder.file("sets") + " airport.asm");
    const auto running = start_compile(services, *programs, job);
    fs::current_path(before);
    ASSERT_NE(running, nullptr);
    for (int i = 0; i < 1000 && !running->exit_status(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(home.read("comp.txt"), output);
}

TEST(CommandWords, AreSeparatedByBlanksOutsideOfQuotes) {
    using Words = std::vector<std::string>;
    EXPECT_EQ(command_words("bglc"), Words{"bglc"});
    EXPECT_EQ(command_words("  wine\t bglc.exe "), (Words{"wine", "bglc.exe"}));
    EXPECT_EQ(command_words("\"C:\\my tools\\bglc.exe\" -q"),
              (Words{"C:\\my tools\\bglc.exe", "-q"}));
    EXPECT_EQ(command_words("a'b \"c'd ''"), (Words{"ab \"cd", ""}));
    for (const char* wrong : {"", "  ", "''", "\"bglc", "bglc 'x"}) {
        EXPECT_EQ(command_words(wrong), std::nullopt) << wrong;
    }
}

TEST_F(Compile, ABaseWithoutAFolderLooksInTheRootAndThenHere) {
    recorder.executables = {"/bglc", "./bglc"};
    start_compile(services, recorder, {"airport", home.path()});
    recorder.executables = {"./bglc"};
    start_compile(services, recorder, {"airport", home.path()});
    EXPECT_EQ(recorder.calls,
              (Arguments{{"/bglc", "/bgl", "airport.asm"}, {"./bglc", "/bgl", "airport.asm"}}));
}

TEST_F(Compile, AStandInThatPrintsIsPassedOnAndKept) {
    stand_in("bglc", "printf 'on %s\\n' \"$2\"; echo careful >&2\n");
    EXPECT_EQ(run(), Outcome::Done);
    EXPECT_EQ(output, "on " + folder.file("airport.asm") + "\ncareful\n");
    EXPECT_EQ(home.read("comp.txt"), output);
    EXPECT_TRUE(reporter.boxes.empty());
}

TEST_F(Compile, AStandInThatFailsIsAFailure) {
    stand_in("bglc", "echo 'error A2008'; exit 3\n");
    EXPECT_EQ(run(), Outcome::Failed);
    EXPECT_EQ(output, "error A2008\n");
    EXPECT_EQ(reporter.boxes,
              (std::vector<RecordingReporter::Box>{
                  {"The compiler reported a failure (exit status 3).", Icon::Critical}}));
    EXPECT_EQ(home.read("comp.txt"), output);
}

TEST_F(Compile, AStandInThatIsKilledIsAFailure) {
    stand_in("bglc", "kill -9 $$\n");
    EXPECT_EQ(run(), Outcome::Failed);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "The compiler reported a failure (exit status 137).");
}

TEST_F(Compile, AProgramThatCannotBeStartedIsReported) {
    const std::string path = folder.write("bglc", "#!/no/such/interpreter\n");
    fs::permissions(path, fs::perms::owner_all);
    EXPECT_EQ(run(), Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (std::vector<RecordingReporter::Box>{
                                  {"Run-time error '53': File not found", Icon::None}}));
}

TEST_F(Compile, AProgramThatIsNoneIsReported) {
    const std::string path = folder.write("bglc", "no program at all");
    fs::permissions(path, fs::perms::owner_all);
    // A file that the system cannot execute.
    EXPECT_EQ(run(), Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (std::vector<RecordingReporter::Box>{
                                  {"Run-time error '75': Path/File access error", Icon::None}}));
}

TEST_F(Compile, AProgramThatMayNotBeExecutedIsReported) {
    const std::string path = folder.write("bglc", "#!/bin/sh\n");
    try {
        programs->run({{path}}, {});
        FAIL() << "it was started";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.code(), ErrorNumber::PermissionDenied);
        EXPECT_EQ(error.about(), path);
    }
}

TEST_F(Compile, ACompilerThatCannotBeStartedLeavesAnEmptyResultsFile) {
    const std::string path = folder.write("bglc", "#!/no/such/interpreter\n");
    fs::permissions(path, fs::perms::owner_all);
    EXPECT_EQ(start_compile(services, *programs, job), nullptr);
    EXPECT_EQ(reporter.boxes, (std::vector<RecordingReporter::Box>{
                                  {"Run-time error '53': File not found", Icon::None}}));
    EXPECT_EQ(home.read("comp.txt"), "");
}

TEST_F(Compile, AResultsFileThatCannotBeWrittenIsToldBeforeTheStart) {
    stand_in("bglc", "touch " + folder.file("started") + "\n");
    job.program_folder = home.file("gone");
    EXPECT_EQ(start_compile(services, *programs, job), nullptr);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "Run-time error '53': File not found");
    EXPECT_FALSE(folder.has("started"));
}

TEST_F(Compile, AProgramIsLookedForInTheFoldersOfThePath) {
    const std::string before = std::getenv("PATH");
    const std::string program = stand_in("stand-in", "");
    folder.write("home/stand-in", "may not be executed");
    ::setenv("PATH", ("relative::" + folder.file("home") + ":" + folder.path()).c_str(), 1);
    EXPECT_EQ(programs->find_on_path("stand-in"), program);
    EXPECT_EQ(programs->find_on_path("nowhere"), "");
    ::unsetenv("PATH");
    EXPECT_EQ(programs->find_on_path("stand-in"), "");
    ::setenv("PATH", before.c_str(), 1);
}

TEST_F(Compile, MuchOutputArrivesWhole) {
    stand_in("bglc", "i=0; while [ $i -lt 20000 ]; do echo \"line $i\"; i=$((i+1)); done\n");
    EXPECT_EQ(run(), Outcome::Done);
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 20000);
    EXPECT_TRUE(output.ends_with("line 19999\n"));
}

TEST_F(Compile, AFailingResultsFileDoesNotHideTheOutput) {
    stand_in("bglc", "echo done\n");
    job.program_folder = home.file("gone");
    EXPECT_EQ(run(), Outcome::Done);
    EXPECT_EQ(output, "done\n");
    ASSERT_EQ(reporter.messages.size(), 1U);
    EXPECT_TRUE(reporter.messages[0].starts_with("Note: " + home.file("gone/comp.txt")));
}

TEST_F(Compile, StartDoesNotWaitAndWritesTheResultsFile) {
    stand_in("bglc", "echo first; while [ ! -e " + folder.file("go") +
                         " ]; do sleep 0.01; done\n"
                         "echo last; exit 4\n");
    home.write("comp.txt", "output of an earlier and much longer run");
    const auto running = start_compile(services, *programs, job);
    ASSERT_NE(running, nullptr);
    EXPECT_EQ(running->exit_status(), std::nullopt);
    folder.write("go", "");
    for (int i = 0; i < 1000 && !running->exit_status(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(running->exit_status(), 4);
    EXPECT_EQ(home.read("comp.txt"), "first\nlast\n");
}

TEST_F(Compile, APathNeverRunsAsACommandAndArrivesWhole) {
    for (const std::string name :
         {"two blanks  here", "a&b", "a;touch hit", "$(touch hit)", "`touch hit`", "a'b", "a\"b",
          "a|b>c<d", "%PATH%", "*?[x]", "-x", "a\nb"}) {
        const std::string set_folder = "sets " + name + "/";
        folder.write(set_folder + name + ".asm", "");
        stand_in(set_folder + "bglc", "printf '%s|%s|%s' \"$#\" \"$1\" \"$2\"\n");
        job.base = folder.file(set_folder + name);
        output.clear();
        EXPECT_EQ(run(), Outcome::Done) << name;
        EXPECT_EQ(output, "2|/bgl|" + job.base + ".asm");
    }
    EXPECT_FALSE(folder.has("hit"));
    EXPECT_FALSE(fs::exists("hit"));
}

} // namespace
} // namespace morvane::test
