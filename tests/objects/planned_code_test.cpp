// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/planned_code.h"
#include "objects/process.h"
#include "objects/random_set.h"
#include "source/open_set.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class PlannedCodeTest : public ::testing::Test {
  protected:
    // Row 1 is a standing triangle, row 2 a standing and then a flat one.
    void open(const std::string& end = "BGL_END") {
        folder.write(
            "set_0.asm",
            crlf({"MATERIAL_LIST_BEGIN",
                  "MATERIAL_DEF 1.0,0.5,0.0,1.0, 0,0,0, 1,0,0, 0,0,0, 0.0 ; x",
                  "MATERIAL_DEF 1.0,0.5,0.0,1.0, 0,0,0, 1,0,0, 0,0,0, 0.0 ; x", "MATERIAL_LIST_END",
                  "VERTEX_LIST_BEGIN", "VERTEX_DEF 0,0,0, 0,1,0, 0,0 ; x",
                  "VERTEX_DEF 1,10,0, 0,1,0, 0,0 ; x", "VERTEX_DEF 4,0,0, 0,1,0, 0,0 ; x",
                  "VERTEX_LIST_END", "MATERIAL 0,0 ; x", "DRAW_TRI_BEGIN 0, 3",
                  "DRAW_TRI 0, 1, 2 ; x", "DRAW_TRI_END", "MATERIAL 1,0 ; x", "DRAW_TRI_BEGIN 0, 3",
                  "DRAW_TRI 0, 1, 2 ; x", "DRAW_TRI 0, 0, 2 ; x", "DRAW_TRI_END", end}));
        folder.write("set.asm",
                     crlf({"    SCALE_AGL a,0,100,65536,0100h,0,0200h,0,0,0", "    END"}));
        ASSERT_TRUE(open_source_set(services, set, folder.file("set")));
    }

    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
    RecordingReporter reporter;
    Services services{*disk, reporter};
    OpenSet set;
};

TEST_F(PlannedCodeTest, NamesTheLinesThatWouldBeCommentedOutAndThePlaceOfTheCode) {
    open();
    const PlannedCode lights = plan_code(set, 1, Kind::Lights, {});
    EXPECT_EQ(lights.refusal, "");
    EXPECT_EQ(lights.before_line, 11U) << "after the line that selects the material";
    EXPECT_EQ(lights.first, 11U);
    EXPECT_EQ(lights.lines, 3U) << "the opening line, the triangle, the end";
    EXPECT_FALSE(lights.code.empty());
    EXPECT_EQ(plan_code(set, 1, Kind::Effects, {}).before_line, 20U) << "after BGL_END";
}

TEST_F(PlannedCodeTest, AFlatWindsockIsRefusedWithTheLinesBeforeIt) {
    open();
    const PlannedCode plan = plan_code(set, 2, Kind::Windsock, {});
    EXPECT_THAT(plan.refusal, HasSubstr("17"));
    EXPECT_THAT(plan.code, IsEmpty());
    EXPECT_EQ(plan.first, 15U);
    EXPECT_EQ(plan.lines, 2U);
}

TEST_F(PlannedCodeTest, WhatProcessRefusesIsRefusedInItsWords) {
    open("dd 0");
    const PlannedCode effects = plan_code(set, 1, Kind::Effects, {});
    EXPECT_EQ(effects.refusal, "Cannot find proper BGL END code. File cannot be processed.");
    EXPECT_EQ(effects.lines, 0U);
    Parameters parameters;
    parameters.library.libScale = "1e999";
    EXPECT_THAT(plan_code(set, 1, Kind::LibraryNew, parameters).refusal, HasSubstr("verflow"));
    EXPECT_NE(plan_code(set, 0, Kind::Lights, {}).refusal, "");
    EXPECT_NE(plan_code(set, 3, Kind::Lights, {}).refusal, "");
    ASSERT_TRUE(process_material(services, set, 1, Kind::Lights, {}).processed);
    EXPECT_NE(plan_code(set, 1, Kind::Lights, {}).refusal, "");
}

TEST_F(PlannedCodeTest, NoRoomIsARefusal) {
    open();
    set.replacements.resize(OpenSet::max_replacements);
    EXPECT_THAT(plan_code(set, 1, Kind::Lights, {}).refusal, HasSubstr("100 processed materials"));
    set.replacements.resize(1);
    set.replacements[0].code.resize(OpenSet::max_code_lines);
    EXPECT_THAT(plan_code(set, 1, Kind::Lights, {}).refusal, HasSubstr("50000 lines"));
}

// On random sets the plan is what Process then does, and making it changes nothing.
TEST(RandomPlannedCode, IsWhatProcessMakes) {
    constexpr unsigned runs = 200;
    for (unsigned seed = 1; seed <= runs; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        TempFolder folder;
        RandomSet random(seed);
        folder.write("set_0.asm", crlf(random.model()));
        folder.write("set.asm", crlf(random.frame()));
        const std::unique_ptr<Disk> disk = make_system_disk();
        RecordingReporter reporter;
        OpenSet set;
        ASSERT_TRUE(open_source_set({*disk, reporter}, set, folder.file("set")));
        for (std::size_t row = 1; row <= random.marked(); ++row) {
            const Kind kind = all_kinds.at(static_cast<std::size_t>(random.pick(0, 4)));
            const std::vector<std::string> before = all_lines(set.model);
            const std::size_t replacements = set.replacements.size();
            const PlannedCode plan = plan_code(set, row, kind, {});
            ASSERT_EQ(all_lines(set.model), before);
            ASSERT_EQ(set.replacements.size(), replacements);
            const bool processed =
                process_material({*disk, reporter}, set, row, kind, {}).processed;
            ASSERT_EQ(plan.refusal.empty(), processed) << plan.refusal;
            if (processed) {
                ASSERT_EQ(set.replacements.back().code, plan.code);
                ASSERT_EQ(set.replacements.back().before_line, plan.before_line);
            }
            const std::vector<std::string> after = all_lines(set.model);
            for (std::size_t line = 1; line <= before.size(); ++line) {
                const bool planned = line >= plan.first && line < plan.first + plan.lines;
                ASSERT_EQ(after[line - 1], planned ? "; " + before[line - 1] : before[line - 1])
                    << "line " << line;
            }
        }
    }
}

} // namespace
} // namespace morvane::test
