// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/site_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane::scene {
namespace {

using testing::DoubleNear;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double meridian = 40007000; // metres around the earth, through the poles
constexpr double turn = 4294967296;   // longitude units to a turn

// One triangle, 10 m east and 20 m north of a reference point that is so many metres north of the
// equator.
Scene scene_at(double north, double longitude = 0) {
    Scene scene;
    scene.reference.place = GeoPlace{north, longitude, 0, true, 1, {}};
    scene.points = {{0, 0, 0}, {10, 0, 0}, {0, 0, 20}};
    scene.normals.resize(3);
    scene.materials = {{0xFF112233, 0xFF112233}};
    scene.textures = {{"wall.bmp", ""}};
    scene.blocks = {{.material = 4, .look = 0, .texture = 0}};
    scene.triangles = {{.corners = {0, 1, 2}}};
    return scene;
}

TEST(SitePlan, TheFirstSetIsInTheMiddleAndTheOthersWhereTheyBelong) {
    SitePlan plan;
    ASSERT_TRUE(plan.add("apron", scene_at(0)));
    ASSERT_TRUE(plan.add("tower", scene_at(300, 1000 * turn / meridian)));
    ASSERT_THAT(plan.sites(), SizeIs(2));
    EXPECT_EQ(plan.sites()[0].place, (Vec3{0, 0, 0}));
    // On the equator a turn of longitude is as long as one through the poles.
    EXPECT_THAT(plan.sites()[1].place.x, DoubleNear(1000, 0.5));
    EXPECT_THAT(plan.sites()[1].place.z, DoubleNear(300, 1e-6));
    EXPECT_THAT(plan.sites()[1].box.high.z, DoubleNear(320, 1e-6));
}

TEST(SitePlan, TheSceneOfAllKeepsEveryTriangleWithItsLook) {
    SitePlan plan;
    plan.add("apron", scene_at(0));
    plan.add("tower", scene_at(300));
    const Scene& all = plan.scene();
    ASSERT_THAT(all.triangles, SizeIs(2));
    EXPECT_EQ(all.triangles[1].corners, (std::array<std::uint32_t, 3>{3, 4, 5}));
    const SceneBlock& block = all.blocks[all.triangles[1].block];
    EXPECT_EQ(block.look, 1);
    EXPECT_EQ(block.texture, 1);
    EXPECT_THAT(all.materials, SizeIs(2));
    EXPECT_THAT(all.textures, SizeIs(2));
    EXPECT_THAT(all.points[5].z, DoubleNear(320, 1e-6));
}

TEST(SitePlan, APixelLeadsToItsSet) {
    SitePlan plan;
    plan.add("apron", scene_at(0));
    plan.add("tower", scene_at(300));
    EXPECT_EQ(plan.site_of(1), 0U);
    EXPECT_EQ(plan.site_of(2), 1U);
    EXPECT_EQ(plan.site_of(raster::no_id), std::nullopt);
    EXPECT_EQ(plan.site_of(3), std::nullopt);
}

TEST(SitePlan, ASetWithoutAReferencePlaceIsLeftOut) {
    SitePlan plan;
    Scene aircraft = scene_at(0);
    aircraft.reference.place.reset();
    EXPECT_FALSE(plan.add("glider", aircraft));
    EXPECT_THAT(plan.sites(), IsEmpty());
    EXPECT_THAT(plan.scene().triangles, IsEmpty());
}

TEST(SitePlan, TheSameThingTwiceIsADouble) {
    SitePlan plan;
    plan.add("apron", scene_at(0));
    plan.add("copy", scene_at(0.2));
    plan.look_for_troubles();
    EXPECT_EQ(plan.sites()[0].trouble, "in the place of copy");
    EXPECT_EQ(plan.sites()[1].trouble, "in the place of apron");
}

TEST(SitePlan, DifferentThingsMayShareAReferencePoint) {
    SitePlan plan;
    Scene tower = scene_at(0);
    tower.points = {{200, 0, 0}, {210, 0, 0}, {200, 0, 20}};
    plan.add("apron", scene_at(0));
    plan.add("tower", tower);
    plan.look_for_troubles();
    EXPECT_THAT(plan.sites()[0].trouble, IsEmpty());
    EXPECT_THAT(plan.sites()[1].trouble, IsEmpty());
}

TEST(SitePlan, WhatIsFarFromAllOthersIsReported) {
    SitePlan plan;
    plan.add("apron", scene_at(0));
    plan.add("tower", scene_at(2000));
    plan.add("lost", scene_at(500000));
    plan.look_for_troubles();
    EXPECT_THAT(plan.sites()[0].trouble, IsEmpty());
    EXPECT_THAT(plan.sites()[1].trouble, IsEmpty());
    EXPECT_EQ(plan.sites()[2].trouble, "498 km from the nearest other set");
}

} // namespace
} // namespace morvane::scene
