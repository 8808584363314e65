// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/project_table.h"
#include "project_fixture.h"

#include <filesystem>

namespace morvane::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Table : public ProjectTest {
  protected:
    ProjectTable table() { return {services, project_file, surroundings}; }

    void build(ProjectTable& built, const std::vector<std::string>& names = {}) {
        built.build(names, 1,
                    [this](const std::vector<std::string>& words, const std::string& where) {
                        return compile(words, where);
                    });
    }

    static std::vector<std::string> states(const ProjectTable& table) {
        std::vector<std::string> texts;
        for (const ProjectRow& row : table.rows()) {
            texts.push_back(row.name + ": " + row.state + ", " + row.result);
        }
        return texts;
    }
};

TEST_F(Table, SaysWhatEachStepIsLikeWithoutWriting) {
    write_sets({"a", "b"});
    folder.write("l.toml", "object = []\n");
    folder.write("morvane.toml", folder.read("morvane.toml") +
                                     "[[library]]\nlist = \"l.toml\"\noutput = \"lib.asm\"\n");
    ProjectTable shown = table();
    shown.refresh();
    EXPECT_THAT(states(shown), ElementsAre("a: new, ", "b: new, ", "lib: new, "));
    const ProjectRow& row = shown.rows()[0];
    EXPECT_EQ(row.kind, "set");
    EXPECT_EQ(row.marked, 1U);
    EXPECT_EQ(row.done, 1U);
    EXPECT_EQ(row.problems, 0U);
    EXPECT_EQ(row.base, folder.file("") + "exports/a");
    EXPECT_EQ(shown.rows()[2].kind, "library");
    EXPECT_FALSE(shown.rows()[2].marked);
    EXPECT_FALSE(std::filesystem::exists(folder.file("build")));
}

TEST_F(Table, ABuildShowsItsResults) {
    write_sets({"a", "b"});
    std::filesystem::remove(folder.file("exports/b.asm"));
    ProjectTable shown = table();
    build(shown);
    EXPECT_THAT(states(shown),
                ElementsAre("a: up to date, made", "b: failed, failed: there is no such file"));
    EXPECT_EQ(shown.rows()[1].problems, 1U);
    EXPECT_FALSE(shown.rows()[1].marked);
    write_export("b");
    build(shown);
    EXPECT_THAT(states(shown), ElementsAre("a: up to date, made", "b: up to date, made"));
    EXPECT_EQ(shown.rows()[1].problems, 0U);
}

TEST_F(Table, OnlyTheStepsThatAreNamedAreBuilt) {
    write_sets({"a", "b"});
    ProjectTable shown = table();
    build(shown, {"b"});
    EXPECT_THAT(states(shown), ElementsAre("a: new, ", "b: up to date, made"));
}

TEST_F(Table, WhatHasChangedSinceIsSeen) {
    write_sets({"a", "b"});
    ProjectTable shown = table();
    build(shown);
    write_export("a", 2);
    shown.refresh();
    EXPECT_THAT(states(shown), ElementsAre("a: exported again, made", "b: up to date, made"));
    folder.write("recipes/red.toml", folder.read("recipes/red.toml") + "LightInt = \"5\"\n");
    shown.refresh();
    EXPECT_EQ(shown.rows()[1].state, "recipe changed");
}

TEST_F(Table, MaterialsThatTheRecipeLeavesAreNotDone) {
    write_sets({"a"});
    folder.write("recipes/red.toml",
                 "[[assign]]\nhighlight = \"Blue\"\noptional = true\nkind = \"Lights\"\n");
    ProjectTable shown = table();
    shown.refresh();
    EXPECT_EQ(shown.rows().at(0).marked, 1U);
    EXPECT_EQ(shown.rows().at(0).done, 0U);
}

TEST_F(Table, AWrongProjectHasErrorsAndNoRows) {
    write_sets({"a"});
    ProjectTable shown = table();
    build(shown);
    write_project("[[set]]\nbas = \"exports/a\"\n");
    shown.refresh();
    EXPECT_THAT(shown.rows(), IsEmpty());
    EXPECT_THAT(shown.errors(), Contains(HasSubstr("morvane.toml:2:1")));
    build(shown);
    EXPECT_FALSE(shown.errors().empty());
}

TEST_F(Table, WhatAWatchBuiltIsTakenOver) {
    write_sets({"a"});
    ProjectTable shown = table();
    shown.refresh();
    shown.take(ProjectTest::build());
    EXPECT_THAT(states(shown), ElementsAre("a: up to date, made"));
}

} // namespace
} // namespace morvane::test
