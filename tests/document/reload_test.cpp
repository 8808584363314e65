// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/recipe_text.h"
#include "document/reload.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

// Highlights in the platform's order: blue, green, red.
constexpr const char* red = "0000FF";
constexpr const char* blue = "FF0000";

Translation material(const std::string& highlight, const std::string& color,
                     const std::string& processed = {}) {
    Translation result;
    result.highlight = highlight;
    result.color = color;
    result.processed = processed;
    result.block.selecting_line = 9;
    return result;
}

TEST(SameRows, FollowBothColors) {
    const std::vector<Translation> before{material(red, "111111"), material(blue, "111111"),
                                          material(red, "222222")};
    const std::vector<Translation> after{material(red, "222222"), material(red, "333333"),
                                         material(red, "111111")};
    EXPECT_THAT(same_rows(before, after), ElementsAre(3U, 0U, 1U));
}

TEST(SameRows, OfTheSameColorsTheFirstIsTheFirst) {
    const std::vector<Translation> before(3, material(red, "111111"));
    const std::vector<Translation> after(2, material(red, "111111"));
    EXPECT_THAT(same_rows(before, after), ElementsAre(1U, 2U, 0U));
    EXPECT_THAT(same_rows(after, before), ElementsAre(1U, 2U));
    EXPECT_THAT(same_rows({}, after), IsEmpty());
}

TEST(ChangedMaterials, AreNamedWithTheirColors) {
    const std::vector<Note> notes =
        changed_materials({material(red, "111111", "Lights"), material(blue, "222222")},
                          {material(blue, "222222"), material(blue, "333333")}, "a_0.asm");
    ASSERT_THAT(notes, SizeIs(2));
    EXPECT_EQ(notes[0].code, "material-gone");
    EXPECT_THAT(notes[0].text, HasSubstr("marked Red, colour 111111"));
    EXPECT_THAT(notes[0].text, HasSubstr("it had become Lights"));
    EXPECT_EQ(notes[1].code, "material-new");
    EXPECT_EQ(notes[1].path, "a_0.asm");
    EXPECT_EQ(notes[1].line, 9U);
    EXPECT_EQ(notes[1].severity, Severity::Warning);
}

class RecipeTexts : public ::testing::Test {
  protected:
    RecipeTexts() {
        set.translations = {material(red, "111111")};
        made.push_back({1, Kind::Lights, {}});
        recipe = record_recipe(set, made);
    }

    RecipeText text(const std::string& name) const {
        return recipe_text(*disk, folder.file(name), set, recipe, made, "fx_a");
    }

    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
    OpenSet set;
    std::vector<MadeMaterial> made;
    Recipe recipe;
};

TEST_F(RecipeTexts, ANewFileIsWrittenAnew) {
    EXPECT_EQ(text("new.toml").text, write_recipe(recipe));
}

TEST_F(RecipeTexts, AFileThatIsThereKeepsItsWords) {
    const std::string kept = "# mine\n\n[[assign]] # elsewhere\nhighlight = \"Blue\"\n"
                             "optional = true\nkind = \"Windsock\" # sock\n";
    folder.write("old.toml", kept);
    const RecipeText found = text("old.toml");
    EXPECT_THAT(found.errors, IsEmpty());
    EXPECT_THAT(found.text, StartsWith(kept));
    EXPECT_THAT(found.text.substr(kept.size()), HasSubstr("kind"));
    EXPECT_THAT(found.text.substr(kept.size()), HasSubstr("Lights"));
}

TEST_F(RecipeTexts, WhatTheRecipeAsksForBesidesIsAdded) {
    recipe.unique_labels = true;
    recipe.macros = "morvane.inc";
    recipe.allow = {"skip-label"};
    folder.write("old.toml", "# mine\n[[assign]]\nhighlight = \"Red\"\nkind = \"Lights\"\n");
    const std::string found = text("old.toml").text;
    EXPECT_THAT(found, HasSubstr("# mine"));
    EXPECT_THAT(found, HasSubstr("unique_labels"));
    EXPECT_THAT(found, HasSubstr("\"morvane.inc\""));
    EXPECT_THAT(found, HasSubstr("\"skip-label\""));
    folder.write("new.toml", found);
    EXPECT_EQ(text("new.toml").text, found);
}

TEST_F(RecipeTexts, AFileThatIsNoRecipeIsRefused) {
    folder.write("old.toml", "this is = [no recipe");
    const RecipeText found = text("old.toml");
    EXPECT_THAT(found.errors, Not(IsEmpty()));
    EXPECT_EQ(found.text, "");
}

} // namespace
} // namespace morvane::test
