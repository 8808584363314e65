// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/recipe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

OpenSet set_of(const std::vector<std::pair<std::string, std::string>>& colors) {
    OpenSet set;
    for (const auto& [highlight, color] : colors) {
        Translation row;
        row.highlight = highlight;
        row.color = color;
        set.translations.push_back(row);
    }
    return set;
}

TEST(RecordRecipe, NamesAMaterialByItsTwoColors) {
    const OpenSet set = set_of({{"0000FF", "FF8000"}, {"FF0000", "FF8000"}});
    const Recipe recipe = record_recipe(set, {{2, Kind::Windsock, {}}});
    ASSERT_EQ(recipe.assignments.size(), 1U);
    EXPECT_THAT(recipe.assignments[0].highlight, ElementsAre("Blue"));
    EXPECT_THAT(recipe.assignments[0].color, ElementsAre("FF8000"));
    EXPECT_THAT(recipe.assignments[0].material, IsEmpty());
    EXPECT_EQ(recipe.assignments[0].kind, Kind::Windsock);
}

TEST(RecordRecipe, AddsThePlaceWhereTheColorsFitAnotherMaterialToo) {
    const OpenSet set = set_of({{"0000FF", "FF8000"}, {"0000FF", "FF8000"}});
    Parameters parameters;
    parameters.lights.LightInt = "55";
    const Recipe recipe =
        record_recipe(set, {{2, Kind::Lights, parameters}, {1, Kind::Lights, {}}});
    ASSERT_EQ(recipe.assignments.size(), 2U);
    EXPECT_THAT(recipe.assignments[0].material, ElementsAre(2U));
    EXPECT_EQ(recipe.assignments[0].parameters.lights.LightInt, "55");
    EXPECT_THAT(recipe.assignments[1].material, ElementsAre(1U));
    EXPECT_THAT(recipe.assignments[1].highlight, ElementsAre("Red"));
}

} // namespace
} // namespace morvane::test
