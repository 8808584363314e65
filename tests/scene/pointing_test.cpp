// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "objects/process.h"
#include "scene/pointing.h"
#include "scene/read_set.h"
#include "small_set.h"
#include "source/open_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane::scene {
namespace {

constexpr double circle = 12'734'620 * pi; // metres around the earth over the poles

using test::SetOnDisk;
using test::SmallSet;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

TEST(Pointing, ATriangleIsNamedByLineMaterialAndPlace) {
    SetOnDisk disk({});
    const Scene scene = disk.scene();
    ASSERT_THAT(scene.triangles, SizeIs(3)); // two of the square, and the marked one
    const auto pointed = pointed_at(scene, {}, 3);
    ASSERT_TRUE(pointed);
    EXPECT_EQ(pointed->material, 1);
    EXPECT_EQ(pointed->line, scene.triangles[2].line);
    EXPECT_EQ(pointed->text, "set_0.asm:" + std::to_string(pointed->line) +
                                 ", MATERIAL 1, triangle 1 of 1, first vertex (10.0 2.0 20.0)");
}

TEST(Pointing, IdsOfNothingPointAtNothing) {
    SetOnDisk disk({});
    const Scene scene = disk.scene();
    for (const std::uint32_t id : {0U, 4U, 99U, mark_bit, mark_bit | 7, mark_bit | ghost_bit}) {
        EXPECT_FALSE(pointed_at(scene, {}, id)) << id;
    }
}

TEST(Pointing, AMarkLeadsToItsTriangle) {
    SetOnDisk disk({});
    const OpenSet set = disk.processed(Kind::Lights, {});
    const Scene scene = read_set(set);
    const auto pointed = pointed_at(scene, {}, mark_bit);
    ASSERT_TRUE(pointed);
    ASSERT_TRUE(scene.marks.at(0).source);
    EXPECT_EQ(pointed->material, 1);
    EXPECT_EQ(pointed->line, scene.marks[0].source->line);
    EXPECT_EQ(pointed->text, "light LIGHT_STROBE of set_0.asm:" + std::to_string(pointed->line) +
                                 ", MATERIAL 1, triangle 1");
}

TEST(Pointing, AMarkOfTheGhostIsNoMarkOfTheScene) {
    SetOnDisk disk({});
    OpenSet set;
    ASSERT_TRUE(open_source_set(disk.services(), set, disk.base()));
    const Scene scene = read_set(set);
    const Ghost ghost = ghost_of(disk.disk(), set, scene, 1, Kind::Windsock, {});
    ASSERT_THAT(ghost.marks, SizeIs(1));
    EXPECT_FALSE(pointed_at(scene, ghost, mark_bit));
    const auto pointed = pointed_at(scene, ghost, mark_bit | ghost_bit);
    ASSERT_TRUE(pointed);
    EXPECT_THAT(pointed->text, StartsWith("windsock of set_0.asm:"));
}

TEST(Pointing, ADistanceOfMoreThanATenthOfAMetreIsSaid) {
    Scene scene;
    scene.model_path = "folder/set_0.asm";
    Mark mark;
    mark.kind = MarkKind::Effect;
    mark.name = "fx_smoke";
    EXPECT_EQ(mark_text(scene, mark), "effect fx_smoke");
    mark.line = 12;
    EXPECT_EQ(mark_text(scene, mark), "effect fx_smoke at set_0.asm:12");
    mark.source = MarkSource{4, 371, 1, {}, 0.1};
    EXPECT_EQ(mark_text(scene, mark), "effect fx_smoke of set_0.asm:371, MATERIAL 4, triangle 2");
    mark.source->distance = 1.23;
    EXPECT_THAT(mark_text(scene, mark), HasSubstr("triangle 2, 1.2 m from it"));
}

TEST(Pointing, APlaceIsSaidInMetresAndDegrees) {
    Scene scene;
    EXPECT_EQ(place_text(scene, {12.5, 7, -3}), "12.5 m east, 3.0 m south");
    EXPECT_EQ(place_text(scene, {-1, 0, 4}), "1.0 m west, 4.0 m north");
    // A quarter of the circle of 40,007 km north of the equator is the pole: an eighth is 45
    // degrees.
    GeoPlace place;
    place.latitude = circle / 8;
    place.longitude = -4294967296.0 / 36; // 10 degrees west
    scene.reference.place = place;
    EXPECT_EQ(place_text(scene, {0, 0, 0}), "0.0 m east, 0.0 m north; 45.00000 N, 10.00000 W");
    EXPECT_EQ(place_text(scene, {0, 0, circle / 360}),
              "0.0 m east, 111130.5 m north; 46.00000 N, 10.00000 W");
}

TEST(Pointing, OnlyThePlanSaysWhereThePointerIs) {
    const Scene scene;
    raster::Camera camera;
    camera.height = 100;
    const raster::PictureSize size{200, 100};
    EXPECT_THAT(plan_text(scene, camera, size, 100, 50), IsEmpty());
    camera.view = raster::View::Plan;
    EXPECT_EQ(plan_text(scene, camera, size, 110, 20), "10.0 m east, 30.0 m north");
}

TEST(Pointing, ARowIsFoundByItsMaterial) {
    SetOnDisk disk({});
    OpenSet set;
    ASSERT_TRUE(open_source_set(disk.services(), set, disk.base()));
    EXPECT_EQ(row_of_material(set, 1), 1U);
    EXPECT_EQ(row_of_material(set, 0), 0U); // not marked
    EXPECT_EQ(row_of_material(set, -1), 0U);
}

TEST(Ghost, OfSeveralRowsIsAllOfThem) {
    SetOnDisk disk({});
    OpenSet set;
    ASSERT_TRUE(open_source_set(disk.services(), set, disk.base()));
    const Scene scene = read_set(set);
    const std::vector<std::size_t> rows{0, 1, 2}; // 1 is there, the others are not
    EXPECT_THAT(ghost_of(disk.disk(), set, scene, rows, Kind::Lights, {}).marks, SizeIs(1));
    ASSERT_TRUE(process_material(disk.services(), set, 1, Kind::Lights, {}).processed);
    EXPECT_THAT(ghost_of(disk.disk(), set, scene, rows, Kind::Lights, {}).marks, IsEmpty());
}

} // namespace
} // namespace morvane::scene
