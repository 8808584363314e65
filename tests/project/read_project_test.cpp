// SPDX-License-Identifier: GPL-3.0-or-later
#include "project_fixture.h"

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class ReadProject : public ProjectTest {
  protected:
    Project read(const std::string& text) {
        folder.write("morvane.toml", text);
        return project();
    }

    std::string error(const std::string& text) {
        folder.write("morvane.toml", text);
        const ProjectReading reading = read_project(*disk, folder.file("morvane.toml"));
        EXPECT_FALSE(reading.project);
        EXPECT_THAT(reading.errors, SizeIs(1));
        EXPECT_THAT(reading.problems, SizeIs(reading.errors.size()));
        return reading.errors.empty() ? "" : reading.errors[0].substr(folder.path().size() + 1);
    }
};

TEST_F(ReadProject, ASetHasDefaults) {
    const Project found = read("[[set]]\nbase = \"exports/terminal\"\n");
    ASSERT_THAT(found.steps, SizeIs(1));
    EXPECT_EQ(found.steps[0].name, "terminal");
    EXPECT_EQ(found.steps[0].base, folder.file("") + "exports/terminal");
    EXPECT_EQ(found.steps[0].recipe, folder.file("") + "exports/terminal.toml");
    EXPECT_EQ(found.steps[0].suffix, "");
    EXPECT_EQ(found.steps[0].compile, CompileAs::Bgl);
    EXPECT_EQ(found.folder, folder.file("build"));
    EXPECT_THAT(found.compiler, IsEmpty());
    EXPECT_EQ(found.macros, "");
}

TEST_F(ReadProject, TakesEveryKey) {
    const Project found = read(
        "[project]\noutput = \"made\"\ncompiler = [\"wine\", \"bglc.exe\"]\nmacros = \"m.inc\"\n"
        "[[set]]\nbase = \"a\"\nrecipe = \"r.toml\"\nsuffix = \"T1\"\ncompile = false\n"
        "[[aircraft]]\nname = \"glider\"\ncomplete = \"c\"\nflexing_wings = true\n"
        "fuselage = \"f\"\nwings_high = \"h\"\nwings_low = \"l\"\nshadow_optimization = true\n"
        "shadow = \"s\"\n"
        "[[library]]\nlist = \"o.toml\"\noutput = \"objects.asm\"\ncompile = \"mdl\"\n");
    EXPECT_EQ(found.folder, folder.file("made"));
    EXPECT_THAT(found.compiler, ElementsAre("wine", "bglc.exe"));
    EXPECT_EQ(found.macros, "m.inc");
    ASSERT_THAT(found.steps, SizeIs(3));
    EXPECT_EQ(found.steps[0].suffix, "T1");
    EXPECT_EQ(found.steps[0].compile, CompileAs::Nothing);
    EXPECT_EQ(found.steps[1].name, "glider");
    EXPECT_EQ(found.steps[1].compile, CompileAs::Mdl);
    EXPECT_EQ(found.steps[1].parts[WingsLow], folder.file("l"));
    EXPECT_THAT(parts_used(found.steps[1]),
                ElementsAre(CompleteModel, Fuselage, WingsHigh, WingsLow, Shadow));
    EXPECT_EQ(found.steps[2].name, "objects");
    EXPECT_EQ(found.steps[2].list, folder.file("o.toml"));
    EXPECT_EQ(found.steps[2].compile, CompileAs::Mdl);
}

TEST_F(ReadProject, MistakesNameFileLineAndKey) {
    EXPECT_EQ(error("[[set]]\nbse = \"a\"\nbase = \"a\"\n"),
              "morvane.toml:2:1: unknown key \"bse\" (did you mean \"base\"?)\n"
              "bse = \"a\"\n^");
    EXPECT_THAT(error("[[set]]\nsuffix = \"T\"\n"), HasSubstr(":1:1: \"base\" is missing"));
    EXPECT_THAT(error("[[sets]]\nbase = \"a\"\n"), HasSubstr("(did you mean \"set\"?)"));
    EXPECT_THAT(error("[project]\n"), HasSubstr("there is no [[set]]"));
    EXPECT_THAT(error("[set]\nbase = \"a\"\n"), HasSubstr("[[set]]"));
    EXPECT_THAT(error("[[set]]\nbase = \"a.asm\"\n"), HasSubstr("without its ending"));
    EXPECT_THAT(error("[[set]]\nbase = \"a\"\ncompile = true\n"),
                HasSubstr(":3:11: \"compile\" must be \"bgl\", \"mdl\" or false"));
    EXPECT_THAT(error("[[set]]\nbase = \"a\"\nsuffix = \"T 1\"\n"),
                HasSubstr("\"suffix\" must not hold blanks"));
    EXPECT_THAT(error("[project]\ncompiler = \"\"\n[[set]]\nbase = \"a\"\n"),
                HasSubstr("\"compiler\" must begin with the name of a program"));
    EXPECT_THAT(error("[[library]]\nlist = \"a.toml\"\noutput = \"x/objects.asm\"\n"),
                HasSubstr(":3:10: \"output\" must be a name without a folder"));
    EXPECT_THAT(error("[[library]]\nlist = \"a.toml\"\noutput = \"objects\"\n"),
                HasSubstr("that ends in .asm"));
    EXPECT_THAT(error("[[aircraft]]\nname = \"g\"\ncomplete = \"c\"\n"),
                HasSubstr("nothing to do"));
    EXPECT_THAT(error("[[aircraft]]\nname = \"g\"\ncomplete = \"c\"\nshadow_optimization = true\n"),
                HasSubstr("\"shadow\" is missing"));
    EXPECT_THAT(error("[[set]]\nbase = \"a\"\n[[set]]\nbase = \"x/A\"\n"),
                HasSubstr(":3:1: there is a step \"A\" already, in line 1"));
}

} // namespace
} // namespace morvane::test
