// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/apply_recipe.h"
#include "source/materials.h"
#include "source/open_set.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// A set with three marked materials of one triangle each: red, red and blue. The triangle lies
// flat, so that no windsock can stand on it.
class ApplyRecipe : public ::testing::Test {
  protected:
    void SetUp() override {
        std::vector<std::string> model{"MATERIAL_LIST_BEGIN"};
        for (const std::string highlight : {"1.0,0.0,0.0", "1.0,0.0,0.0", "0.0,0.0,1.0"}) {
            model.push_back("    MATERIAL_DEF 0.5,0.5,0.5,1.0,  0.5,0.5,0.5,  " + highlight +
                            ",  0.0,0.0,0.0,  0.0 ; m");
        }
        model.insert(model.end(), {"MATERIAL_LIST_END", "VERTEX_LIST_BEGIN"});
        for (const std::string x : {"0.0", "1.0", "4.0"}) {
            model.push_back("    VERTEX_DEF " + x + ",0.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; v");
        }
        model.emplace_back("VERTEX_LIST_END");
        for (const std::string number : {"0", "1", "2"}) {
            model.insert(model.end(),
                         {"    MATERIAL " + number + ",0 ; x", "    DRAW_TRI_BEGIN 0, 3",
                          "    DRAW_TRI    0,   1,   2 ; poly=0 part=0", "    DRAW_TRI_END"});
        }
        model.insert(model.end(), {"    BGL_RETURN", "BGL_END"});
        folder_.write("set_0.asm", test::crlf(model));
        folder_.write("set.asm", test::crlf({"    SCALE_AGL OBJ_END, 5, 40, 65536, 0100h, 0, "
                                             "0200h, 0, 0, 0"}));
        ASSERT_TRUE(open_source_set(services_, set_, folder_.file("set")));
        reporter_.messages.clear();
    }

    static Assignment assign(const std::string& highlight, Kind kind, std::size_t line) {
        Assignment assignment;
        assignment.highlight = {highlight};
        assignment.kind = kind;
        assignment.source_line = line;
        return assignment;
    }

    ApplyResult apply(const Recipe& recipe) {
        const RecipePlan plan = plan_recipe(set_, recipe);
        EXPECT_THAT(plan.errors, IsEmpty());
        return apply_recipe(services_, set_, recipe, plan);
    }

    test::TempFolder folder_;
    test::RecordingReporter reporter_;
    std::unique_ptr<Disk> disk_ = make_system_disk();
    Services services_{*disk_, reporter_};
    OpenSet set_;
};

std::vector<std::string> new_code_of(const OpenSet& set) {
    std::vector<std::string> code;
    for (const Replacement& replacement : set.replacements) {
        code.insert(code.end(), replacement.code.begin(), replacement.code.end());
    }
    return code;
}

TEST_F(ApplyRecipe, ProcessesEveryStepAndTellsWhatIsLeft) {
    Assignment red = assign("Red", Kind::Lights, 1);
    red.parameters.lights.LightInt = "77";
    const ApplyResult result = apply({{red}, "a.toml"});
    EXPECT_TRUE(result.ok);
    ASSERT_THAT(result.processed, SizeIs(2));
    EXPECT_EQ(result.processed[0].row, 1U);
    EXPECT_EQ(result.processed[1].row, 2U);
    EXPECT_EQ(result.processed[1].kind, Kind::Lights);
    EXPECT_EQ(set_.translation(1).processed, "Lights");
    EXPECT_EQ(set_.translation(2).processed, "Lights");
    EXPECT_EQ(set_.translation(3).processed, "");
    EXPECT_THAT(new_code_of(set_), ::testing::Contains(HasSubstr(" 77 ,0.4,")));
    const std::vector<std::string> messages = reporter_.plain_messages();
    EXPECT_THAT(messages,
                ElementsAre("Lines of new code : " + std::to_string(result.processed[0].lines),
                            "Lines of new code : " + std::to_string(result.processed[1].lines),
                            "Materials left as they are : 1"));
}

TEST_F(ApplyRecipe, UsesTheParametersOfEachAssignment) {
    Assignment effect = assign("Blue", Kind::Effects, 1);
    effect.parameters.effects.lstEffectType = "fx_fire";
    const ApplyResult result = apply({{effect, assign("Red", Kind::LibraryNew, 4)}, "a.toml"});
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(set_.translation(3).processed, "Effects");
    EXPECT_EQ(set_.translation(1).processed, "Library New");
    EXPECT_THAT(new_code_of(set_), ::testing::Contains(HasSubstr("\"fx_fire\"")));
    EXPECT_EQ(reporter_.messages.back(), "Materials left as they are : 0");
}

TEST_F(ApplyRecipe, StopsAtTheFirstThatFails) {
    const ApplyResult result =
        apply({{assign("Red", Kind::Lights, 1), assign("Blue", Kind::Windsock, 5)}, "a.toml"});
    EXPECT_FALSE(result.ok);
    EXPECT_THAT(result.processed, SizeIs(2));
    EXPECT_THAT(reporter_.boxes, SizeIs(1)); // the windsock's own
    EXPECT_EQ(reporter_.messages.back(),
              "Note: a.toml:5: " + full_name(set_.translation(3)) + " was not processed.");
}

} // namespace
} // namespace morvane
