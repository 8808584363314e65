// SPDX-License-Identifier: GPL-3.0-or-later

// The bundled project, with a compiler that only writes its product.

#include "project_fixture.h"
#include "support/source_folder.h"

#include <filesystem>
#include <fstream>
#include <map>

namespace morvane::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

class ExampleProject : public ProjectTest {
  protected:
    void SetUp() override {
        for (const std::string name : {"project", "aircraft-flex", "library"}) {
            std::filesystem::copy(source_folder() + "/examples/" + name, folder.file(name),
                                  std::filesystem::copy_options::recursive);
        }
        project_file = folder.file("project/morvane.toml");
        surroundings.share_folders = {source_folder() + "/share"};
        std::string text = read_file(project_file);
        const std::string off = "#compiler = [\"wine\", \"bglc.exe\"]";
        ASSERT_THAT(text, HasSubstr(off));
        write_file(project_file, text.replace(text.find(off), off.size(), "compiler = [\"cc\"]"));
    }

    std::string made(const std::string& name) const { return folder.read("project/build/" + name); }

    // By the disk of the system: the times of the standard library are whole seconds on Windows.
    std::map<std::string, FileStamp> times() const {
        std::map<std::string, FileStamp> found;
        for (const auto& entry :
             std::filesystem::directory_iterator(folder.file("project/build"))) {
            found[entry.path().filename().string()] = disk->stamp(entry.path().string());
        }
        return found;
    }

    // As an exporter does: both files anew, the model changed.
    void export_again(const std::string& name) const {
        const std::string model = "project/exports/" + name + "_0.asm";
        folder.write(model, folder.read(model) + "; exported again\r\n");
        const std::string frame = "project/exports/" + name + ".asm";
        folder.write(frame, folder.read(frame));
    }
};

TEST_F(ExampleProject, MakesAllItsSteps) {
    const BuildResult result = build();
    EXPECT_EQ(result.how, BuildResult::How::Done);
    EXPECT_THAT(outcomes(result),
                ElementsAre("apron: made (new)", "terminal: made (new)", "tower: made (new)",
                            "glider: made (new)", "objects: made (new)"));
    for (const StepResult& step : result.steps) {
        for (const Problem& problem : step.problems) {
            EXPECT_NE(problem.severity, Severity::Error) << step.name << ": " << problem.text;
        }
    }
    EXPECT_THAT(compiled, UnorderedElementsAre("cc /bgl apron.asm", "cc /bgl terminal.asm",
                                               "cc /bgl tower.asm", "cc /mdl complete.asm",
                                               "cc /bgl objects.asm"));
    for (const std::string name : {"apron.bgl", "terminal.bgl", "tower.bgl", "complete.mdl",
                                   "objects.bgl", "hangar_0.asm", "wings_low.asm"}) {
        EXPECT_TRUE(folder.has("project/build/" + name)) << name;
    }
}

TEST_F(ExampleProject, SetsAreProcessedAndTheirLabelsHaveTheirSuffixes) {
    build();
    EXPECT_THAT(made("apron_0.asm"), HasSubstr("BGL_LIGHT"));
    EXPECT_THAT(made("terminal_0.asm"), HasSubstr("KZM_FX1"));
    EXPECT_THAT(made("tower_0.asm"), HasSubstr("KZM_WINDSOCK"));
    EXPECT_THAT(made("apron_0.asm"), HasSubstr("apron_MASTERA label BGLCODE"));
    EXPECT_THAT(made("apron.asm"), HasSubstr("INSTANCE_CALL apron_MASTERA,"));
}

TEST_F(ExampleProject, TheMacrosAreCopiedAndIncludedBySetsAndTheAircraft) {
    build();
    EXPECT_EQ(made("morvane.inc"), read_file(source_folder() + "/share/morvane.inc"));
    for (const std::string name : {"apron.asm", "terminal.asm", "tower.asm", "complete.asm"}) {
        EXPECT_THAT(made(name), HasSubstr("    include morvane.inc\r\n")) << name;
    }
    EXPECT_THAT(made("objects.asm"), Not(HasSubstr("morvane.inc")));
}

TEST_F(ExampleProject, MacrosBesideTheProjectComeFirst) {
    folder.write("project/morvane.inc", "; the project's own\r\n");
    build();
    EXPECT_EQ(made("morvane.inc"), "; the project's own\r\n");
}

TEST_F(ExampleProject, MakesNothingWhenNothingHasChanged) {
    build();
    const auto before = times();
    compiled.clear();
    EXPECT_THAT(built(),
                ElementsAre("apron: up to date", "terminal: up to date", "tower: up to date",
                            "glider: up to date", "objects: up to date"));
    EXPECT_THAT(compiled, ElementsAre());
    EXPECT_TRUE(times() == before);
}

TEST_F(ExampleProject, MakesOnlyTheSetThatWasExportedAgain) {
    build();
    const auto before = times();
    compiled.clear();
    export_again("terminal");
    EXPECT_THAT(built(),
                ElementsAre("apron: up to date", "terminal: made (exported again)",
                            "tower: up to date", "glider: up to date", "objects: up to date"));
    EXPECT_THAT(compiled, ElementsAre("cc /bgl terminal.asm"));
    EXPECT_THAT(made("terminal_0.asm"), HasSubstr("; exported again\r\n"));
    for (const auto& [name, time] : times()) {
        const bool changes = name.starts_with("terminal") || name == ".morvane-build.json";
        EXPECT_EQ(!(time == before.at(name)), changes) << name;
    }
}

TEST_F(ExampleProject, ASharedRecipeConcernsAllSetsThatIncludeIt) {
    build();
    const std::string shared = "project/recipes/shared.toml";
    folder.write(shared, folder.read(shared) + "LightInt = \"50\"\n");
    EXPECT_THAT(built(),
                ElementsAre("apron: made (recipe changed)", "terminal: made (recipe changed)",
                            "tower: made (recipe changed)", "glider: up to date",
                            "objects: up to date"));
}

} // namespace
} // namespace morvane::test
