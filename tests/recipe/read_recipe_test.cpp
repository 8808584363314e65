// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/recipe.h"
#include "recipe_files.h"
#include "support/faulty_disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using test::read_recipe_text;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

Assignment only_assignment(std::string_view text) {
    const RecipeReading reading = read_recipe_text(text);
    EXPECT_THAT(reading.errors, IsEmpty());
    if (!reading.recipe || reading.recipe->assignments.size() != 1) {
        ADD_FAILURE() << "not one assignment";
        return {};
    }
    return reading.recipe->assignments[0];
}

// The error about a body of one assignment of a kind; line 3 is the body's first.
std::string error_in(std::string_view kind, std::string_view body) {
    const RecipeReading reading = read_recipe_text("[[assign]]\nkind = \"" + std::string(kind) +
                                                   "\"\n" + std::string(body) + "\n");
    EXPECT_FALSE(reading.recipe);
    EXPECT_THAT(reading.errors, SizeIs(1));
    return reading.errors.empty() ? "" : reading.errors[0];
}

TEST(ReadRecipe, TakesTheExampleOfTheGuide) {
    const Assignment assignment = only_assignment("# airport.toml\n"
                                                  "[[assign]]\n"
                                                  "highlight = \"Red\"\n"
                                                  "color     = \"FF7F00\"\n"
                                                  "material  = 3\n"
                                                  "kind      = \"Lights\"\n"
                                                  "LightType = \"LIGHT_STROBE\"\n");
    EXPECT_THAT(assignment.highlight, ElementsAre("Red"));
    EXPECT_THAT(assignment.color, ElementsAre("FF7F00"));
    EXPECT_THAT(assignment.material, ElementsAre(3U));
    EXPECT_EQ(assignment.kind, Kind::Lights);
    EXPECT_EQ(assignment.parameters.lights.LightType, "LIGHT_STROBE");
    EXPECT_EQ(assignment.source_line, 2U);
}

TEST(ReadRecipe, LeavesTheWindowsDefaults) {
    const Assignment lights = only_assignment("[[assign]]\nkind = \"Lights\"\n");
    EXPECT_THAT(lights.highlight, IsEmpty());
    EXPECT_THAT(lights.color, IsEmpty());
    EXPECT_THAT(lights.material, IsEmpty());
    EXPECT_EQ(lights.parameters.lights.LightType, "LIGHT_STROBE");
    EXPECT_EQ(lights.parameters.lights.LightInt, "100");
    EXPECT_EQ(lights.parameters.lights.LightAttnL, "0.4");
    EXPECT_EQ(lights.parameters.lights.LightAttS, "0.04");
    EXPECT_EQ(lights.parameters.lights.FlashMask, "CCCC");
    EXPECT_EQ(lights.parameters.lights.LightVariable, "");
    EXPECT_FALSE(lights.parameters.lights.DayFlag);
    EXPECT_FALSE(lights.parameters.lights.AircraftFlag);

    const EffectParameters effects =
        only_assignment("[[assign]]\nkind = \"Effects\"\n").parameters.effects;
    EXPECT_EQ(effects.lstEffectType, "fx_smoke");
    EXPECT_EQ(effects.fx_params, "MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;");
    EXPECT_FALSE(effects.fx_OTG);
    EXPECT_EQ(effects.fx_Terrain_alt, "0");
}

TEST(ReadRecipe, TakesEveryParameterOfEveryKind) {
    const LightParameters lights = only_assignment("[[assign]]\nkind = \"Lights\"\n"
                                                   "LightType = \"*LIGHT_PANEL*\"\n"
                                                   "LightInt = \"80\"\nLightAttnL = \"0.1\"\n"
                                                   "LightAttS = \"0.2\"\nFlashMask = \"F0F0\"\n"
                                                   "LightVariable = \"becon2\"\n"
                                                   "DayFlag = true\nAircraftFlag = true\n")
                                       .parameters.lights;
    EXPECT_EQ(lights.LightType, "*LIGHT_PANEL*");
    EXPECT_EQ(lights.LightInt, "80");
    EXPECT_EQ(lights.LightAttnL, "0.1");
    EXPECT_EQ(lights.LightAttS, "0.2");
    EXPECT_EQ(lights.FlashMask, "F0F0");
    EXPECT_EQ(lights.LightVariable, "becon2");
    EXPECT_TRUE(lights.DayFlag);
    EXPECT_TRUE(lights.AircraftFlag);

    const EffectParameters effects =
        only_assignment("[[assign]]\nkind = \"Effects\"\nlstEffectType = \"fx_fire\"\n"
                        "fx_params = \"MOY=03,10;DOM=01,31;HOD=20,05;MOH=00,59;\"\n"
                        "fx_OTG = true\nfx_Terrain_alt = \"1203\"\n")
            .parameters.effects;
    EXPECT_EQ(effects.lstEffectType, "fx_fire");
    EXPECT_EQ(effects.fx_params, "MOY=03,10;DOM=01,31;HOD=20,05;MOH=00,59;");
    EXPECT_TRUE(effects.fx_OTG);
    EXPECT_EQ(effects.fx_Terrain_alt, "1203");

    const WindsockParameters windsock =
        only_assignment(
            "[[assign]]\nkind = \"Windsock\"\nws_mastColor = \"909090\"\nws_lit = true\n")
            .parameters.windsock;
    EXPECT_EQ(windsock.ws_mastColor, "909090");
    EXPECT_TRUE(windsock.ws_lit);

    for (const std::string kind : {"Library", "Library New"}) {
        const Assignment assignment =
            only_assignment("[[assign]]\nkind = \"" + kind + "\"\nlibGUID = \"1h,2h,3h,4h\"\n" +
                            "libScale = \"2\"\nlib_OTG = true\nlib_Terrain_alt = \"7\"\n");
        EXPECT_EQ(kind_text(assignment.kind), kind);
        EXPECT_EQ(assignment.parameters.library.libGUID, "1h,2h,3h,4h");
        EXPECT_EQ(assignment.parameters.library.libScale, "2");
        EXPECT_TRUE(assignment.parameters.library.lib_OTG);
        EXPECT_EQ(assignment.parameters.library.lib_Terrain_alt, "7");
    }
}

TEST(ReadRecipe, SetsTheMaskThatTheDialogSetsForAVariable) {
    const auto mask = [](const std::string& body) {
        return only_assignment("[[assign]]\nkind = \"Lights\"\n" + body)
            .parameters.lights.FlashMask;
    };
    EXPECT_EQ(mask("LightVariable = \"six_second_beacon\"\n"), "0800");
    EXPECT_EQ(mask("LightVariable = \"second_flash\"\n"), "-1");
    EXPECT_EQ(mask("LightVariable = \"becon2\"\n"), "0100");
    EXPECT_EQ(mask("LightVariable = \"becon3\"\n"), "CCCC");
    EXPECT_EQ(mask("LightVariable = \"becon4\"\n"), "CCCC");
    EXPECT_EQ(mask("LightVariable = \"becon5\"\n"), "CCCC");
    EXPECT_EQ(mask("LightVariable = \"beacnt\"\n"), "2");
    EXPECT_EQ(mask("LightVariable = \"beacnt\"\nFlashMask = \"0\"\n"), "0");
}

TEST(ReadRecipe, AcceptsLowerCaseDigitsAndWindowsLineEnds) {
    const Assignment assignment =
        only_assignment("\xEF\xBB\xBF[[assign]]\r\ncolor = \"ff7f00\"\r\nkind = \"Lights\"\r\n");
    EXPECT_THAT(assignment.color, ElementsAre("FF7F00"));
}

TEST(ReadRecipe, TurnsTextIntoWindows1252) {
    EXPECT_EQ(only_assignment("[[assign]]\nkind = \"Effects\"\nlstEffectType = \"fx_\xC3\xA9t\xC3"
                              "\xA9\"\n")
                  .parameters.effects.lstEffectType,
              "fx_\xE9t\xE9");
    EXPECT_EQ(error_in("Effects", "lstEffectType = \"fx_\xC5\x88\""),
              "airport.toml:3:17: \"lstEffectType\" holds the character \"\xC5\x88\", which "
              "source files (Windows-1252) cannot hold\n"
              "lstEffectType = \"fx_\xC5\x88\"\n"
              "                ^");
}

TEST(ReadRecipe, NamesTheNearestKeyOfATypo) {
    EXPECT_EQ(error_in("Lights", "  LigthType = \"LIGHT_NAV\""),
              "airport.toml:3:3: unknown key \"LigthType\" (did you mean \"LightType\"?)\n"
              "  LigthType = \"LIGHT_NAV\"\n"
              "  ^");
    EXPECT_THAT(error_in("Lights", "hilight = \"Red\""), HasSubstr("did you mean \"highlight\"?"));
    EXPECT_THAT(error_in("Windsock", "Size = \"3\""),
                HasSubstr("unknown key \"Size\" (there are: highlight, color, material, kind, "
                          "optional, ws_mastColor, ws_lit)"));
}

TEST(ReadRecipe, PutsTheCaretUnderThePlaceBehindTabsAndAccents) {
    EXPECT_EQ(error_in("Lights", "\tLightInt = 100 # g\xC3\xBCltig"),
              "airport.toml:3:13: \"LightInt\" must be text between quotes\n"
              "\tLightInt = 100 # g\xC3\xBCltig\n"
              "\t           ^");
}

TEST(ReadRecipe, RefusesKeysOfAnotherKind) {
    EXPECT_THAT(error_in("Lights", "ws_lit = true"),
                HasSubstr("\"ws_lit\" belongs to the kind \"Windsock\", not to \"Lights\""));
    EXPECT_THAT(error_in("Windsock", "libScale = \"1\""), HasSubstr("the kind \"Library\""));
}

TEST(ReadRecipe, RefusesWrongTypes) {
    EXPECT_THAT(error_in("Lights", "LightInt = 100"), HasSubstr("must be text between quotes"));
    EXPECT_THAT(error_in("Lights", "DayFlag = \"true\""),
                HasSubstr("\"DayFlag\" must be true or false, without quotes"));
    EXPECT_THAT(error_in("Lights", "DayFlag = 1"), HasSubstr("must be true or false"));
    EXPECT_THAT(error_in("Lights", "LightInt = { a = 1 }"), HasSubstr("must be text"));
    EXPECT_THAT(error_in("Lights", "LightInt.a = 1"), HasSubstr("must be text"));
    EXPECT_THAT(error_in("Lights", "material = \"3\""),
                HasSubstr("\"material\" must be a whole number from 1 to 300, without quotes"));
    EXPECT_THAT(error_in("Lights", "material = 0"), HasSubstr("from 1 to 300"));
    EXPECT_THAT(error_in("Lights", "material = 1.0"), HasSubstr("from 1 to 300"));
    EXPECT_THAT(error_in("Lights", "highlight = [[\"Red\"]]"), HasSubstr("must be text"));
    EXPECT_THAT(error_in("Lights", "color = 123456"), HasSubstr("\"color\" must be text"));
}

TEST(ReadRecipe, RefusesWhatTheDialogsRefuse) {
    EXPECT_THAT(error_in("Effects", "fx_params = \"MOY=01,12;\""),
                HasSubstr("\"fx_params\" must be 40 characters long, not 10"));
    EXPECT_THAT(error_in("Windsock", "ws_mastColor = \"FFF\""),
                HasSubstr("\"ws_mastColor\" must be 6 characters long, not 3"));
    EXPECT_THAT(error_in("Lights", "LightType = \"LIGHT_STROB\""),
                HasSubstr("\"LightType\" is not in its list (did you mean \"LIGHT_STROBE\"?)"));
    EXPECT_THAT(error_in("Lights", "LightType = \"PANEL*A/C ONLY*\""),
                HasSubstr("is not in its list"));
    EXPECT_THAT(error_in("Lights", "LightVariable = \"beacon3\""),
                HasSubstr("\"LightVariable\" is not in its list (did you mean \"becon3\"?)"));
    EXPECT_THAT(error_in("Lights", "LightInt = \"\"\"1\n2\"\"\""), HasSubstr("on one line"));
}

TEST(ReadRecipe, CountsLengthsInCharacters) {
    const std::string forty = "MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,5\xC3\xBC;";
    EXPECT_EQ(only_assignment("[[assign]]\nkind = \"Effects\"\nfx_params = \"" + forty + "\"\n")
                  .parameters.effects.fx_params.size(),
              40U);
}

TEST(ReadRecipe, RefusesUnknownColours) {
    EXPECT_THAT(error_in("Lights", "highlight = \"red\""),
                HasSubstr("\"highlight\" is none of the seven colours (did you mean \"Red\"?)"));
    EXPECT_THAT(error_in("Lights", "highlight = \"Orange\""),
                HasSubstr("(there are: Blue, Green, Cyan, Red, Magenta, Yellow, White)"));
    EXPECT_THAT(error_in("Lights", "color = \"FF7F0\""), HasSubstr("six hexadecimal digits"));
    EXPECT_THAT(error_in("Lights", "color = \"FF7F0G\""), HasSubstr("six hexadecimal digits"));
}

TEST(ReadRecipe, RefusesAMissingOrUnknownKind) {
    const RecipeReading missing = read_recipe_text("\n[[assign]]\nhighlight = \"Red\"\n");
    ASSERT_THAT(missing.errors, SizeIs(1));
    EXPECT_EQ(missing.errors[0],
              "airport.toml:2:1: \"kind\" is missing (there are: Lights, Effects, Library, "
              "Library New, Windsock)\n"
              "[[assign]]\n"
              "^");
    const RecipeReading unknown = read_recipe_text("[[assign]]\nkind = \"Light\"\n");
    ASSERT_THAT(unknown.errors, SizeIs(1));
    EXPECT_THAT(
        unknown.errors[0],
        HasSubstr("airport.toml:2:8: \"kind\" is no kind of object (did you mean \"Lights\"?)"));
}

TEST(ReadRecipe, RefusesAnythingOutsideOfAssignments) {
    EXPECT_THAT(read_recipe_text("kind = \"Lights\"\n").errors,
                ElementsAre(HasSubstr("unknown key \"kind\" outside of [[assign]]")));
    EXPECT_THAT(
        read_recipe_text("[[asign]]\nkind = \"Lights\"\n").errors,
        ElementsAre(HasSubstr("airport.toml:1:3: unknown key \"asign\" outside of [[assign]] (did "
                              "you mean \"assign\"?)")));
    EXPECT_THAT(read_recipe_text("[assign]\nkind = \"Lights\"\n").errors,
                ElementsAre(HasSubstr("must be written with two brackets: [[assign]]")));
    EXPECT_THAT(read_recipe_text("assign = [1, 2]\n").errors,
                ElementsAre(HasSubstr("must be written with two brackets: [[assign]]")));
    EXPECT_THAT(read_recipe_text("# nothing yet\n").errors,
                ElementsAre(HasSubstr("there is no [[assign]] in this file")));
}

TEST(ReadRecipe, TakesAFileThatOnlyAcceptsProblems) {
    const RecipeReading reading = read_recipe_text("allow = [\"skip-label\"]\n");
    EXPECT_THAT(reading.errors, IsEmpty());
    ASSERT_TRUE(reading.recipe);
    EXPECT_THAT(reading.recipe->allow, ElementsAre("skip-label"));
    EXPECT_THAT(reading.recipe->assignments, IsEmpty());
}

TEST(ReadRecipe, TellsAllErrorsInTheOrderOfTheLines) {
    const RecipeReading reading = read_recipe_text("[[assign]]\n"
                                                   "kind = \"Windsock\"\n"
                                                   "zzz = 1\n"
                                                   "ws_lit = 1\n"
                                                   "aaa = 1\n"
                                                   "[[assign]]\n"
                                                   "kind = 3\n");
    EXPECT_THAT(reading.errors,
                ElementsAre(StartsWith("airport.toml:3:1: "), StartsWith("airport.toml:4:10: "),
                            StartsWith("airport.toml:5:1: "), StartsWith("airport.toml:7:8: ")));
}

TEST(ReadRecipe, ShowsAtMostFiftyErrors) {
    std::string text;
    for (int i = 0; i < 60; ++i) {
        text += "[[assign]]\n";
    }
    const RecipeReading reading = read_recipe_text(text);
    ASSERT_THAT(reading.errors, SizeIs(51));
    EXPECT_EQ(reading.errors[50], "airport.toml: 10 more errors are not shown.");
}

TEST(ReadRecipe, ShowsThePlaceWhereTheFileIsNoToml) {
    const RecipeReading reading = read_recipe_text("[[assign]]\nkind = Lights\n");
    ASSERT_THAT(reading.errors, SizeIs(1));
    EXPECT_THAT(reading.errors[0], StartsWith("airport.toml:2:8: "));
    EXPECT_THAT(reading.errors[0], HasSubstr("\nkind = Lights\n       ^"));
    EXPECT_THAT(read_recipe_text("[[assign]]\nkind = \"Lights\"\nkind = \"Effects\"\n").errors,
                ElementsAre(StartsWith("airport.toml:3:")));
}

TEST(ReadRecipe, HintsAtTheQuotesThatTextNeeds) {
    EXPECT_THAT(read_recipe_text("[[assign]]\nkind = Lights\n").errors,
                ElementsAre(HasSubstr("(text must be between double quotes, as in \"Red\")")));
}

TEST(ReadRecipe, HintsAtTheBackslashesOfAPath) {
    EXPECT_THAT(read_recipe_text("include = \"more\\lights.toml\"\n").errors,
                ElementsAre(HasSubstr("(in double quotes a backslash is written twice; ")));
}

TEST(ReadRecipe, RefusesTextThatIsNotUtf8) {
    EXPECT_THAT(read_recipe_text("[[assign]]\nkind = \"Lights\" # f\xFCr\n").errors,
                ElementsAre("airport.toml:2:20: this is not UTF-8 text; save the file with the "
                            "encoding UTF-8\n"
                            "kind = \"Lights\" # f\xC3\xBCr\n"
                            "                   ^"));
}

TEST(ReadRecipe, RefusesWhatIsNoRecipeAtAll) {
    const test::TempFolder folder;
    const auto disk = make_system_disk();
    const auto errors = [&](const std::string& path) {
        const RecipeReading reading = read_recipe(*disk, path, "");
        EXPECT_FALSE(reading.recipe);
        return reading.errors;
    };
    const std::string missing = folder.file("none.toml");
    EXPECT_THAT(errors(missing), ElementsAre(missing + ": File not found."));
    EXPECT_THAT(errors(folder.path()),
                ElementsAre(folder.path() + ": this is a folder, not a recipe."));
    const std::string large = folder.write("large.toml", std::string(1024 * 1024 + 1, '\n'));
    EXPECT_THAT(errors(large),
                ElementsAre(large + ": the file is too large for a recipe (over 1 MiB)."));
    const std::string binary = folder.write("binary.toml", std::string("\0\1\2", 3));
    EXPECT_THAT(errors(binary), ElementsAre(StartsWith(binary + ":1:1: ")));
}

TEST(ReadRecipe, RefusesDeepNesting) {
    const auto repeat = [](std::string_view text, int times) {
        std::string result;
        for (int i = 0; i < times; ++i) {
            result += text;
        }
        return result;
    };
    for (const std::string& text : {"a = " + repeat("[", 300000), "a = " + repeat("{a=", 100000),
                                    repeat("a.", 200000) + "a=1", "[" + repeat("a.", 200000) + "a]",
                                    "a = {" + repeat("a.", 200000) + "a=1}"}) {
        EXPECT_THAT(read_recipe_text(text).errors, SizeIs(1)) << text.substr(0, 20);
    }
}

TEST(ReadRecipe, CutsLongMessagesAndKeepsControlCharactersOut) {
    const std::string long_key(100000, 'k');
    const std::vector<std::string> errors =
        read_recipe_text("[[assign]]\nkind = \"Lights\"\n" + long_key +
                         " = 1\n\"\\u001b[2J\" = 1\n")
            .errors;
    ASSERT_THAT(errors, SizeIs(2));
    EXPECT_LT(errors[0].size(), 1000U);
    EXPECT_THAT(errors[0], ::testing::HasSubstr(" ...\n"));
    EXPECT_THAT(errors[1], ::testing::HasSubstr("\"?[2J\""));
    EXPECT_EQ(errors[1].find('\x1B'), std::string::npos);
}

TEST(ReadRecipe, TellsAFailingDisk) {
    const test::TempFolder folder;
    const std::string path = folder.write("a.toml", "[[assign]]\nkind = \"Lights\"\n");
    test::FaultyDisk disk;
    disk.fail_at(1, ErrorNumber::DeviceIo);
    EXPECT_THAT(read_recipe(disk, path, "").errors, ElementsAre(path + ": Device I/O error."));
}

} // namespace
} // namespace morvane
