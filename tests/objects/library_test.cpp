// SPDX-License-Identifier: GPL-3.0-or-later
#include "set_fixture.h"

#include <gmock/gmock.h>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;

constexpr const char* default_call =
    "    KZM_LIBRARY_CALL 05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h";

class LibraryTest : public SetTest {
  protected:
    void open_at(const std::string& vertex) {
        open(make_model({MadeMaterial(), MadeMaterial()}, {vertex + ", 0.0,1.0,0.0"}));
    }
    std::string skip_label(std::size_t row) const {
        return "SKIP_LIB" + std::to_string(set.translation(row).block.selecting_line + 3);
    }
};

TEST_F(LibraryTest, PlacesAsEffectsDoWithTheScaleWordInField4) {
    parameters.library.lib_OTG = true;
    open_at("0.0,0.0,0.0");
    EXPECT_EQ(process(1, Kind::Library).lines, 3U);
    EXPECT_THAT(new_code(), ElementsAre("    SCALE_AGL   " + skip_label(1) +
                                            ", 5, 40, 131072, 0100h, 16777, 0200h, 33554, 0, 0",
                                        default_call, skip_label(1) + "  label BGLCODE",
                                        "SKIP_LIB  label BGLCODE"));
}

TEST_F(LibraryTest, OffTheGroundItsOwnTerrainElevationCounts) {
    parameters.library.lib_Terrain_alt = "104";
    parameters.effects.fx_Terrain_alt = "9999";
    open_at("0.0,0.0,0.0");
    process(1, Kind::Library);
    EXPECT_TRUE(new_code().front().ends_with(", 0200h, 33554, 30, 31457")) << new_code().front();
    EXPECT_EQ(new_code().front().rfind("    SCALE   SKIP_LIB", 0), 0U);
}

TEST_F(LibraryTest, ScaleWords) {
    open_at("0.0,0.0,0.0");
    parameters.library.libScale = "1";
    process(1, Kind::Library);
    EXPECT_NE(new_code()[0].find(", 40, 65536, "), std::string::npos) << new_code()[0];
    parameters.library.libScale = "3";
    process(2, Kind::Library);
    EXPECT_NE(new_code()[4].find(", 40, 21845, "), std::string::npos) << new_code()[4];
}

TEST_F(LibraryTest, TwoMaterialsEndWithTheSameLabel) {
    open_at("0.0,0.0,0.0");
    process(1, Kind::Library);
    process(2, Kind::Library);
    EXPECT_EQ(new_code()[3], "SKIP_LIB  label BGLCODE");
    EXPECT_EQ(new_code()[7], "SKIP_LIB  label BGLCODE");
}

TEST_F(LibraryTest, AScaleOfZeroIsADivisionByZero) {
    parameters.library.libScale = "0";
    open_at("0.0,0.0,0.0");
    EXPECT_FALSE(process(1, Kind::Library).processed);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "Error : 11 :Division by zero");
    EXPECT_TRUE(process(1, Kind::LibraryNew).processed);
    EXPECT_EQ(new_code()[0],
              "    BGL_TRANSFORM_MAT 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0");
}

TEST_F(LibraryTest, NewStylePlacesByAMatrix) {
    open_at("1.5,0.0,-2.25");
    EXPECT_EQ(process(1, Kind::LibraryNew).lines, 3U);
    EXPECT_THAT(new_code(), ElementsAre("    BGL_TRANSFORM_MAT 1.5, 0.0, -2.25, 0.5, 0.0, 0.0, "
                                        "0.0, 0.5, 0.0, 0.0, 0.0, 0.5",
                                        default_call, "    BGL_TRANSFORM_END"));
}

TEST_F(LibraryTest, NewStyleWritesScaleOneWithItsDecimal) {
    parameters.library.libScale = "1";
    open_at("0.0,0.0,0.0");
    process(1, Kind::LibraryNew);
    EXPECT_EQ(new_code()[0],
              "    BGL_TRANSFORM_MAT 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0");
}

TEST_F(LibraryTest, NewStyleIgnoresRotationGroundAndElevation) {
    open_at("1.5,0.0,-2.25");
    process(1, Kind::LibraryNew);
    const std::vector<std::string> plain = new_code();
    open(make_model({MadeMaterial()}, {"1.5,0.0,-2.25, 0.0,1.0,0.0"}),
         {default_frame()[1], "    INSTANCE_CALL E,0,0,04000h"});
    EXPECT_EQ(set.placement.rotation, 16384);
    parameters.library.lib_OTG = true;
    parameters.library.lib_Terrain_alt = "500";
    process(1, Kind::LibraryNew);
    EXPECT_EQ(new_code(), plain);
}

TEST_F(LibraryTest, AMalformedIdentifierIsWrittenAsItStands) {
    parameters.library.libGUID = "whatever";
    open_at("0.0,0.0,0.0");
    process(1, Kind::LibraryNew);
    EXPECT_EQ(new_code()[1], "    KZM_LIBRARY_CALL whatever");
}

} // namespace
} // namespace morvane::test
