// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "objects/geo_placement.h"
#include "set_fixture.h"

#include <gmock/gmock.h>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;

class EffectsTest : public SetTest {
  protected:
    void SetUp() override { parameters.effects.lstEffectType = "fx_beacon"; }
    static std::string skip_of(const std::string& line) {
        const std::size_t start = line.find("SKIP_");
        return line.substr(start, line.find(',') - start);
    }
};

// Latitude 100h = 256: low part floor(0.256 * 65536) = 16777. Longitude 200h = 512: 33554.
TEST_F(EffectsTest, AVertexAtTheOriginLiesAtTheReferencePoint) {
    parameters.effects.fx_OTG = true;
    open(make_model({MadeMaterial()}));
    const std::size_t behind = set.translation(1).block.selecting_line + 3;
    EXPECT_EQ(process(1, Kind::Effects).lines, 3U);
    const std::string skip = "SKIP_FX" + std::to_string(behind);
    EXPECT_THAT(
        new_code(),
        ElementsAre("    SCALE_AGL   " + skip + ", 5, 40, 65536, 0100h, 16777, 0200h, 33554, 0, 0",
                    "    KZM_FX1 \"fx_beacon\" , \"MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;\"",
                    skip + "  label BGLCODE", "SKIP_FX  label BGLCODE"));
}

// Off the ground: (104 - 4) * 0.3048 * 1000 = 30480, that is 30 and floor(0.48 * 65536) = 31457.
TEST_F(EffectsTest, TheTerrainElevationCountsOffTheGround) {
    parameters.effects.fx_Terrain_alt = "104";
    open(make_model({MadeMaterial()}));
    process(1, Kind::Effects);
    const std::string line = new_code().front();
    EXPECT_EQ(line.rfind("    SCALE   SKIP_FX", 0), 0U);
    EXPECT_TRUE(line.ends_with(", 0200h, 33554, 30, 31457")) << line;
}

TEST_F(EffectsTest, AnElevationOfFourFeetIsTheGround) {
    parameters.effects.fx_Terrain_alt = "4";
    open(make_model({MadeMaterial()}));
    process(1, Kind::Effects);
    EXPECT_TRUE(new_code().front().ends_with(", 0, 0")) << new_code().front();
}

TEST_F(EffectsTest, BelowTheGroundTheWholePartIsTheFloor) {
    parameters.effects.fx_Terrain_alt = "0"; // -4 feet = -1219.2
    open(make_model({MadeMaterial()}));
    process(1, Kind::Effects);
    // floor(-1.2192) = -2; (-1219.2 + 2000) / 1000 * 65536 = 51170.5...
    EXPECT_TRUE(new_code().front().ends_with(", -2, 51170")) << new_code().front();
}

TEST_F(EffectsTest, TwoTrianglesGiveSixLinesAndTheClosingLabel) {
    MadeMaterial two;
    two.triangles = {"0, 1, 2", "1, 2, 0"};
    open(make_model({two}));
    EXPECT_EQ(process(1, Kind::Effects).lines, 6U);
    ASSERT_EQ(new_code().size(), 7U);
    EXPECT_EQ(new_code()[6], "SKIP_FX  label BGLCODE");
    const std::size_t first = set.translation(1).block.selecting_line + 3;
    EXPECT_EQ(skip_of(new_code()[0]), "SKIP_FX" + std::to_string(first));
    EXPECT_EQ(skip_of(new_code()[3]), "SKIP_FX" + std::to_string(first + 1));
}

TEST_F(EffectsTest, EveryMaterialEndsWithTheSameLabel) {
    open(make_model({MadeMaterial(), MadeMaterial()}));
    process(1, Kind::Effects);
    process(2, Kind::Effects);
    EXPECT_EQ(new_code()[3], "SKIP_FX  label BGLCODE");
    EXPECT_EQ(new_code()[7], "SKIP_FX  label BGLCODE");
}

TEST_F(EffectsTest, AReferenceScaleOfZeroIsADivisionByZero) {
    open(make_model({MadeMaterial()}), {"    SCALE_AGL E, 5, 40, 0, 0100h, 0, 0200h, 0, 0, 0"});
    EXPECT_FALSE(process(1, Kind::Effects).processed);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "Error : 11 :Division by zero");
}

TEST_F(EffectsTest, AVertexFieldThatIsNoNumberIsATypeMismatch) {
    open(make_model({MadeMaterial()}, {"1.0,up,0.0, 0.0,1.0,0.0"}));
    EXPECT_FALSE(process(1, Kind::Effects).processed);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "Error : 13 :Type mismatch");
}

Placement reference(double rotation) {
    Placement placement;
    placement.scale_line = "SCALE_AGL E, 5, 40, 65536, 0, 0, 0, 0, 0, 0";
    placement.rotation = rotation;
    return placement;
}

const Grounding on_ground{true, "0"};

TEST(GeoCoordinates, TheLatitudesLowPartTakesTheNorthingInThousandths) {
    // z = 2: high part 2, low part of 2000, which is 0.
    EXPECT_EQ(geo_coordinates(reference(0), split_fields("V 0,0,2,0,0,1,0,0"), on_ground),
              ", 02h, 0, 00h, 0, 0, 0");
    // z = 0.75: high part rounds to 1, low part of 750 is floor(0.75 * 65536).
    EXPECT_EQ(geo_coordinates(reference(0), split_fields("V 0,0,0.75,0,0,1,0,0"), on_ground),
              ", 01h, 49152, 00h, 0, 0, 0");
    // Halves go to the even neighbour: 2.5 is 2, 3.5 is 4.
    EXPECT_TRUE(geo_coordinates(reference(0), split_fields("V 0,0,2.5,0,0,1,0,0"), on_ground)
                    .starts_with(", 02h, 32768, "));
    EXPECT_TRUE(geo_coordinates(reference(0), split_fields("V 0,0,3.5,0,0,1,0,0"), on_ground)
                    .starts_with(", 04h, 32768, "));
}

TEST(GeoCoordinates, SouthIsTwosComplement) {
    EXPECT_EQ(geo_coordinates(reference(0), split_fields("V 0,0,-2,0,0,1,0,0"), on_ground),
              ", 0FFFFFFFEh, 0, 00h, 0, 0, 0");
}

TEST(GeoCoordinates, TheLongitudeIsAShareOfTheParallel) {
    // On the equator one metre is 2^32 / (12734620 * pi) = 107.3555... units.
    EXPECT_EQ(geo_coordinates(reference(0), split_fields("V 1,0,0,0,0,1,0,0"), on_ground),
              ", 00h, 0, 06Bh, 7035, 0, 0");
}

TEST(GeoCoordinates, AQuarterTurnPutsEastToSouth) {
    // x = 4 turned by 90 degrees: the angle grows from 90 to 180, so z = -4 and x is nearly 0.
    const std::string text =
        geo_coordinates(reference(16384), split_fields("V 4,0,0,0,0,1,0,0"), on_ground);
    EXPECT_TRUE(text.starts_with(", 0FFFFFFFCh, ")) << text;
}

TEST(GeoCoordinates, TheOriginStaysUnderAnyRotation) {
    for (const double rotation : {0.0, 1.0, 16384.0, 40000.0, 65535.0}) {
        EXPECT_EQ(
            geo_coordinates(reference(rotation), split_fields("V 0,0,0,0,0,1,0,0"), on_ground),
            ", 00h, 0, 00h, 0, 0, 0")
            << rotation;
    }
}

TEST(GeoCoordinates, APlaceOffTheGlobeIsAnOverflow) {
    EXPECT_THROW(
        geo_coordinates(reference(0), split_fields("V 0,0,3000000000,0,0,1,0,0"), on_ground),
        RuntimeError);
}

} // namespace
} // namespace morvane::test
