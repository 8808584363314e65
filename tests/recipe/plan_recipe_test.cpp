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

Assignment assign(std::optional<std::string> highlight, std::optional<std::string> color = {},
                  std::optional<std::size_t> material = {}) {
    Assignment assignment;
    assignment.highlight = std::move(highlight);
    assignment.color = std::move(color);
    assignment.material = material;
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
                ElementsAre("a.toml, line 10: this assignment (highlight Blue, material 1) "
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
        ElementsAre("a.toml, line 10: this assignment (highlight Red) matches no unprocessed "
                    "material: the 2 that match are processed already or named by assignments "
                    "before.",
                    "a.toml, line 10: this assignment (material 2) matches no unprocessed "
                    "material: the one that matches is processed already or named by an "
                    "assignment before.",
                    "a.toml, line 10: this assignment (highlight Cyan) matches no unprocessed "
                    "material."));
}

TEST(PlanRecipe, AMaterialThatIsNotInTheListIsAnErrorThatTellsHowManyThereAre) {
    EXPECT_THAT(
        plan_recipe(set_of({{red, "0"}, {red, "0"}}), {{assign({}, {}, 3)}, "a.toml"}).errors,
        ElementsAre("a.toml, line 10: there is no material 3: the list has 2 entries."));
    EXPECT_THAT(plan_recipe(set_of({{red, "0"}}), {{assign({}, {}, 2)}, "a.toml"}).errors,
                ElementsAre("a.toml, line 10: there is no material 2: the list has 1 entry."));
}

} // namespace
} // namespace morvane
