#include "scene/read_set.h"
#include "support/source_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane::scene {
namespace {

TEST(ReadSet, TakesEveryTriangleOfTheExample) {
    const auto disk = make_system_disk();
    const Scene scene = read_set_files(*disk, test::source_folder() + "/examples/airport/airport");
    EXPECT_EQ(scene.triangles.size(), 76U);
    EXPECT_EQ(scene.materials.size(), 17U);
    EXPECT_THAT(scene.notes, testing::IsEmpty());
    // The first triangle of the runway begins with its vertex 2, at (15, 0.05, 300).
    const SceneTriangle& first = scene.triangles.front();
    EXPECT_EQ(scene.vertices[first.first_vertex].place, (Vec3{15, 0.05, 300}));
    EXPECT_EQ(scene.blocks[first.block].material, 1);
    EXPECT_EQ(picked_text(scene, *picked_triangle(scene, 1)),
              "airport_0.asm:253, MATERIAL 1, triangle 1 of 2, first vertex (15.0 0.05 300.0)");
}

} // namespace
} // namespace morvane::scene
