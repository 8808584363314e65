// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/apply_recipe.h"
#include "source/materials.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int blue = 1;
constexpr int green = 2;
constexpr int red = 4;

// Marked materials, each by its highlight and its own colour.
OpenSet set_of(const std::vector<std::pair<int, std::string>>& materials) {
    OpenSet set;
    for (const auto& [highlight, color] : materials) {
        Translation row;
        row.highlight = highlight_digits(highlight);
        row.color = color;
        set.translations.push_back(row);
    }
    return set;
}

Assignment assign(const std::optional<std::string>& highlight,
                  const std::optional<std::string>& color = {},
                  std::optional<std::size_t> material = {}) {
    Assignment assignment;
    if (highlight) {
        assignment.highlight.push_back(*highlight);
    }
    if (color) {
        assignment.color.push_back(*color);
    }
    if (material) {
        assignment.material.push_back(*material);
    }
    assignment.source_line = 10;
    return assignment;
}

TEST(PlanRecipe, TakesAssignmentsInTheirOrderAndMaterialsInListOrder) {
    const OpenSet set = set_of({{red, "000001"}, {blue, "000002"}, {red, "000003"}});
    const RecipePlan plan = plan_recipe(set, {{assign("Blue"), assign("Red")}, "a.toml"});
    EXPECT_THAT(plan.errors, IsEmpty());
    EXPECT_THAT(plan.steps, ElementsAre(PlannedStep{0, 2}, PlannedStep{1, 1}, PlannedStep{1, 3}));
    EXPECT_EQ(plan.left, 0U);
}

TEST(PlanRecipe, AllSelectorsThatAreGivenMustHold) {
    const OpenSet set = set_of({{red, "AA0000"}, {blue, "AA0000"}, {red, "BB0000"}});
    EXPECT_THAT(plan_recipe(set, {{assign("Red", "AA0000")}, ""}).steps,
                ElementsAre(PlannedStep{0, 1}));
    EXPECT_THAT(plan_recipe(set, {{assign({}, "AA0000")}, ""}).steps,
                ElementsAre(PlannedStep{0, 1}, PlannedStep{0, 2}));
    EXPECT_THAT(plan_recipe(set, {{assign({}, {}, 3)}, ""}).steps, ElementsAre(PlannedStep{0, 3}));
    EXPECT_THAT(plan_recipe(set, {{assign("Blue", {}, 1)}, "a.toml"}).errors,
                ElementsAre("a.toml:10: this assignment (highlight Blue, material 1) "
                            "matches no unprocessed material."));
}

TEST(PlanRecipe, WithoutASelectorItTakesAllThatAreLeft) {
    const OpenSet set = set_of({{red, "0"}, {blue, "0"}, {green, "0"}});
    EXPECT_THAT(plan_recipe(set, {{assign("Blue"), assign({})}, ""}).steps,
                ElementsAre(PlannedStep{0, 2}, PlannedStep{1, 1}, PlannedStep{1, 3}));
}

TEST(PlanRecipe, PassesOverProcessedMaterials) {
    OpenSet set = set_of({{red, "0"}, {red, "0"}, {blue, "0"}});
    set.translation(1).processed = "Lights";
    const RecipePlan plan = plan_recipe(set, {{assign("Red")}, ""});
    EXPECT_THAT(plan.steps, ElementsAre(PlannedStep{0, 2}));
    EXPECT_EQ(plan.left, 1U); // the blue one
}

TEST(PlanRecipe, AnAssignmentThatGetsNothingIsAnError) {
    const OpenSet set = set_of({{red, "0"}, {red, "0"}});
    const RecipePlan plan = plan_recipe(
        set, {{assign("Red"), assign("Red"), assign({}, {}, 2), assign("Cyan")}, "a.toml"});
    EXPECT_THAT(
        plan.errors,
        ElementsAre("a.toml:10: this assignment (highlight Red) matches no unprocessed "
                    "material: the 2 that match are processed already or named by assignments "
                    "before.",
                    "a.toml:10: this assignment (material 2) matches no unprocessed "
                    "material: the one that matches is processed already or named by an "
                    "assignment before.",
                    "a.toml:10: this assignment (highlight Cyan) matches no unprocessed "
                    "material."));
}

TEST(PlanRecipe, AMaterialThatIsNotInTheListIsAnErrorThatTellsHowManyThereAre) {
    EXPECT_THAT(

        plan_recipe(set_of({{red, "0"}, {red, "0"}}), {{assign({}, {}, 3)}, "a.toml"}).errors,
        ElementsAre("a.toml:10: there is no material 3: the list has 2 entries."));
    EXPECT_THAT(plan_recipe(set_of({{red, "0"}}), {{assign({}, {}, 2)}, "a.toml"}).errors,
                ElementsAre("a.toml:10: there is no material 2: the list has 1 entry."));
}

TEST(PlanRecipe, AListTakesWhatMatchesAnyOfItsValues) {
    const OpenSet set = set_of({{red, "000001"}, {blue, "000002"}, {green, "000003"}});
    Assignment either;
    either.highlight = {"Green", "Red"};
    EXPECT_THAT(plan_recipe(set, {{either}, ""}).steps,
                ElementsAre(PlannedStep{0, 1}, PlannedStep{0, 3}));
    either.color = {"000002", "000003"};
    EXPECT_THAT(plan_recipe(set, {{either}, ""}).steps, ElementsAre(PlannedStep{0, 3}));
    either.material = {1, 2};
    EXPECT_THAT(plan_recipe(set, {{either}, "a.toml"}).errors,
                ElementsAre("a.toml:0: this assignment (highlight Green or Red, color 000002 "
                            "or 000003, material 1 or 2) matches no unprocessed material."));
}

TEST(PlanRecipe, AnOptionalAssignmentMayMatchNothing) {
    Assignment cyan = assign("Cyan");
    cyan.optional = true;
    const RecipePlan plan = plan_recipe(set_of({{red, "0"}}), {{cyan, assign("Red")}, "a.toml"});
    EXPECT_THAT(plan.errors, IsEmpty());
    EXPECT_THAT(plan.hints, IsEmpty());
    EXPECT_THAT(plan.steps, ElementsAre(PlannedStep{1, 1}));
}

TEST(PlanRecipe, AnErrorOfAnIncludedFileNamesThatFile) {
    Assignment cyan = assign("Cyan");
    cyan.source_file = "shared.toml";
    const RecipePlan plan = plan_recipe(set_of({{red, "0"}}), {{cyan}, "a.toml"});
    EXPECT_THAT(plan.errors, ElementsAre(::testing::StartsWith("shared.toml:10: ")));
    ASSERT_THAT(plan.problems, ::testing::SizeIs(1));
    EXPECT_EQ(plan.problems[0].path, "shared.toml");
    EXPECT_EQ(plan.problems[0].line, 10U);
}

std::string hint_of(const OpenSet& set, const Assignment& assignment) {
    const RecipePlan plan = plan_recipe(set, {{assignment}, "a.toml"});
    return plan.hints.size() == 1 ? place_and_text(plan.hints[0]) : "";
}

TEST(PlanRecipe, ThatMatchesNothingNamesTheNearestColors) {
    const OpenSet set =
        set_of({{red, "FF0000"}, {red, "102030"}, {blue, "112233"}, {green, "FFFFFF"}});
    EXPECT_EQ(hint_of(set, assign({}, "112234")),
              "a.toml:10: the nearest colours that are left: 112233 (Blue, material 3), 102030 "
              "(Red, material 2), FF0000 (Red, material 1) and 1 more; the list shows 112233 for "
              "what gmax shows as 112234, because it cuts off where gmax rounds");
    EXPECT_EQ(hint_of(set_of({{red, "FF0000"}}), assign("Cyan")),
              "a.toml:10: materials that are left: FF0000 (Red, material 1)");
}

TEST(PlanRecipe, SaysThatTheListCutsOffWhereGmaxRounds) {
    EXPECT_EQ(hint_of(set_of({{red, "803FBF"}}), assign("Red", "8040C0")),
              "a.toml:10: the nearest colours that are left: 803FBF (Red, material 1); the list "
              "shows 803FBF for what gmax shows as 8040C0, because it cuts off where gmax rounds");
    EXPECT_EQ(hint_of(set_of({{red, "803FBE"}}), assign("Red", "8040C0")),
              "a.toml:10: the nearest colours that are left: 803FBE (Red, material 1)");
    EXPECT_EQ(hint_of(set_of({{red, "8140C0"}}), assign("Red", "8040C0")),
              "a.toml:10: the nearest colours that are left: 8140C0 (Red, material 1)");
}

TEST(PlanRecipe, NamesNoColorsThatAreTaken) {
    const OpenSet set = set_of({{red, "FF0000"}});
    const RecipePlan plan = plan_recipe(set, {{assign("Red"), assign({}, "FF0001")}, "a.toml"});
    EXPECT_EQ(plan.errors.size(), 1U);
    EXPECT_THAT(plan.hints, IsEmpty());
}

} // namespace
} // namespace morvane
