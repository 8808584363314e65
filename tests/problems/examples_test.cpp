// SPDX-License-Identifier: GPL-3.0-or-later

// Whole sets: one with defects in many lines, and the examples, which have none.

#include "objects/save.h"
#include "problems/problem_fixture.h"
#include "recipe/apply_recipe.h"
#include "support/source_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <sstream>

namespace morvane::test {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

class WholeSets : public ProblemTest {
  protected:
    void take(const std::string& from) {
        fs::copy(source_folder() + "/" + from, folder.path(), fs::copy_options::recursive);
    }
    void check(const std::string& base) {
        set = open_for_check(*disk, folder.file(base)).set;
        found();
    }
    /// Errors and warnings, each once: "SEVERITY CODE".
    std::vector<std::string> bad() const {
        std::vector<std::string> result;
        for (const Problem& problem : problems) {
            if (problem.severity != Severity::Note) {
                result.push_back((problem.severity == Severity::Error ? "error " : "warning ") +
                                 problem.code + ": " + problem.text);
            }
        }
        return result;
    }
    void plan_by(const std::string& recipe_file) {
        const RecipeReading reading = read_recipe(*disk, folder.file(recipe_file), "");
        ASSERT_TRUE(reading.recipe);
        for (const PlannedStep& step : plan_recipe(set, *reading.recipe).steps) {
            const Assignment& assignment = reading.recipe->assignments[step.assignment];
            planned.push_back({step.row, assignment.kind, assignment.parameters, "recipe", 1});
        }
    }
};

// "NAME:LINE CODE" for every "!CODE" in a comment.
std::vector<std::string> marked_defects(const std::string& name, const std::string& text) {
    static const std::regex mark("!([a-z-]+)");
    std::vector<std::string> defects;
    std::istringstream lines(text);
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        for (std::sregex_iterator at(line.begin(), line.end(), mark), end; at != end; ++at) {
            defects.push_back(name + ":" + std::to_string(number) + " " + (*at)[1].str());
        }
    }
    return defects;
}

TEST_F(WholeSets, EveryDefectIsReportedAtItsLineAndNothingElse) {
    take("tests/problems/defects");
    std::vector<std::string> expected;
    for (const char* name : {"defects.asm", "defects_0.asm"}) {
        const std::vector<std::string> defects = marked_defects(name, folder.read(name));
        expected.insert(expected.end(), defects.begin(), defects.end());
    }
    ASSERT_GE(expected.size(), 30U);
    set = open_for_check(*disk, folder.file("defects")).set;
    std::vector<std::string> seen = found();
    std::sort(seen.begin(), seen.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(seen, expected);
}

TEST_F(WholeSets, ExportsOfAnAircraftHaveNoErrors) {
    for (const char* base : {"complete", "fuselage", "wings_high", "wings_low", "shadow"}) {
        SCOPED_TRACE(base);
        if (!folder.has("complete.asm")) {
            take("examples/aircraft-flex");
        }
        check(base);
        EXPECT_THAT(bad(), IsEmpty());
    }
}

TEST_F(WholeSets, LibraryDesignsHaveNoErrors) {
    take("examples/library");
    for (const char* base : {"hangar", "fuel_tank", "light_mast"}) {
        SCOPED_TRACE(base);
        check(base);
        EXPECT_THAT(bad(), IsEmpty());
    }
}

class ExampleSets : public WholeSets, public testing::WithParamInterface<const char*> {};

TEST_P(ExampleSets, HaveNoErrorsAsTheyAreNorPlannedNorSaved) {
    const std::string name = GetParam();
    std::string base = name;
    std::replace(base.begin(), base.end(), '-', '_');
    take("examples/" + name);
    check(base);
    EXPECT_THAT(bad(), IsEmpty());

    saved_lines = false;
    plan_by(base + ".toml");
    found();
    EXPECT_THAT(bad(), testing::Each(testing::AnyOf(testing::StartsWith("warning place-off"),
                                                    testing::StartsWith("warning height-"))));
    EXPECT_EQ(problem("unprocessed-material").code, "");

    const RecipeReading reading = read_recipe(*disk, folder.file(base + ".toml"), "");
    const RecipePlan plan = plan_recipe(set, *reading.recipe);
    ASSERT_TRUE(apply_recipe(services, set, *reading.recipe, plan).ok);
    ASSERT_TRUE(save_set(services, set, folder.file(base)).saved);
    planned.clear();
    check(base);
    EXPECT_THAT(bad(), IsEmpty());
    EXPECT_EQ(problem("already-rewritten").severity, Severity::Note);
}

INSTANTIATE_TEST_SUITE_P(All, ExampleSets,
                         testing::Values("airport", "regional", "aircraft-lights",
                                         "aircraft-dictionary"));

class ProjectSets : public WholeSets, public testing::WithParamInterface<const char*> {};

// As the project makes them: with its macros, which its folder need not hold.
TEST_P(ProjectSets, HaveNoErrorsAsTheyAreNorAsProcessMakesThem) {
    const std::string name = GetParam();
    take("examples/project");
    fs::copy_file(source_folder() + "/share/morvane.inc", folder.file("exports/morvane.inc"));
    const std::string base = "exports/" + name;
    check(base);
    EXPECT_THAT(bad(), IsEmpty());
    RecipeReading reading = read_recipe(*disk, folder.file("recipes/" + name + ".toml"), "");
    ASSERT_TRUE(reading.recipe);
    reading.recipe->macros = "morvane.inc";
    const RecipePlan plan = plan_recipe(set, *reading.recipe);
    ASSERT_FALSE(plan.steps.empty());
    ASSERT_TRUE(apply_recipe(services, set, *reading.recipe, plan).ok);
    ASSERT_TRUE(save_set(services, set, folder.file(base)).saved);
    check(base);
    // The terminal's smoke comes after the line at which its export returns: a warning.
    EXPECT_THAT(bad(), testing::Each(testing::StartsWith("warning code-after-return")));
    EXPECT_EQ(problem("already-rewritten").severity, Severity::Note);
}

INSTANTIATE_TEST_SUITE_P(All, ProjectSets, testing::Values("apron", "terminal", "tower"));

} // namespace
} // namespace morvane::test
