// SPDX-License-Identifier: GPL-3.0-or-later

// Recipes that share files and defaults.

#include "recipe/apply_recipe.h"
#include "recipe/recipe.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class SharedRecipe : public ::testing::Test {
  protected:
    RecipeReading read(std::string_view text) {
        return read_recipe(*disk_, folder_.write("airport.toml", text), "fx_smoke");
    }

    Recipe recipe(std::string_view text) {
        RecipeReading reading = read(text);
        EXPECT_THAT(reading.errors, IsEmpty());
        return reading.recipe.value_or(Recipe());
    }

    LightParameters lights(std::string_view text) {
        const Recipe found = recipe(text);
        EXPECT_FALSE(found.assignments.empty());
        return found.assignments.empty() ? LightParameters()
                                         : found.assignments.back().parameters.lights;
    }

    // The only error of a recipe, its folder cut away.
    std::string error(std::string_view text) {
        const RecipeReading reading = read(text);
        EXPECT_FALSE(reading.recipe);
        EXPECT_THAT(reading.errors, SizeIs(1));
        EXPECT_THAT(reading.problems, SizeIs(1));
        std::string result = reading.errors.empty() ? "" : reading.errors[0];
        const std::string folder = folder_.file("");
        for (std::size_t at = 0; (at = result.find(folder)) != std::string::npos;) {
            result.erase(at, folder.size());
        }
        return result;
    }

    test::TempFolder folder_;
    std::unique_ptr<Disk> disk_ = make_system_disk();
};

TEST_F(SharedRecipe, AListInASelectorMeansAnyOfThem) {
    const Recipe found = recipe("[[assign]]\nhighlight = [\"Red\", \"Green\"]\n"
                                "color = [\"ff7f00\", \"000000\"]\nmaterial = [3, 5]\n"
                                "kind = \"Lights\"\n");
    ASSERT_THAT(found.assignments, SizeIs(1));
    EXPECT_THAT(found.assignments[0].highlight, ElementsAre("Red", "Green"));
    EXPECT_THAT(found.assignments[0].color, ElementsAre("FF7F00", "000000"));
    EXPECT_THAT(found.assignments[0].material, ElementsAre(3U, 5U));
}

TEST_F(SharedRecipe, ErrorsInsideAListNameTheValue) {
    EXPECT_EQ(error("[[assign]]\nhighlight = [\"Red\", \"Gren\"]\nkind = \"Lights\"\n"),
              "airport.toml:2:21: \"highlight\" is none of the seven colours (did you mean "
              "\"Green\"?)\n"
              "highlight = [\"Red\", \"Gren\"]\n"
              "                    ^");
    EXPECT_THAT(error("[[assign]]\nhighlight = []\nkind = \"Lights\"\n"),
                HasSubstr("\"highlight\" is an empty list"));
    EXPECT_THAT(error("[[assign]]\nmaterial = [1, 301]\nkind = \"Lights\"\n"),
                HasSubstr("\"material\" must be a whole number from 1 to 300"));
}

TEST_F(SharedRecipe, OptionalIsAFlag) {
    EXPECT_TRUE(recipe("[[assign]]\noptional = true\nkind = \"Lights\"\n").assignments[0].optional);
    EXPECT_FALSE(recipe("[[assign]]\nkind = \"Lights\"\n").assignments[0].optional);
    EXPECT_THAT(error("[[assign]]\noptional = 1\nkind = \"Lights\"\n"),
                HasSubstr("\"optional\" must be true or false"));
}

TEST_F(SharedRecipe, TopKeysAreTaken) {
    const Recipe found = recipe("macros = \"morvane.inc\"\nunique_labels = true\n"
                                "allow = [\"skip-label\"]\n[[assign]]\nkind = \"Lights\"\n");
    EXPECT_EQ(found.macros, "morvane.inc");
    EXPECT_TRUE(found.unique_labels);
    EXPECT_THAT(found.allow, ElementsAre("skip-label"));
    const Recipe plain = recipe("[[assign]]\nkind = \"Lights\"\n");
    EXPECT_EQ(plain.macros, "");
    EXPECT_FALSE(plain.unique_labels);
    EXPECT_THAT(plain.allow, IsEmpty());
}

TEST_F(SharedRecipe, TopKeysOfAWrongTypeAreErrors) {
    EXPECT_THAT(error("macros = 1\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr(":1:10: \"macros\" must be text between quotes"));
    EXPECT_THAT(error("macros = \"inc/\"\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("\"macros\" must be the name of a file"));
    EXPECT_THAT(error("unique_labels = \"yes\"\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("\"unique_labels\" must be true or false"));
    EXPECT_THAT(error("allow = 3\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("\"allow\" must be text"));
    EXPECT_THAT(error("unique_label = true\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("unknown key \"unique_label\" outside of [[assign]] (did you mean "
                          "\"unique_labels\"?)"));
    EXPECT_THAT(error("defaults = 3\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("\"defaults\" must be a table"));
}

TEST_F(SharedRecipe, DefaultsHoldForWhatAnAssignmentOmits) {
    const std::string defaults = "[defaults.Lights]\nLightInt = \"55\"\nDayFlag = true\n";
    const LightParameters from = lights(defaults + "[[assign]]\nkind = \"Lights\"\n");
    EXPECT_EQ(from.LightInt, "55");
    EXPECT_TRUE(from.DayFlag);
    const LightParameters own =
        lights(defaults + "[[assign]]\nkind = \"Lights\"\nLightInt = \"7\"\nDayFlag = false\n");
    EXPECT_EQ(own.LightInt, "7");
    EXPECT_FALSE(own.DayFlag);
}

TEST_F(SharedRecipe, DefaultsAreOfOneKind) {
    const Recipe found = recipe("[defaults.\"Library New\"]\nlibScale = \"2\"\n"
                                "[[assign]]\nkind = \"Library New\"\n"
                                "[[assign]]\nkind = \"Library\"\n");
    EXPECT_EQ(found.assignments[0].parameters.library.libScale, "2");
    EXPECT_EQ(found.assignments[1].parameters.library.libScale, "0.5");
}

TEST_F(SharedRecipe, MistakesInDefaultsNameTheNearestKey) {
    EXPECT_THAT(error("[defaults.Light]\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("\"Light\" is no kind of object (did you mean \"Lights\"?)"));
    EXPECT_THAT(error("[defaults.Lights]\nLigthInt = \"5\"\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr(":2:1: unknown key \"LigthInt\" (did you mean \"LightInt\"?)"));
    EXPECT_THAT(error("[defaults.Lights]\nhighlight = \"Red\"\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("unknown key \"highlight\""));
    EXPECT_THAT(error("[defaults.Lights]\nws_lit = true\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("belongs to the kind \"Windsock\""));
    EXPECT_THAT(error("[defaults.Windsock]\nws_mastColor = \"FFF\"\n"
                      "[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("\"ws_mastColor\" must be 6 characters long"));
}

TEST_F(SharedRecipe, AVariableBringsItsMask) {
    const std::string masked = "[defaults.Lights]\nFlashMask = \"F0F0\"\n";
    const std::string assign = "[[assign]]\nkind = \"Lights\"\n";
    EXPECT_EQ(lights(masked + assign).FlashMask, "F0F0");
    // An assignment's own variable brings its mask even where a default gives one.
    EXPECT_EQ(lights(masked + assign + "LightVariable = \"beacnt\"\n").FlashMask, "2");
    EXPECT_EQ(lights(masked + assign + "LightVariable = \"beacnt\"\nFlashMask = \"0\"\n").FlashMask,
              "0");
    const std::string variable = "[defaults.Lights]\nLightVariable = \"beacnt\"\n";
    EXPECT_EQ(lights(variable + assign).FlashMask, "2");
    EXPECT_EQ(lights(variable + assign + "FlashMask = \"8\"\n").FlashMask, "8");
    EXPECT_EQ(lights(variable + "FlashMask = \"4\"\n" + assign).FlashMask, "4");
}

TEST_F(SharedRecipe, IncludedAssignmentsComeFirst) {
    folder_.write("shared/edge_lights.toml",
                  "[defaults.Lights]\nLightInt = \"11\"\n"
                  "[[assign]]\nhighlight = \"Red\"\nkind = \"Lights\"\n");
    const Recipe found = recipe("include = \"shared/edge_lights.toml\"\n"
                                "[[assign]]\nhighlight = \"Blue\"\nkind = \"Lights\"\n");
    ASSERT_THAT(found.assignments, SizeIs(2));
    EXPECT_THAT(found.assignments[0].highlight, ElementsAre("Red"));
    EXPECT_EQ(file_of(found, found.assignments[0]), folder_.file("") + "shared/edge_lights.toml");
    EXPECT_EQ(file_of(found, found.assignments[1]), folder_.file("airport.toml"));
    // The included defaults hold here too.
    EXPECT_EQ(found.assignments[1].parameters.lights.LightInt, "11");
    EXPECT_THAT(found.files, ElementsAre(folder_.file("airport.toml"),
                                         folder_.file("") + "shared/edge_lights.toml"));
}

TEST_F(SharedRecipe, DefaultsDoNotReachIntoIncludedFiles) {
    folder_.write("a.toml", "[[assign]]\nkind = \"Lights\"\n");
    const Recipe found = recipe("include = \"a.toml\"\n[defaults.Lights]\nLightInt = \"9\"\n");
    ASSERT_THAT(found.assignments, SizeIs(1));
    EXPECT_EQ(found.assignments[0].parameters.lights.LightInt, "100");
}

TEST_F(SharedRecipe, OwnDefaultsWinOverIncludedOnes) {
    folder_.write("a.toml", "[defaults.Lights]\nLightInt = \"1\"\nLightAttnL = \"1.5\"\n");
    const LightParameters found = lights("include = [\"a.toml\"]\n"
                                         "[defaults.Lights]\nLightInt = \"2\"\n"
                                         "[[assign]]\nkind = \"Lights\"\n");
    EXPECT_EQ(found.LightInt, "2");
    EXPECT_EQ(found.LightAttnL, "1.5");
}

TEST_F(SharedRecipe, FilesAreIncludedInTheOrderOfTheList) {
    folder_.write("a.toml", "[[assign]]\nhighlight = \"Red\"\nkind = \"Lights\"\n");
    folder_.write("b.toml", "[[assign]]\nhighlight = \"Green\"\nkind = \"Lights\"\n");
    const Recipe found = recipe("include = [\"b.toml\", \"a.toml\"]\n");
    ASSERT_THAT(found.assignments, SizeIs(2));
    EXPECT_THAT(found.assignments[0].highlight, ElementsAre("Green"));
    EXPECT_THAT(found.assignments[1].highlight, ElementsAre("Red"));
}

TEST_F(SharedRecipe, AnIncludedFileMayIncludeOthersBesideIt) {
    folder_.write("x/y/c.toml", "macros = \"deep.inc\"\nallow = \"one\"\n[[assign]]\n"
                                "kind = \"Lights\"\n");
    folder_.write("x/b.toml", "include = \"y/c.toml\"\nallow = \"two\"\n");
    const Recipe found = recipe("include = \"x/b.toml\"\n");
    EXPECT_THAT(found.assignments, SizeIs(1));
    EXPECT_EQ(found.macros, "deep.inc");
    EXPECT_THAT(found.allow, ElementsAre("one", "two"));
}

TEST_F(SharedRecipe, AFileIncludedTwiceOrByItselfIsAnError) {
    folder_.write("a.toml", "[[assign]]\nkind = \"Lights\"\n");
    EXPECT_EQ(error("include = [\"a.toml\", \"./a.toml\"]\n"),
              "airport.toml:1:22: \"include\" names a file that is read already: a.toml\n"
              "include = [\"a.toml\", \"./a.toml\"]\n"
              "                     ^");
    EXPECT_THAT(error("include = \"airport.toml\"\n[[assign]]\nkind = \"Lights\"\n"),
                HasSubstr("\"include\" names a file that is read already: airport.toml"));
    folder_.write("b.toml", "\ninclude = \"airport.toml\"\n");
    EXPECT_THAT(error("include = \"b.toml\"\n[[assign]]\nkind = \"Lights\"\n"),
                AllOf(HasSubstr("b.toml:2:11: "), HasSubstr("read already: airport.toml")));
}

TEST_F(SharedRecipe, AMissingIncludeIsAnErrorOfItsLine) {
    EXPECT_THAT(error("# shared\ninclude = \"none.toml\"\n[[assign]]\nkind = \"Lights\"\n"),
                AllOf(HasSubstr("airport.toml:2:11: "),
                      HasSubstr("\"include\" names no file: there is no none.toml")));
    // Whoever watches the recipe waits for it.
    EXPECT_THAT(read("include = \"none.toml\"\n[[assign]]\nkind = \"Lights\"\n").files,
                ::testing::Contains(folder_.file("none.toml")));
}

TEST_F(SharedRecipe, ErrorsOfAnIncludedFileNameThatFile) {
    folder_.write("a.toml", "[[assign]]\nkind = \"Lights\"\nLightInt = 5\n");
    EXPECT_THAT(error("include = \"a.toml\"\n"),
                AllOf(HasSubstr("a.toml:3:12: \"LightInt\" must be text"),
                      ::testing::Not(HasSubstr("airport.toml"))));
}

TEST_F(SharedRecipe, ProblemsCarryTheirPlaces) {
    const RecipeReading reading = read("\n[[assign]]\nkind = 3\n");
    ASSERT_THAT(reading.problems, SizeIs(1));
    EXPECT_EQ(reading.problems[0], (Note{"\"kind\" must be text between quotes",
                                         folder_.file("airport.toml"),
                                         3,
                                         Severity::Error,
                                         {},
                                         8}));
}

} // namespace
} // namespace morvane
