// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe_files.h"
#include "same_recipe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace morvane {
namespace {

using test::read_recipe_text;

TEST(WriteRecipe, WritesSelectorsAndWhatIsNotAtItsDefault) {
    Assignment lights;
    lights.highlight = {"Red"};
    lights.color = {"FF7F00"};
    lights.material = {3};
    lights.parameters.lights.LightType = "LIGHT_NAV";
    lights.parameters.lights.DayFlag = true;
    Assignment windsock;
    windsock.kind = Kind::Windsock;
    EXPECT_EQ(write_recipe({{lights, windsock}, ""}),
              "# What becomes of each marked material. Apply it again with\n"
              "#     morvane-cli process BASE RECIPE\n"
              "\n"
              "[[assign]]\n"
              "highlight       = \"Red\"\n"
              "color           = \"FF7F00\"\n"
              "material        = 3\n"
              "kind            = \"Lights\"\n"
              "LightType       = \"LIGHT_NAV\"\n"
              "DayFlag         = true\n"
              "\n"
              "[[assign]]\n"
              "kind            = \"Windsock\"\n");
}

TEST(WriteRecipe, LeavesTheMaskOutThatGoesWithTheVariable) {
    Assignment lights;
    lights.parameters.lights.LightVariable = "beacnt";
    lights.parameters.lights.FlashMask = "2";
    EXPECT_THAT(write_recipe({{lights}, ""}), ::testing::Not(::testing::HasSubstr("FlashMask")));
    lights.parameters.lights.FlashMask = "CCCC";
    EXPECT_THAT(write_recipe({{lights}, ""}), ::testing::HasSubstr("FlashMask       = \"CCCC\"\n"));
}

TEST(WriteRecipe, WritesTheEffectWhateverTheListsFirstLineIs) {
    Assignment effects;
    effects.kind = Kind::Effects;
    effects.parameters.effects.lstEffectType = "";
    EXPECT_THAT(write_recipe({{effects}, ""}), ::testing::HasSubstr("lstEffectType   = \"\"\n"));
}

TEST(WriteRecipe, WritesControlCharactersAsTomlWantsThem) {
    Assignment effects;
    effects.kind = Kind::Effects;
    effects.parameters.effects.lstEffectType = "a\x01\x1F\x7F\"\\";
    EXPECT_THAT(write_recipe({{effects}, ""}),
                ::testing::HasSubstr("lstEffectType   = \"a\\u0001\\u001F\\u007F\\\"\\\\\"\n"));
}

class RandomRecipes {
  public:
    explicit RandomRecipes(unsigned seed) : random_(seed) {}

    Recipe recipe() {
        Recipe recipe;
        const std::size_t count = 1 + below(5);
        for (std::size_t i = 0; i < count; ++i) {
            recipe.assignments.push_back(assignment());
        }
        return recipe;
    }

  private:
    std::size_t below(std::size_t bound) {
        return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_);
    }

    // Any characters that stand on one line.
    std::string text(std::size_t length) {
        std::string result;
        while (result.size() < length) {
            const auto byte = static_cast<unsigned char>(below(256));
            if ((byte >= ' ' && byte != 0x7F) || byte == '\t') {
                result += static_cast<char>(byte);
            }
        }
        return result;
    }

    std::string value_for(std::string_view key) {
        if (key == "LightType") {
            return std::string(light_types[below(light_types.size())].text);
        }
        if (key == "LightVariable") {
            return std::string(flash_variables[below(flash_variables.size())].text);
        }
        return text(key == "fx_params" ? 40 : key == "ws_mastColor" ? 6 : below(12));
    }

    Assignment assignment() {
        constexpr std::array<std::string_view, 7> colors{"Blue",    "Green",  "Cyan", "Red",
                                                         "Magenta", "Yellow", "White"};
        Assignment result;
        if (below(2) == 0) {
            result.highlight = {std::string(colors[below(7)])};
        }
        if (below(2) == 0) {
            result.color = {"00FF7" + to_digit(below(16))};
        }
        if (below(2) == 0) {
            result.material = {1 + below(300)};
        }
        result.kind = all_kinds[below(all_kinds.size())];
        for (const ParameterKey& key : parameter_keys(result.kind)) {
            if (below(2) == 0) {
                if (key.flag != nullptr) {
                    key.flag(result.parameters) = true;
                } else {
                    key.text(result.parameters) = value_for(key.name);
                }
            }
        }
        return result;
    }

    static std::string to_digit(std::size_t value) { return {"0123456789ABCDEF"[value]}; }

    std::mt19937 random_;
};

TEST(WriteRecipe, ReadingItGivesTheSameRecipe) {
    RandomRecipes random(1);
    for (int round = 0; round < 500; ++round) {
        const Recipe written = random.recipe();
        const std::string text = write_recipe(written);
        const RecipeReading reading = read_recipe_text(text);
        ASSERT_TRUE(reading.recipe) << text << ::testing::PrintToString(reading.errors);
        ASSERT_EQ(reading.recipe->assignments.size(), written.assignments.size()) << text;
        for (std::size_t i = 0; i < written.assignments.size(); ++i) {
            ASSERT_TRUE(
                test::same_assignment(written.assignments[i], reading.recipe->assignments[i]))
                << text;
        }
    }
}

} // namespace
} // namespace morvane
