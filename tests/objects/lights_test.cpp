// SPDX-License-Identifier: GPL-3.0-or-later
#include "set_fixture.h"

#include <gmock/gmock.h>

#include <string_view>
#include <utility>
#include <vector>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

const std::string first_light = "    BGL_LIGHT LIGHT_STROBE, 0.000000, 0.000000, 0.000000, 100 "
                                ",0.4, 0.04, 0FFFF8000h, 0.000000, 1.000000, 0.000000";

class LightsTest : public SetTest {
  protected:
    void SetUp() override {
        MadeMaterial plain;
        plain.triangles = {"0, 1, 2", "1, 2, 0"};
        open(make_model({plain, plain, plain}));
        parameters.lights.LightVariable = "beacnt";
    }
};

TEST_F(LightsTest, DayFormOfTheThirdMaterial) {
    parameters.lights.DayFlag = true;
    const ProcessResult result = process(3, Kind::Lights);
    EXPECT_EQ(result.lines, 3U);
    EXPECT_THAT(
        new_code(),
        ElementsAre("    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL", "    IFIN1 LBL3b, tod, 1,1",
                    "    BGL_JUMP_32 LBL3a", "LBL3b label BGLCODE",
                    "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL", "    IFMSK LBL3,beacnt, 0CCCCh",
                    "    BGL_JUMP_32 LBL3a", "LBL3 label BGLCODE", first_light,
                    "    BGL_LIGHT LIGHT_STROBE, 1.000000, 10.000000, 0.000000, 100 ,0.4, 0.04, "
                    "0FFFF8000h, 0.000000, 1.000000, 0.000000",
                    "LBL3a label BGLCODE"));
}

TEST_F(LightsTest, NeitherFlagLeavesTheFirstLineAsItIs) {
    process(1, Kind::Lights);
    EXPECT_EQ(new_code().at(0), "");
    EXPECT_EQ(new_code().at(1), ";");
    EXPECT_EQ(new_code().at(2), ";");
    EXPECT_EQ(new_code().at(5), "    IFMSK LBL1,beacnt, 0CCCCh");
    EXPECT_EQ(new_code().at(6), "    BGL_JUMP_32 LBL1a");
}

TEST_F(LightsTest, AircraftFormTestsTheSwitchBit) {
    parameters.lights.AircraftFlag = true;
    process(2, Kind::Lights);
    EXPECT_EQ(new_code().at(0), ";   No globals needed !!!! ");
    EXPECT_EQ(new_code().at(1), "    IFMSK LBL2a, dict_g_lightStates , 16");
    EXPECT_EQ(new_code().at(2), ";");
    EXPECT_EQ(new_code().at(5), "    IFMSK LBL2a,beacnt, 0CCCCh");
    EXPECT_EQ(new_code().at(6), ";");
}

TEST_F(LightsTest, BothFlagsMixTheDayFormAndTheAircraftForm) {
    parameters.lights.DayFlag = true;
    parameters.lights.AircraftFlag = true;
    process(1, Kind::Lights);
    EXPECT_EQ(new_code().at(0), "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL");
    EXPECT_EQ(new_code().at(1), "    IFIN1 LBL1b, tod, 1,1");
    EXPECT_EQ(new_code().at(2), "    BGL_JUMP_32 LBL1a");
    EXPECT_EQ(new_code().at(5), "    IFMSK LBL1a,beacnt, 0CCCCh");
    EXPECT_EQ(new_code().at(6), ";");
}

TEST_F(LightsTest, AMaskOfMinusOneIsWrittenAsItStands) {
    parameters.lights.FlashMask = "-1";
    process(1, Kind::Lights);
    EXPECT_EQ(new_code().at(5), "    IFMSK LBL1,beacnt, 0-1h");
}

TEST_F(LightsTest, ThePanelLightIsWrittenWithItsStarsAndBitZero) {
    parameters.lights.LightType = "*LIGHT_PANEL*";
    parameters.lights.AircraftFlag = true;
    process(1, Kind::Lights);
    EXPECT_EQ(new_code().at(1), "    IFMSK LBL1a, dict_g_lightStates , 0");
    EXPECT_EQ(new_code().at(8).rfind("    BGL_LIGHT *LIGHT_PANEL*, ", 0), 0U);
}

TEST_F(LightsTest, EmptyTextsBecomeEmptyOperands) {
    parameters.lights = {"LIGHT_NAV", "", "", "", "", "", false, false};
    process(1, Kind::Lights);
    EXPECT_EQ(new_code().at(5), "    IFMSK LBL1,, 0h");
    EXPECT_EQ(new_code().at(8),
              "    BGL_LIGHT LIGHT_NAV, 0.000000, 0.000000, 0.000000,  ,, , 0FFFF8000h, 0.000000, "
              "1.000000, 0.000000");
}

TEST(LightTypes, SwitchBitsSkip32) {
    std::vector<std::pair<std::string_view, int>> entries;
    for (const LightTypeEntry& entry : light_types) {
        entries.emplace_back(entry.text, entry.switch_bit);
        EXPECT_EQ(light_switch_bit(entry.text), entry.switch_bit);
    }
    EXPECT_THAT(entries, ElementsAre(Pair("LIGHT_NAV", 1), Pair("LIGHT_BEACON", 2),
                                     Pair("LIGHT_LANDING", 4), Pair("LIGHT_TAXI", 8),
                                     Pair("LIGHT_STROBE", 16), Pair("LIGHT_RECOGNITION", 64),
                                     Pair("LIGHT_WING", 128), Pair("LIGHT_LOGO", 256),
                                     Pair("LIGHT_NONE", 0), Pair("*LIGHT_PANEL*", 0)));
    EXPECT_EQ(light_switch_bit("LIGHT_OF_NO_KIND"), 0);
    EXPECT_EQ(dialog_panel_light_type.text, "PANEL*A/C ONLY*");
    EXPECT_EQ(dialog_panel_light_type.switch_bit, 32);
}

} // namespace
} // namespace morvane::test
