// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/process.h"
#include "scene/ghost.h"
#include "scene/read_set.h"
#include "small_set.h"
#include "source/open_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane::scene {
namespace {

using test::SetOnDisk;
using test::SmallSet;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct Opened {
    explicit Opened(const SmallSet& small) : disk(small) {
        EXPECT_TRUE(open_source_set(disk.services(), set, disk.base()));
        scene = read_set(set);
    }
    Ghost ghost(Kind kind, const Parameters& parameters = {}) {
        return ghost_of(disk.disk(), set, scene, 1, kind, parameters);
    }

    SetOnDisk disk;
    OpenSet set;
    Scene scene;
};

TEST(Ghost, IsWhatProcessWouldMake) {
    for (const Kind kind : all_kinds) {
        SmallSet small;
        small.rotation = "02000h";
        small.corners.insert(small.corners.end(), {{1, 0, 1}, {2, 3, 1}, {1, 0, 3}});
        Opened opened(small);
        Parameters parameters;
        parameters.effects.lstEffectType = "fx";
        const Ghost ghost = opened.ghost(kind, parameters);
        EXPECT_THAT(ghost.trouble, IsEmpty());
        ASSERT_TRUE(
            process_material(opened.disk.services(), opened.set, 1, kind, parameters).processed);
        const Scene made = read_set(opened.set);
        ASSERT_EQ(ghost.marks.size(), made.marks.size());
        for (std::size_t i = 0; i < made.marks.size(); ++i) {
            EXPECT_EQ(ghost.marks[i].place, made.marks[i].place) << kind_text(kind);
            EXPECT_EQ(ghost.marks[i].kind, made.marks[i].kind);
            ASSERT_TRUE(ghost.marks[i].source);
            EXPECT_EQ(ghost.marks[i].source->line, made.marks[i].source->line);
            EXPECT_EQ(ghost.marks[i].source->place, made.marks[i].source->place);
        }
    }
}

TEST(Ghost, LeavesTheSetAsItIs) {
    Opened opened({});
    const std::string line(
        opened.set.model.line(opened.set.translation(1).block.selecting_line + 1));
    opened.ghost(Kind::Lights);
    EXPECT_EQ(opened.set.model.line(opened.set.translation(1).block.selecting_line + 1), line);
    EXPECT_THAT(opened.set.replacements, IsEmpty());
    EXPECT_EQ(opened.set.unprocessed(), 1U);
}

TEST(Ghost, ShowsEveryTriangleThatAWindsockRefuses) {
    SmallSet small;
    small.corners = {{0, 0, 0}, {1, 0, 0},    {0, 0, 1},  // flat
                     {5, 0, 0}, {5, 4, 0},    {6, 0, 1},  // good
                     {9, 0, 0}, {9, 0.05, 0}, {9, 9, 1}}; // the second corner is not high enough
    Opened opened(small);
    const Ghost ghost = opened.ghost(Kind::Windsock);
    EXPECT_THAT(ghost.trouble, HasSubstr("zero height"));
    const auto begin =
        static_cast<std::uint32_t>(opened.set.translation(1).block.selecting_line + 1);
    EXPECT_THAT(ghost.refused, ElementsAre(begin + 1, begin + 3));
    ASSERT_THAT(ghost.marks, SizeIs(1));
    EXPECT_EQ(ghost.marks[0].place, (Vec3{5, 0, 0}));
    EXPECT_EQ(ghost.marks[0].source->line, begin + 2);
}

TEST(Ghost, OfWhatCannotBeMadeSaysWhy) {
    Opened opened({});
    Parameters parameters;
    parameters.library.libScale = "0";
    const Ghost ghost = opened.ghost(Kind::Library, parameters);
    EXPECT_THAT(ghost.trouble, HasSubstr("scale is 0"));
    EXPECT_THAT(ghost.marks, IsEmpty());
}

TEST(Ghost, FollowsTheTransformationOfItsBlock) {
    SmallSet small;
    small.before_triangles =
        "    BGL_TRANSFORM_MAT 100.0,0.0,0.0, 1.0,0.0,0.0, 0.0,1.0,0.0, 0.0,0.0,1.0\r\n";
    Opened opened(small);
    EXPECT_EQ(opened.ghost(Kind::Lights).marks.at(0).place, (Vec3{110, 2, 20}));
}

} // namespace
} // namespace morvane::scene
