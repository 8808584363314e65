// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/edit_recipe.h"
#include "recipe/parameter_keys.h"
#include "recipe_files.h"
#include "source/materials.h"
#include "support/thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace morvane {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

const std::string sample = "# Airport: lights and smoke.\n"
                           "\n"
                           "unique_labels = true # for the assembler\n"
                           "\n"
                           "[defaults.Lights]\n"
                           "LightVariable = \"beacnt\"\n"
                           "\n"
                           "# Apron lights, both sides.\n"
                           "[[assign]]\n"
                           "kind      = \"Lights\"      # steady\n"
                           "highlight = [\"Red\", \"Green\"]\n"
                           "\n"
                           "# Chimney.\n"
                           "[[assign]]\n"
                           "highlight = \"Blue\"\n"
                           "kind = \"Effects\"\n"
                           "lstEffectType = \"fx_smoke\"\n"
                           "\n"
                           "# That is all.\n";

RecipeFile file_of_text(const std::string& text) {
    RecipeFileReading reading = parse_recipe_file("airport.toml", text);
    EXPECT_THAT(reading.errors, IsEmpty());
    return reading.file.value_or(RecipeFile());
}

std::string replaced(std::string text, const std::string& old, const std::string& wanted) {
    return text.replace(text.find(old), old.size(), wanted);
}

TEST(EditRecipe, WithoutAChangeEveryByteStays) {
    for (const std::string& text : {sample, std::string("[[assign]]\r\nkind='Lights'")}) {
        const RecipeFile file = file_of_text(text);
        EXPECT_EQ(edit_recipe(file, file), text);
    }
}

TEST(EditRecipe, ChangesTopKeys) {
    const RecipeFile file = file_of_text(sample);
    RecipeFile wanted = file;
    wanted.unique_labels = false;
    wanted.macros = "morvane.inc";
    EXPECT_EQ(edit_recipe(file, wanted),
              replaced(sample, "unique_labels = true # for the assembler\n",
                       "unique_labels = false # for the assembler\n"
                       "macros        = \"morvane.inc\"\n"));
    wanted = file;
    wanted.unique_labels = std::nullopt;
    wanted.includes = {{"a.toml"}, {"b.toml"}};
    wanted.allow = {"skip-label"};
    EXPECT_EQ(edit_recipe(file, wanted),
              replaced(sample, "unique_labels = true # for the assembler\n",
                       "include       = [\"a.toml\", \"b.toml\"]\n"
                       "allow         = [\"skip-label\"]\n"));
}

TEST(EditRecipe, ChangesAParameterOfAnAssignment) {
    const RecipeFile file = file_of_text(sample);
    RecipeFile wanted = file;
    GivenParameters& given = wanted.assignments[0].given;
    given.values.lights.DayFlag = true;
    given.keys.push_back("DayFlag");
    wanted.assignments[1].given.values.effects.lstEffectType = "fx_fire";
    EXPECT_EQ(edit_recipe(file, wanted),
              replaced(replaced(sample, "\"Green\"]\n", "\"Green\"]\nDayFlag   = true\n"),
                       "\"fx_smoke\"", "\"fx_fire\""));
}

TEST(EditRecipe, KeepsTheCommentOfAnAssignmentWhoseSelectorsChange) {
    const RecipeFile file = file_of_text(sample);
    RecipeFile wanted = file;
    wanted.assignments[1].what.highlight = {"Cyan", "White"};
    wanted.assignments[1].what.optional = true;
    EXPECT_EQ(edit_recipe(file, wanted),
              replaced(replaced(sample, "\"Blue\"", "[\"Cyan\", \"White\"]"), "\"fx_smoke\"\n",
                       "\"fx_smoke\"\noptional      = true\n"));
}

TEST(EditRecipe, ChangesTheKindWithItsParameters) {
    const RecipeFile file = file_of_text(sample);
    RecipeFile wanted = file;
    wanted.assignments[1].what.kind = Kind::Windsock;
    wanted.assignments[1].given = {};
    EXPECT_EQ(edit_recipe(file, wanted),
              replaced(sample, "kind = \"Effects\"\nlstEffectType = \"fx_smoke\"\n",
                       "kind = \"Windsock\"\n"));
}

TEST(EditRecipe, AddsAndRemovesAssignments) {
    const RecipeFile file = file_of_text(sample);
    RecipeFile wanted = file;
    WrittenAssignment sock;
    sock.what.color = {"FF7F00"};
    sock.what.kind = Kind::Windsock;
    wanted.assignments.insert(wanted.assignments.begin() + 1, sock);
    const std::string with_sock = edit_recipe(file, wanted);
    EXPECT_EQ(with_sock,
              replaced(sample, "# Chimney.\n",
                       "[[assign]]\ncolor           = \"FF7F00\"\nkind            = \"Windsock\"\n"
                       "\n# Chimney.\n"));
    EXPECT_EQ(edit_recipe(file_of_text(with_sock), file), sample);
}

TEST(EditRecipe, ChangesDefaults) {
    const RecipeFile file = file_of_text(sample);
    RecipeFile wanted = file;
    GivenParameters& library = wanted.defaults_of(Kind::LibraryNew);
    library.values.library.libScale = "2";
    library.keys.push_back("libScale");
    wanted.defaults_of(Kind::Lights) = {};
    EXPECT_EQ(edit_recipe(file, wanted),
              replaced(replaced(sample, "LightVariable = \"beacnt\"\n", ""), "# Apron",
                       "[defaults.\"Library New\"]\nlibScale = \"2\"\n\n# Apron"));
}

TEST(EditRecipe, RefusesAListOfAssignmentsOnOneLine) {
    const RecipeFile file = file_of_text("assign = [{kind = \"Lights\"}]\n");
    RecipeFile wanted = file;
    wanted.assignments.emplace_back();
    EXPECT_EQ(test::thrown_by([&] { edit_recipe(file, wanted); }).code(),
              ErrorNumber::InvalidProcedureCall);
}

// Random changes: the text reads as what was wanted, and every comment of what stayed is there.
class RandomFiles {
  public:
    explicit RandomFiles(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t bound) { return random_() % bound; }

    WrittenAssignment assignment() {
        WrittenAssignment written;
        written.what.kind = all_kinds[below(all_kinds.size())];
        for (std::size_t i = below(3); i > 0; --i) {
            written.what.material.push_back(1 + below(300));
        }
        if (below(2) == 0) {
            written.what.highlight = {"Red"};
        }
        written.what.optional = below(4) == 0;
        written.given = given(written.what.kind);
        return written;
    }

    GivenParameters given(Kind kind) {
        GivenParameters given;
        for (const ParameterKey& key : parameter_keys(kind)) {
            if (below(3) != 0 || key.problem != nullptr) {
                continue;
            }
            given.keys.push_back(key.name);
            if (key.flag != nullptr) {
                key.flag(given.values) = below(2) == 0;
            } else {
                key.text(given.values) = std::string(below(3), '"') + "\xE9=#[";
            }
        }
        return given;
    }

    void change(RecipeFile& file) {
        std::vector<WrittenAssignment>& all = file.assignments;
        switch (below(6)) {
        case 0:
            all.insert(all.begin() + static_cast<std::ptrdiff_t>(below(all.size() + 1)),
                       assignment());
            break;
        case 1:
            if (!all.empty()) {
                all.erase(all.begin() + static_cast<std::ptrdiff_t>(below(all.size())));
            }
            break;
        case 2:
            if (!all.empty()) {
                all[below(all.size())] = assignment();
            }
            break;
        case 3:
            file.macros = below(2) == 0 ? std::nullopt : std::optional<std::string>("m.inc");
            break;
        case 4:
            file.unique_labels = below(2) == 0 ? std::nullopt : std::optional(below(2) == 0);
            break;
        default:
            const Kind kind = all_kinds[below(all_kinds.size())];
            file.defaults_of(kind) = given(kind);
        }
    }

  private:
    std::mt19937 random_;
};

TEST(EditRecipe, RandomChangesReadAsWhatWasWanted) {
    RandomFiles random(3);
    RecipeFile file = file_of_text(sample);
    for (int round = 0; round < 400; ++round) {
        RecipeFile wanted = file;
        for (std::size_t i = 1 + random.below(3); i > 0; --i) {
            random.change(wanted);
        }
        const std::string text = edit_recipe(file, wanted);
        if (text.find_first_not_of("\n") == std::string::npos || text.size() > 20000) {
            continue;
        }
        RecipeFileReading reading = parse_recipe_file("airport.toml", text);
        ASSERT_TRUE(reading.file) << text;
        ASSERT_TRUE(same_content(*reading.file, wanted)) << file.text << "\n---\n" << text;
        ASSERT_NE(text.find("# Airport: lights and smoke.\n"), std::string::npos) << text;
        ASSERT_NE(text.find("# That is all.\n"), std::string::npos) << text;
        file = *reading.file;
    }
}

class WithMade : public ::testing::Test {
  protected:
    WithMade() {
        add(4, "000001"); // red
        add(2, "000002"); // green
        add(1, "000003"); // blue
        add(3, "000004"); // cyan
    }

    void add(int highlight, const std::string& color) {
        Translation row;
        row.highlight = highlight_digits(highlight);
        row.color = color;
        row.processed = "Lights"; // they were: that is why there is something to write down
        set_.translations.push_back(row);
    }

    static Parameters lights(const std::string& intensity) {
        Parameters parameters;
        parameters.lights.LightVariable = "beacnt";
        parameters.lights.FlashMask = "2";
        parameters.lights.LightInt = intensity;
        return parameters;
    }

    std::string made(const std::string& text, const std::vector<MadeMaterial>& made) {
        const test::TempFolder folder;
        const std::string path = folder.write("airport.toml", text);
        const auto disk = make_system_disk();
        const RecipeReading recipe = read_recipe(*disk, path, "fx_first");
        EXPECT_THAT(recipe.errors, IsEmpty());
        const RecipeFileReading file = read_recipe_file(*disk, path);
        if (!recipe.recipe || !file.file) {
            return {};
        }
        const MadeRecipe result = with_made(set_, *file.file, *recipe.recipe, made);
        problems_ = result.problems;
        return edit_recipe(*file.file, result.file);
    }

    OpenSet set_;
    std::vector<Note> problems_;
};

TEST_F(WithMade, WhatTheFileSaysAlreadyStays) {
    Parameters smoke;
    smoke.effects.lstEffectType = "fx_smoke";
    EXPECT_EQ(made(sample, {{1, Kind::Lights, lights("100")},
                            {2, Kind::Lights, lights("100")},
                            {3, Kind::Effects, smoke}}),
              sample);
    EXPECT_EQ(made(sample, {}), sample);
}

TEST_F(WithMade, AnAssignmentWhoseMaterialsAllChangedIsChanged) {
    EXPECT_EQ(made(sample, {{1, Kind::Lights, lights("55")}, {2, Kind::Lights, lights("55")}}),
              replaced(sample, "\"Green\"]\n", "\"Green\"]\nLightInt  = \"55\"\n"));
}

TEST_F(WithMade, OneMaterialOfSeveralGetsAnAssignmentBefore) {
    EXPECT_EQ(made(sample, {{2, Kind::Lights, lights("55")}}),
              replaced(sample, "# Apron",
                       "[[assign]]\nhighlight       = \"Green\"\ncolor           = \"000002\"\n"
                       "kind            = \"Lights\"\nLightInt        = \"55\"\n\n# Apron"));
}

TEST_F(WithMade, ANewMaterialIsAppended) {
    EXPECT_EQ(made(sample, {{4, Kind::Windsock, {}}}),
              replaced(sample, "lstEffectType = \"fx_smoke\"\n",
                       "lstEffectType = \"fx_smoke\"\n\n[[assign]]\nhighlight       = \"Cyan\"\n"
                       "color           = \"000004\"\nkind            = \"Windsock\"\n"));
}

TEST_F(WithMade, WhatAnIncludedFileSaysIsAProblem) {
    const test::TempFolder folder;
    folder.write("edge.toml", "[[assign]]\nhighlight = \"Red\"\nkind = \"Lights\"\n");
    const std::string path = folder.write("airport.toml", "include = \"edge.toml\"\n");
    const auto disk = make_system_disk();
    const RecipeReading recipe = read_recipe(*disk, path, "");
    const RecipeFileReading file = read_recipe_file(*disk, path);
    ASSERT_TRUE(recipe.recipe && file.file);
    const MadeRecipe result =
        with_made(set_, *file.file, *recipe.recipe, {{1, Kind::Windsock, {}}});
    ASSERT_THAT(result.problems, SizeIs(1));
    EXPECT_EQ(result.problems[0].path, folder.file("edge.toml"));
    EXPECT_EQ(result.problems[0].line, 1U);
    EXPECT_EQ(edit_recipe(*file.file, result.file), "include = \"edge.toml\"\n");
}

} // namespace
} // namespace morvane
