// SPDX-License-Identifier: GPL-3.0-or-later

// Where generated objects really are, worked out by hand from what the lines say.

#include "objects/save.h"
#include "raster/vector.h"
#include "scene/read_set.h"
#include "small_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace morvane::scene {
namespace {

using test::SetOnDisk;
using test::SmallSet;
using testing::IsEmpty;
using testing::SizeIs;

// The first corner is (10, 2, 20) in the model. An eighth of a turn to the right: east becomes
// (10 + 20) / sqrt 2, north (20 - 10) / sqrt 2.
constexpr double east = 21.213203;
constexpr double north = 7.071068;

void expect_near(const Vec3& actual, const Vec3& expected, double within) {
    EXPECT_NEAR(actual.x, expected.x, within);
    EXPECT_NEAR(actual.y, expected.y, within);
    EXPECT_NEAR(actual.z, expected.z, within);
}

Mark only_mark(const SmallSet& small, Kind kind, const Parameters& parameters) {
    SetOnDisk disk(small);
    const Scene scene = read_set(disk.processed(kind, parameters));
    EXPECT_THAT(scene.marks, SizeIs(1));
    EXPECT_THAT(scene.notes, IsEmpty());
    return scene.marks.at(0);
}

SmallSet turned(const std::string& scale = "65536") {
    SmallSet set;
    set.rotation = "02000h";
    set.scale = scale;
    return set;
}

TEST(Places, ALightIsAtItsVertex) {
    Parameters parameters;
    parameters.lights.LightVariable = "beacnt";
    const Mark mark = only_mark({}, Kind::Lights, parameters);
    expect_near(mark.place, {10, 2, 20}, 1e-9);
    expect_near(mark.direction, {0, 1, 0}, 1e-9);
    EXPECT_EQ(mark.colour, 0xFFFF7F00); // the material's own, each part cut to 1/255
    EXPECT_FALSE(mark.cone);
    ASSERT_TRUE(mark.source);
    EXPECT_NEAR(mark.source->distance, 0, 1e-9);
    EXPECT_EQ(mark.source->material, 1);
    EXPECT_EQ(mark.source->index, 0U);
}

TEST(Places, ALightTurnsAndGrowsWithTheModel) {
    Parameters parameters;
    parameters.lights.LightType = "LIGHT_LANDING";
    const Mark mark = only_mark(turned("32768"), Kind::Lights, parameters); // 2 metres a unit
    expect_near(mark.place, {2 * east, 4, 2 * north}, 1e-5);
    EXPECT_TRUE(mark.cone);
}

TEST(Places, AWindsockStandsOnItsLowestVertex) {
    // Corner 1 is the lowest, on a tie with corner 3; corner 2 is 3 higher; 2 and 3 are sqrt(1 + 4)
    // apart.
    const Mark mark = only_mark(turned("131072"), Kind::Windsock, {}); // half a metre a unit
    expect_near(mark.place, {east / 2, 1, north / 2}, 1e-5);
    EXPECT_NEAR(mark.height, 1.5, 1e-6);
    EXPECT_NEAR(mark.length, std::sqrt(5.0) / 2, 1e-6);
    EXPECT_EQ(mark.colour, 0xFF10F0F0); // written with its bytes in the other order
    EXPECT_EQ(mark.sock_colour, 0xFFFF7F00);
    EXPECT_FALSE(mark.lit);
}

TEST(Places, AnEffectIsWhereItsScaleWordsSay) {
    Parameters parameters;
    parameters.effects.lstEffectType = "fx_smoke";
    parameters.effects.fx_OTG = true;
    const Mark mark = only_mark(turned(), Kind::Effects, parameters);
    // The reference is 51EDB8h = 5369272 m north. High word: 5369272 + 7.071 rounded, so 7 m. Low
    // word: what is left after the thousands of 5369272 + 7071.068 = 5376343.068, cut to 1/65536:
    // 22483 / 65536 = 0.343063. Height: 2 thousandths, 131 / 65536 = 0.001999.
    EXPECT_NEAR(mark.place.z, 7.343063, 1e-5);
    EXPECT_NEAR(mark.place.y, 0.001999, 1e-5);
    // A unit of longitude is 26,700 km / 2^32 = 6 mm here, and the words are off by 1.5 units.
    EXPECT_NEAR(mark.place.x, east, 0.01);
    EXPECT_EQ(mark.name, "fx_smoke");
    EXPECT_TRUE(mark.geographic);
    ASSERT_TRUE(mark.source);
    expect_near(mark.source->place, {east, 2, north}, 1e-5);
    EXPECT_NEAR(mark.source->distance, std::hypot(0.271995, 1.998), 0.01);
}

TEST(Places, AnEffectIsScaledAndAboveTheTerrain) {
    Parameters parameters;
    parameters.effects.lstEffectType = "fx_smoke";
    parameters.effects.fx_Terrain_alt = "120";
    const Mark mark = only_mark(turned("32768"), Kind::Effects, parameters);
    // 4 feet below the terrain of 120 feet, and 4 thousandths above that.
    EXPECT_NEAR(mark.place.y, -4 * 0.3048 + 0.004, 1e-4);
    EXPECT_TRUE(mark.above_sea_level);
    // 5369272 + 14142.136 = 5383414.136: 0.414136; the high word is 14 more.
    EXPECT_NEAR(mark.place.z, 14.414124, 2e-5);
    EXPECT_NEAR(mark.place.x, 2 * east, 0.01);
}

TEST(Places, ALibraryObjectHasTheScaleOfItsCall) {
    Parameters parameters;
    parameters.library.lib_OTG = true;
    parameters.library.libScale = "2.5";
    const Mark mark = only_mark(turned(), Kind::Library, parameters);
    EXPECT_NEAR(mark.place.z, 7.343063, 1e-5);
    EXPECT_NEAR(mark.place.x, east, 0.01);
    // 65536 / 2.5 = 26214.4, cut to 26214: a unit is 2.50004 m, to the north whatever the model's
    // rotation.
    expect_near(mark.frame.direction({0, 0, 1}), {0, 0, 65536.0 / 26214}, 1e-9);
    EXPECT_EQ(mark.guid[0], 0x5ADE0809);
}

TEST(Places, ALibraryNewObjectTurnsWithTheModel) {
    Parameters parameters;
    parameters.library.libScale = "0.5";
    const Mark mark = only_mark(turned("32768"), Kind::LibraryNew, parameters);
    expect_near(mark.place, {2 * east, 4, 2 * north}, 1e-5);
    // Half of two metres, to the north-east.
    const double diagonal = std::sqrt(0.5);
    expect_near(mark.frame.direction({0, 0, 1}), {diagonal, 0, diagonal}, 1e-9);
    EXPECT_FALSE(mark.geographic);
}

TEST(Places, WestAndSouthOfTheReferenceToo) {
    SmallSet set;
    set.corners = {{-10, 0, -20}, {-11, 0, -20}, {-10, 1, -22}};
    Parameters parameters;
    parameters.effects.lstEffectType = "fx";
    parameters.effects.fx_OTG = true;
    const Mark mark = only_mark(set, Kind::Effects, parameters);
    // 5369272 - 20 = 5369252; 5369272 - 20000 = 5349272: 0.272.
    EXPECT_NEAR(mark.place.z, -20 + 17825 / 65536.0, 1e-9);
    EXPECT_NEAR(mark.place.x, -10, 0.01);
}

TEST(Places, AreThoseOfTheSavedFilesToo) {
    for (const Kind kind : all_kinds) {
        SmallSet small = turned("32768");
        small.corners.insert(small.corners.end(), {{1, 0, 1}, {2, 3, 1}, {1, 0, 3}});
        SetOnDisk disk(small);
        Parameters parameters;
        parameters.effects.lstEffectType = "fx";
        OpenSet set = disk.processed(kind, parameters);
        const Scene before = read_set(set);
        ASSERT_TRUE(save_set(disk.services(), set, disk.base()).saved);
        const Scene after = disk.scene();
        ASSERT_THAT(before.marks, SizeIs(2));
        ASSERT_THAT(after.marks, SizeIs(2));
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_EQ(before.marks[i].place, after.marks[i].place) << kind_text(kind);
            ASSERT_TRUE(after.marks[i].source) << kind_text(kind);
            EXPECT_EQ(after.marks[i].source->index, i);
            EXPECT_EQ(after.marks[i].source->place, before.marks[i].source->place);
        }
    }
}

TEST(Reference, KnowsTheDegreesOfAPlace) {
    SetOnDisk disk({});
    const Scene scene = disk.scene();
    const auto origin = degrees_at(scene.reference, {0, 0, 0});
    ASSERT_TRUE(origin);
    // 5369272 m of 40,006,988 m a turn; 0FCD9FF8Bh of 2^32 a turn, below 0.
    EXPECT_NEAR(origin->latitude, 5369272 / 40006988.7 * 360, 1e-5);
    EXPECT_NEAR(origin->longitude, (0xFCD9FF8B - 4294967296.0) / 4294967296.0 * 360, 1e-9);
    const auto away = degrees_at(scene.reference, {0, 0, 1000});
    EXPECT_NEAR(away->latitude - origin->latitude, 1000 / 40006988.7 * 360, 1e-9);
}

} // namespace
} // namespace morvane::scene
