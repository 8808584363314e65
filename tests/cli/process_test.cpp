// SPDX-License-Identifier: GPL-3.0-or-later

// `process` as a command: what it refuses before anything is rewritten, and what it does with
// several sets, backups, frames and dry runs.

#include "cli/program_run.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* lights = "[[assign]]\nhighlight = \"Red\"\nkind = \"Lights\"\n"
                               "LightVariable = \"beacnt\"\n";

// Two red materials; Open looks at the first only.
std::string model() {
    std::string text = "MATERIAL_LIST_BEGIN\n";
    for (int i = 0; i < 2; ++i) {
        text += "MATERIAL_DEF 1.0,0.5,0.0,1.0, 0,0,0, " + std::string(i == 0 ? "0,1,0" : "1,0,0") +
                ", 0,0,0, 0.0 ; x\n";
    }
    text += "MATERIAL_LIST_END\nVERTEX_LIST_BEGIN\n";
    for (int i = 0; i < 3; ++i) {
        text += "VERTEX_DEF " + std::to_string(i) + ".0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0 ; x\n";
    }
    text += "VERTEX_LIST_END\n";
    for (int i = 0; i < 2; ++i) {
        text += "MATERIAL " + std::to_string(i) +
                ",0 ; x\nDRAW_TRI_BEGIN 0, 3\nDRAW_TRI 0, 1, 2 ; x\nDRAW_TRI 2, 1, 0 ; x\n"
                "DRAW_TRI_END\n";
    }
    return text + "BGL_RETURN\nBGL_END\n";
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.rfind(from), from.size(), to);
}

class ProcessCommand : public ::testing::Test {
  protected:
    void write_set(const std::string& name, const std::string& text = model()) {
        work.write(name + "_0.asm", text);
        work.write(name + ".asm", "    include " + name +
                                      "_0.asm\n    SCALE_AGL a,0,100,65536,0100h,0,0200h,0,0,0\n");
    }
    void SetUp() override {
        write_set("set");
        work.write("set.toml", lights);
    }
    ProgramRun run(const std::string& command) {
        return run_commands(work.path(), "morvane-cli process " + command);
    }

    TempFolder work;
};

TEST_F(ProcessCommand, ARewrittenSetIsRefusedAndForceTakesIt) {
    ASSERT_EQ(run("set").status, 0);
    const std::string once = work.read("set_0.asm");
    const ProgramRun refused = run("set");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.errors,
                HasSubstr("set.toml:1: row 2 (MATERIAL 1, Red, FF7F00) is already rewritten"));
    EXPECT_THAT(refused.errors, HasSubstr("(set_0.asm:"));
    EXPECT_EQ(work.read("set_0.asm"), once);
    EXPECT_EQ(run("set --force").status, 0);
    EXPECT_NE(work.read("set_0.asm"), once);
}

// What a second run does to code that was generated already is why it has to be asked for: two of
// its lines are commented out, and the closing label comes a second time.
TEST_F(ProcessCommand, ForceDoesToARewrittenSetWhatTheWindowDoes) {
    ASSERT_EQ(run("set").status, 0);
    const std::string selecting = "MATERIAL 1,0 ; x\r\n";
    std::string once = work.read("set_0.asm");
    ASSERT_THAT(once, HasSubstr(selecting + "\r\n;\r\n;\r\nLBL2b label BGLCODE\r\n"));
    for (int time = 0; time < 2; ++time) { // refused each time, and not a byte changes
        EXPECT_EQ(run("set").status, 1);
        EXPECT_EQ(work.read("set_0.asm"), once);
    }
    ASSERT_EQ(run("set --force").status, 0);
    EXPECT_EQ(work.read("set_0.asm"), replaced(once, selecting + "\r\n;\r\n",
                                               selecting + "LBL2a label BGLCODE\r\n; \r\n; ;\r\n") +
                                          "\r\n");
    once = work.read("set_0.asm");
    EXPECT_EQ(run("set").status, 1);
    EXPECT_EQ(work.read("set_0.asm"), once);
}

TEST_F(ProcessCommand, BlocksThatHoldMoreThanTrianglesAreRefused) {
    const std::string triangle = "DRAW_TRI 2, 1, 0 ; x\n";
    for (const std::string line : {"; a comment\n", "\n", "DRAW_TRI_BEGIN 0, 3\n"}) {
        const std::string text = replaced(model(), triangle, line + triangle);
        write_set("set", text);
        const ProgramRun refused = run("set");
        EXPECT_EQ(refused.status, 1) << line;
        EXPECT_THAT(refused.errors, HasSubstr("row 2 (MATERIAL 1, Red, FF7F00) has a block that "
                                              "holds more than triangles"));
        EXPECT_EQ(work.read("set_0.asm"), text);
        EXPECT_EQ(run("set --force").status, 0) << line;
    }
    write_set("set", replaced(model(), "DRAW_TRI_BEGIN", "; a comment\nDRAW_TRI_BEGIN"));
    EXPECT_EQ(run("set").status, 1) << "a line before the block";
    write_set("set", replaced(replaced(model(), triangle, ""), "DRAW_TRI 0, 1, 2 ; x\n", ""));
    EXPECT_THAT(run("set").errors, HasSubstr("has no triangle in its block"));
}

TEST_F(ProcessCommand, MaterialsThatNoAssignmentNamesMayBeAsTheyAre) {
    std::string text = model();
    text.replace(text.find("DRAW_TRI 2, 1, 0"), 0, "; a comment\n");
    write_set("set", text);
    EXPECT_EQ(run("set").status, 0);
}

TEST_F(ProcessCommand, OneNoteForEachMaterial) {
    const std::string output = run("set").output;
    EXPECT_THAT(output, HasSubstr("Note: set.toml:1: row 2 (MATERIAL 1, Red, FF7F00) becomes "
                                  "Lights: 2 triangles.\n"));
    EXPECT_THAT(output, HasSubstr("row 1 (MATERIAL 0, Green, FF7F00) is left as it is.\n"));
}

TEST_F(ProcessCommand, SeveralSetsEachTakeTheirOwnRecipe) {
    write_set("other");
    work.write("other.toml", "[[assign]]\nhighlight = \"Green\"\nkind = \"Lights\"\n"
                             "LightVariable = \"beacnt\"\n");
    write_set("wrong");
    work.write("wrong.toml", "nonsense");
    write_set("again");
    work.write("again.toml", lights);
    ASSERT_EQ(run("again").status, 0);
    const ProgramRun all = run("set other again");
    EXPECT_EQ(all.status, 1);
    EXPECT_THAT(all.output, EndsWith("\n3 sets: 2 done, 1 refused, 0 failed\n"));
    EXPECT_THAT(work.read("other_0.asm"), HasSubstr("LBL1 label BGLCODE"));
    write_set("set");
    const ProgramRun worst = run("set wrong");
    EXPECT_EQ(worst.status, 2) << "the worst of them";
    EXPECT_THAT(worst.output, EndsWith("\n2 sets: 1 done, 0 refused, 1 failed\n"));
}

TEST_F(ProcessCommand, OneRecipeServesSeveralSets) {
    write_set("other");
    work.write("one.toml", lights);
    const ProgramRun all = run("set other one.toml");
    EXPECT_EQ(all.status, 0);
    EXPECT_THAT(all.output, EndsWith("\n2 sets: 2 done, 0 refused, 0 failed\n"));
    EXPECT_EQ(run("set one.toml set.toml").status, 2) << "two recipes";
    EXPECT_EQ(run("one.toml").status, 2) << "no base";
}

TEST_F(ProcessCommand, WithJsonSeveralSetsAreOneDocument) {
    write_set("other");
    const std::string document = run("--json set other set.toml").output;
    EXPECT_THAT(document, ::testing::StartsWith("{\n  \"sets\": [\n"));
    EXPECT_THAT(document, Not(HasSubstr("2 sets:")));
    const std::string refused = run("--json set other set.toml").output;
    EXPECT_THAT(refused, HasSubstr("\"error\": {\n        \"status\": 1,"));
    EXPECT_THAT(refused, HasSubstr("is already rewritten"));
}

TEST_F(ProcessCommand, OutputsThatAreNoBasePathAreRefused) {
    EXPECT_EQ(run("set --output ''").status, 2);
    EXPECT_EQ(run("set --output other.asm").status, 2);
    EXPECT_EQ(run("set set --output other").status, 2);
    EXPECT_EQ(run("set --with-frame").status, 2);
    EXPECT_EQ(work.read("set_0.asm"), model());
}

TEST_F(ProcessCommand, TheFrameGoesAlongWhenItIsAskedFor) {
    EXPECT_THAT(run("set --output lit").output,
                HasSubstr("Note: lit has no frame file; --with-frame writes one."));
    EXPECT_EQ(run("set --output lit --with-frame").status, 0);
    EXPECT_THAT(work.read("lit.asm"), ::testing::StartsWith("    include lit_0.asm\r\n"));
    EXPECT_THAT(work.read("set.asm"), ::testing::StartsWith("    include set_0.asm\n"));
}

TEST_F(ProcessCommand, ABackupIsMadeBeforeTheSetIsSaved) {
    ASSERT_EQ(run("set --backup").status, 0);
    EXPECT_EQ(work.read("set_asm.bck").substr(0, 19), "MATERIAL_LIST_BEGIN");
    EXPECT_THAT(work.read("set_asm.bck"), Not(HasSubstr("LBL2")));
    const std::string rewritten = work.read("set_0.asm");
    const ProgramRun refused = run("set --backup");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(work.read("set_0.asm"), rewritten);
    EXPECT_THAT(work.read("set_asm.bck"), Not(HasSubstr("LBL2")));
}

TEST_F(ProcessCommand, ARewrittenSetIsNotBackedUpOverAnExport) {
    ASSERT_EQ(run("set --backup").status, 0);
    work.write("green.toml", "[[assign]]\nhighlight = \"Green\"\nkind = \"Lights\"\n"
                             "LightVariable = \"beacnt\"\n");
    const ProgramRun refused = run("set green.toml --backup");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(work.read("set_asm.bck"), Not(HasSubstr("LBL2")));
    EXPECT_EQ(run("set green.toml --backup --force").status, 0);
    EXPECT_THAT(work.read("set_asm.bck"), HasSubstr("LBL2"));
}

TEST_F(ProcessCommand, ParametersThatBreakTheSourceAreNotedAndRefusedWhenStrict) {
    work.write("set.toml", "[[assign]]\nkind = \"Lights\"\nLightVariable = \"beacnt\"\n"
                           "FlashMask = \"zz\"\n");
    const ProgramRun strict = run("set --strict");
    EXPECT_EQ(strict.status, 1);
    EXPECT_EQ(work.read("set_0.asm"), model());
    EXPECT_THAT(strict.errors, HasSubstr("Note: set.toml:1: FlashMask \"zz\" is not a mask"));
    const ProgramRun noted = run("set");
    EXPECT_EQ(noted.status, 0);
    EXPECT_THAT(noted.output, HasSubstr("Note: set.toml:1: FlashMask \"zz\" is not a mask"));
}

TEST_F(ProcessCommand, ADryRunWritesNothingAndItsDiffCanBeApplied) {
    const ProgramRun dry = run_commands(
        work.path(), "morvane-cli process set --dry-run > log\ntouch names\nls | sort > names\n"
                     "sed -n '/^--- /,$p' log > change\npatch -s -p0 --binary < change\n"
                     "cp set_0.asm patched\n");
    if (dry.errors.find("patch: ") != std::string::npos && dry.status == 127) {
        GTEST_SKIP() << "there is no patch program";
    }
    EXPECT_EQ(work.read("names"), "log\nnames\nset.asm\nset.toml\nset_0.asm\n");
    work.write("set_0.asm", model());
    ASSERT_EQ(run("set").status, 0);
    EXPECT_EQ(work.read("patched"), work.read("set_0.asm"));
    EXPECT_THAT(work.read("change"), Not(HasSubstr("\x1b"))) << "no colours in a file";
}

TEST_F(ProcessCommand, InspectShowsRewrittenRows) {
    ASSERT_EQ(run("set").status, 0);
    const ProgramRun text = run_commands(work.path(), "morvane-cli inspect set");
    EXPECT_THAT(text.output, HasSubstr("triangles 0  rewritten\n"));
    const std::string json = run_commands(work.path(), "morvane-cli inspect set --json").output;
    EXPECT_THAT(json, HasSubstr("\"highlight_name\": \"Green\",\n      \"rewritten\": false"));
    EXPECT_THAT(json, HasSubstr("\"highlight_name\": \"Red\",\n      \"rewritten\": true"));
}

} // namespace
} // namespace morvane::test
