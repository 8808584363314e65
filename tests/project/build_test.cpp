// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/manifest.h"
#include "project_fixture.h"
#include "support/faulty_disk.h"

#include <algorithm>
#include <filesystem>

namespace morvane::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

const std::string with_compiler = "[project]\ncompiler = [\"cc\"]\n";

using Build = ProjectTest;

/// A disk on which nothing can be made.
class UnwritableDisk final : public FaultyDisk {
  public:
    std::unique_ptr<WritableFile> create_temporary(const std::string& path,
                                                   const std::string& /*model*/) override {
        throw RuntimeError(ErrorNumber::PermissionDenied, path);
    }
};

// What the step's first error says.
std::string error_of(const BuildResult& result, std::size_t step = 0) {
    for (const Problem& problem : result.steps.at(step).problems) {
        if (problem.severity == Severity::Error) {
            return problem.text;
        }
    }
    return {};
}

TEST_F(Build, MakesSetsOnceAndExportsStay) {
    write_sets({"terminal", "tower"}, with_compiler);
    EXPECT_THAT(built(), ElementsAre("terminal: made (new)", "tower: made (new)"));
    EXPECT_EQ(folder.read("exports/terminal_0.asm"), model_text());
    EXPECT_EQ(folder.read("exports/terminal.asm"), frame_text("terminal"));
    EXPECT_THAT(output("terminal_0.asm"), HasSubstr("BGL_LIGHT"));
    EXPECT_THAT(compiled, ElementsAre("cc /bgl terminal.asm", "cc /bgl tower.asm"));
    EXPECT_TRUE(folder.has("build/tower.bgl"));
    EXPECT_FALSE(folder.has("build/.morvane-build.lock"));
    EXPECT_THAT(built(), ElementsAre("terminal: up to date", "tower: up to date"));
    EXPECT_THAT(compiled, SizeIs(2));
}

TEST_F(Build, ChangesIncludesOfTheModelFileToItsBareName) {
    write_sets({"terminal"});
    build();
    std::string frame = frame_text("terminal");
    frame.replace(frame.find("C:\\EXPORT\\"), std::string("C:\\EXPORT\\").size(), "");
    EXPECT_EQ(output("terminal.asm"), frame);
}

TEST_F(Build, WhatItReadsDecidesWhyAStepIsMadeAgain) {
    folder.write("morvane.inc", "; macros\r\n");
    folder.write("fx_list.txt", "fx_first\r\n");
    surroundings.effect_list = folder.file("fx_list.txt");
    write_sets({"terminal"}, "[project]\ncompiler = [\"cc\"]\nmacros = \"morvane.inc\"\n");
    EXPECT_THAT(built(), ElementsAre("terminal: made (new)"));
    EXPECT_EQ(output("morvane.inc"), "; macros\r\n");
    EXPECT_THAT(output("terminal.asm"), HasSubstr("    include morvane.inc\r\n"));

    write_export("terminal", 2);
    EXPECT_THAT(built(), ElementsAre("terminal: made (exported again)"));
    folder.write("recipes/red.toml", folder.read("recipes/red.toml") + "LightInt = \"5\"\n");
    EXPECT_THAT(built(), ElementsAre("terminal: made (recipe changed)"));
    folder.write("morvane.inc", "; other macros\r\n");
    EXPECT_THAT(built(), ElementsAre("terminal: made (macros changed)"));
    EXPECT_EQ(output("morvane.inc"), "; other macros\r\n");
    folder.write("fx_list.txt", "fx_second\r\n");
    EXPECT_THAT(built(), ElementsAre("terminal: made (effect list changed)"));
    std::filesystem::remove(folder.file("build/terminal.bgl"));
    EXPECT_THAT(built(), ElementsAre("terminal: made (output missing)"));
    folder.write("build/terminal.asm", "mine now");
    EXPECT_THAT(built(), ElementsAre("terminal: made (output changed)"));
    surroundings.version = "2.0";
    EXPECT_THAT(built(), ElementsAre("terminal: made (Morvane changed)"));
    std::string text = folder.read("morvane.toml");
    folder.write("morvane.toml", text.replace(text.find("\"cc\""), 4, "\"c2\""));
    EXPECT_THAT(built(), ElementsAre("terminal: made (compiler changed)"));
    EXPECT_THAT(built(), ElementsAre("terminal: up to date"));
}

TEST_F(Build, AnIncludedRecipeIsAnInput) {
    write_sets({"terminal"});
    folder.write("recipes/shared.toml", "[defaults.Lights]\nLightInt = \"7\"\n");
    folder.write("recipes/red.toml",
                 "include = \"shared.toml\"\n" + folder.read("recipes/red.toml"));
    EXPECT_THAT(built(), ElementsAre("terminal: made (new)"));
    folder.write("recipes/shared.toml", "[defaults.Lights]\nLightInt = \"8\"\n");
    EXPECT_THAT(built(), ElementsAre("terminal: made (recipe changed)"));
}

TEST_F(Build, TheSameContentWithANewTimeIsUpToDate) {
    write_sets({"terminal"});
    build();
    write_export("terminal");
    EXPECT_THAT(built(), ElementsAre("terminal: up to date"));
}

TEST_F(Build, OnlyWhatChangedIsMade) {
    write_sets({"a", "b", "c"});
    build();
    write_export("b", 3);
    EXPECT_THAT(built(), ElementsAre("a: up to date", "b: made (exported again)", "c: up to date"));
}

TEST_F(Build, MakesTheStepsThatWereNamed) {
    write_sets({"a", "b"});
    options.names = {"b"};
    EXPECT_THAT(built(), ElementsAre("b: made (new)"));
    options.names = {"c"};
    const BuildResult result = build();
    EXPECT_EQ(result.how, BuildResult::How::NotStarted);
    EXPECT_THAT(result.errors, ElementsAre(HasSubstr("there is no step \"c\"")));
}

TEST_F(Build, ForceMakesEverythingAgain) {
    write_sets({"a", "b"});
    build();
    options.force = true;
    EXPECT_THAT(built(), ElementsAre("a: made (forced)", "b: made (forced)"));
}

TEST_F(Build, ADryRunWritesNothing) {
    write_sets({"a"});
    options.dry_run = true;
    EXPECT_THAT(built(), ElementsAre("a: not reached (new)"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("build")));
}

TEST_F(Build, AFailureEndsTheBuildUnlessItIsToKeepGoing) {
    write_sets({"a", "b", "c"});
    std::filesystem::remove(folder.file("exports/b.asm"));
    BuildResult result = build();
    EXPECT_EQ(result.how, BuildResult::How::Failed);
    EXPECT_THAT(outcomes(result),
                ElementsAre("a: made (new)", "b: failed (new)", "c: not reached (new)"));
    EXPECT_EQ(error_of(result, 1), "there is no such file");
    options.keep_going = true;
    EXPECT_THAT(built(),
                ElementsAre("a: up to date", "b: failed (failed before)", "c: made (new)"));
    write_export("b");
    EXPECT_THAT(built(), ElementsAre("a: up to date", "b: made (failed before)", "c: up to date"));
}

TEST_F(Build, AnIncompleteExportFailsItsStep) {
    write_sets({"a"});
    const std::string model = model_text();
    folder.write("exports/a_0.asm", model.substr(0, model.find("BGL_END")));
    const BuildResult result = build();
    EXPECT_THAT(outcomes(result), ElementsAre("a: failed (new)"));
    EXPECT_THAT(error_of(result), HasSubstr("incomplete"));
    EXPECT_FALSE(folder.has("build/a_0.asm"));
}

TEST_F(Build, ACompilerThatFailsFailsItsStep) {
    write_sets({"a"}, with_compiler);
    compiler_end = {false, "the compiler ended with status 1", "a.asm(3): no\n"};
    const BuildResult result = build();
    EXPECT_THAT(outcomes(result), ElementsAre("a: failed (new)"));
    EXPECT_EQ(result.steps[0].compiler_output, "a.asm(3): no\n");
    EXPECT_FALSE(folder.has("build/a.bgl")); // perhaps half of one
    compiler_end = {true, {}, {}};
    EXPECT_THAT(built(), ElementsAre("a: made (failed before)"));
}

TEST_F(Build, ACompilerThatEndsWellWithoutItsFileHasFailed) {
    write_sets({"a"}, with_compiler);
    compiler_writes = false;
    EXPECT_THAT(error_of(build()), HasSubstr("did not write it"));
    compiler_writes = true;
    build();
    compiler_writes = false;
    write_export("a", 2);
    EXPECT_THAT(error_of(build()), HasSubstr("did not write it")); // the old one is no excuse
}

TEST_F(Build, AFileOfTheUsersIsNotReplaced) {
    write_sets({"a", "b"}, with_compiler);
    folder.write("build/a.asm", "mine");
    folder.write("build/b.bgl", "mine too");
    folder.write("build/other.txt", "and this");
    options.keep_going = true;
    const BuildResult result = build();
    EXPECT_THAT(outcomes(result), ElementsAre("a: failed (new)", "b: failed (new)"));
    EXPECT_EQ(output("a.asm"), "mine");
    EXPECT_FALSE(folder.has("build/a_0.asm"));
    EXPECT_EQ(output("b.bgl"), "mine too");
    EXPECT_EQ(output("other.txt"), "and this");
    std::filesystem::remove(folder.file("build/a.asm"));
    EXPECT_THAT(built(), Contains("a: made (failed before)"));
}

TEST_F(Build, ANewCompilerDoesNotReplaceAFileOfTheUsers) {
    write_sets({"a"});
    build();
    folder.write("build/a.bgl", "mine");
    write_sets({"a"}, with_compiler);
    EXPECT_THAT(built(), ElementsAre("a: failed (compiler changed)"));
    EXPECT_EQ(output("a.bgl"), "mine");
}

TEST_F(Build, TheManifestMayBeDeleted) {
    write_sets({"a"}, with_compiler);
    build();
    const std::string model = output("a_0.asm");
    std::filesystem::remove(folder.file("build/.morvane-build.json"));
    EXPECT_THAT(built(), ElementsAre("a: made (new)"));
    EXPECT_EQ(output("a_0.asm"), model);
    EXPECT_THAT(built(), ElementsAre("a: up to date"));
}

TEST_F(Build, ADamagedManifestIsNoted) {
    write_sets({"a"});
    build();
    folder.write("build/.morvane-build.json", "{\"format\": 1, ");
    const BuildResult result = build();
    EXPECT_THAT(outcomes(result), ElementsAre("a: made (new)"));
    EXPECT_THAT(result.notes, SizeIs(1));
}

TEST_F(Build, AManifestOfALaterFormatIsRefused) {
    write_sets({"a"});
    folder.write("build/.morvane-build.json", "{\"format\": 2}");
    const BuildResult result = build();
    EXPECT_EQ(result.how, BuildResult::How::Refused);
    EXPECT_THAT(result.errors, ElementsAre(HasSubstr("later version")));
    EXPECT_EQ(output(".morvane-build.json"), "{\"format\": 2}");
    EXPECT_FALSE(folder.has("build/a.asm"));
}

TEST_F(Build, AnotherBuildKeepsTheFolder) {
    write_sets({"a"});
    build();
    const auto lock = disk->create_temporary(folder.file("build/.morvane-build.lock"), {});
    const BuildResult result = build();
    EXPECT_EQ(result.how, BuildResult::How::Refused);
    EXPECT_THAT(result.errors, ElementsAre(HasSubstr("another build uses the folder")));
}

TEST_F(Build, AFolderThatCannotBeWrittenToIsNotTakenForOneInUse) {
    write_sets({"a"});
    build();
    UnwritableDisk unwritable;
    const Services there{unwritable, reporter};
    EXPECT_THROW(build_project(there, project(), surroundings, options), RuntimeError);
}

TEST_F(Build, ALockThatWasLeftBehindDoesNoHarm) {
    write_sets({"a"});
    folder.write("build/.morvane-build.lock", "");
    EXPECT_THAT(built(), ElementsAre("a: made (new)"));
}

TEST_F(Build, SuffixesAreAppendedInBothFiles) {
    write_export("a");
    write_project(
        "[[set]]\nbase = \"exports/a\"\nrecipe = \"recipes/red.toml\"\nsuffix = \"T1\"\n");
    build();
    EXPECT_THAT(output("a_0.asm"), HasSubstr("masterT1 label BGLCODE"));
    EXPECT_THAT(output("a_0.asm"), HasSubstr("LBL1aT1 label BGLCODE"));
    EXPECT_THAT(output("a.asm"), HasSubstr("    INSTANCE_CALL masterT1, 0, 0, 0 ; turn"));
    EXPECT_THAT(output("a.asm"), HasSubstr("skipT1 label BGLCODE"));
    EXPECT_THAT(output("a.asm"), HasSubstr("SCALE_AGL skipT1, 5"));
}

TEST_F(Build, TwoStepsThatWouldWriteOneFileAreAnErrorOfTheProject) {
    write_sets({"a"});
    folder.write("morvane.toml", folder.read("morvane.toml") +
                                     "[[library]]\nlist = \"l.toml\"\noutput = \"A_0.asm\"\n");
    folder.write("l.toml", "object = []\n");
    const BuildResult result = build();
    EXPECT_EQ(result.how, BuildResult::How::NotStarted);
    EXPECT_THAT(result.errors,
                Contains(HasSubstr("\"A_0\" would write A_0.asm, which \"a\" writes too")));
}

TEST_F(Build, AWrongRecipeStartsNothing) {
    write_sets({"a", "b"});
    folder.write("recipes/red.toml", "[[assign]]\nkind = \"Light\"\n");
    const BuildResult result = build();
    EXPECT_EQ(result.how, BuildResult::How::NotStarted);
    EXPECT_THAT(result.errors, ElementsAre(HasSubstr("red.toml:2:8: ")));
    EXPECT_FALSE(std::filesystem::exists(folder.file("build")));
}

TEST_F(Build, AMissingMacrosFileIsAnErrorOfTheProject) {
    write_sets({"a"}, "[project]\nmacros = \"no.inc\"\n");
    const BuildResult result = build();
    EXPECT_EQ(result.how, BuildResult::How::NotStarted);
    EXPECT_THAT(result.errors, ElementsAre(HasSubstr("morvane.toml:2: \"macros\"")));
}

TEST_F(Build, MacrosAreLookedUpInTheSharedFolderAfterTheProjects) {
    folder.write("share/morvane.inc", "; shared\r\n");
    surroundings.share_folders = {folder.file("share")};
    write_sets({"a"}, "[project]\nmacros = \"morvane.inc\"\n");
    build();
    EXPECT_EQ(output("morvane.inc"), "; shared\r\n");
    folder.write("morvane.inc", "; own\r\n");
    EXPECT_THAT(built(), ElementsAre("a: made (macros changed)"));
    EXPECT_EQ(output("morvane.inc"), "; own\r\n");
}

TEST_F(Build, FilesOfAStepThatIsGoneStayWithANote) {
    write_sets({"a", "b"});
    build();
    write_sets({"a"});
    const BuildResult result = build();
    ASSERT_THAT(result.notes, SizeIs(1));
    EXPECT_THAT(result.notes[0].text, HasSubstr("\"b\" is no longer in the project"));
    EXPECT_TRUE(folder.has("build/b.asm"));
    EXPECT_THAT(build().notes, IsEmpty());
}

TEST_F(Build, AnInterruptionLeavesATrueManifest) {
    write_sets({"a", "b", "c"}, with_compiler);
    bool stop = false;
    options.interrupted = [&] { return stop; };
    options.finished = [&](const StepResult&, std::size_t place, std::size_t) {
        stop = place == 1;
    };
    const BuildResult result = build();
    EXPECT_EQ(result.how, BuildResult::How::Interrupted);
    EXPECT_THAT(outcomes(result),
                ElementsAre("a: made (new)", "b: not reached (new)", "c: not reached (new)"));
    options = {};
    EXPECT_THAT(built(), ElementsAre("a: up to date", "b: made (new)", "c: made (new)"));
}

TEST_F(Build, ManyJobsMakeTheSameAsOne) {
    std::vector<std::string> names;
    for (char c = 'a'; c <= 'p'; ++c) {
        names.emplace_back(1, c);
    }
    write_sets(names, with_compiler);
    options.jobs = 8;
    std::vector<std::string> order;
    options.finished = [&](const StepResult& step, std::size_t, std::size_t total) {
        EXPECT_EQ(total, 16U);
        order.push_back(step.name);
    };
    const BuildResult result = build();
    EXPECT_EQ(order, names);
    EXPECT_EQ(result.how, BuildResult::How::Done);
    EXPECT_THAT(outcomes(build()), Not(Contains(HasSubstr("made"))));
}

TEST_F(Build, ARecipeThatMatchesNothingFailsItsStepWithTheNearestColors) {
    write_sets({"a"});
    folder.write("recipes/red.toml", "[[assign]]\ncolor = \"80807F\"\nkind = \"Lights\"\n");
    const BuildResult result = build();
    EXPECT_THAT(outcomes(result), ElementsAre("a: failed (new)"));
    EXPECT_THAT(error_of(result), HasSubstr("the nearest colours that are left: 7F7F7F"));
    EXPECT_EQ(result.steps[0].problems[0].line, 1U);
}

// The model file with a line among its triangles that is no triangle.
std::string model_with_other_line() {
    std::string model = model_text(2);
    const std::string triangle = "    DRAW_TRI    0,   1,   2 ; poly=0 part=0\r\n";
    return model.insert(model.find(triangle) + triangle.size(), "    MIPMAP 1\r\n");
}

TEST_F(Build, AMaterialWithMoreThanTrianglesFailsItsStepAsProcessDoes) {
    write_sets({"a"});
    folder.write("exports/a_0.asm", model_with_other_line());
    const BuildResult result = build();
    EXPECT_THAT(outcomes(result), ElementsAre("a: failed (new)"));
    ASSERT_THAT(result.steps[0].problems, Not(IsEmpty()));
    const Problem& problem = result.steps[0].problems[0];
    EXPECT_EQ(problem.code, "other-lines");
    EXPECT_THAT(problem.path, HasSubstr("red.toml"));
    EXPECT_EQ(problem.line, 1U);
    EXPECT_THAT(problem.text, HasSubstr("row 1 (MATERIAL 0"));
    EXPECT_THAT(problem.text, HasSubstr("more than triangles before its DRAW_TRI_END"));
    EXPECT_THAT(problem.text, HasSubstr("a_0.asm:14)"));
    EXPECT_FALSE(folder.has("build/a_0.asm"));
}

TEST_F(Build, AMaterialWithoutATriangleFailsItsStep) {
    write_sets({"a"});
    folder.write("exports/a_0.asm", model_text(0));
    const BuildResult result = build();
    EXPECT_THAT(outcomes(result), ElementsAre("a: failed (new)"));
    EXPECT_THAT(error_of(result), HasSubstr("has no triangle in its block"));
}

TEST_F(Build, AnExportThatIsRewrittenAlreadyFailsItsStep) {
    write_sets({"a"});
    build();
    const std::string rewritten = output("a_0.asm");
    folder.write("exports/a_0.asm", rewritten);
    const BuildResult result = build();
    EXPECT_THAT(outcomes(result), ElementsAre("a: failed (exported again)"));
    EXPECT_THAT(error_of(result), HasSubstr("Already processed ?"));
    EXPECT_EQ(output("a_0.asm"), rewritten);
}

TEST(ManifestFile, ReadsWhatWasWritten) {
    const TempFolder folder;
    const auto disk = make_system_disk();
    Manifest manifest;
    FileRecord file{"export", "exports/\xC3\xA4.asm", {1, -2, 3, 4, 5}, "00ff"};
    manifest.files = {"a.asm", "b.bgl"};
    manifest.steps["a"] = {true, "s\x1F", "c", "1.0", {file}, {file, file}};
    manifest.steps["b"] = {};
    write_manifest(*disk, folder.path(), manifest);
    EXPECT_EQ(read_manifest(*disk, folder.path()).manifest, manifest);
}

} // namespace
} // namespace morvane::test
