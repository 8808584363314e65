// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing_code.h"
#include "scene/read_object.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace morvane::scene {
namespace {

using raster::Vec3;
using test::DrawingCode;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Shape read(const DrawingCode& code) {
    Shape shape;
    read_object(code.bytes(), shape);
    return shape;
}

const std::vector<std::array<float, 3>> corner{{0, 0, 0}, {1, 0, 0}, {0, 2, 3}};

DrawingCode one_triangle() {
    return DrawingCode().vertices(corner).triangles({0, 1, 2});
}

TEST(ReadObject, DrawsTrianglesOfVertices) {
    const Shape shape = read(one_triangle());
    ASSERT_EQ(shape.faces.size(), 1U);
    const auto& c = shape.faces[0].corners;
    EXPECT_EQ(shape.points[c[0]], (Vec3{0, 0, 0}));
    EXPECT_EQ(shape.points[c[1]], (Vec3{1, 0, 0}));
    EXPECT_EQ(shape.points[c[2]], (Vec3{0, 2, 3}));
    EXPECT_EQ(shape.box.high, (Vec3{1, 2, 3}));
    EXPECT_THAT(shape.trouble, IsEmpty());
    EXPECT_EQ(shape.commands, 2U);
}

TEST(ReadObject, CountsCornersFromTheBaseOfTheBlock) {
    const Shape shape = read(DrawingCode()
                                 .vertices({{9, 9, 9}, {0, 0, 0}, {1, 0, 0}, {0, 2, 3}})
                                 .triangles({0, 1, 2}, 1, 3));
    EXPECT_EQ(shape.points[shape.faces.at(0).corners[0]], (Vec3{0, 0, 0}));
}

TEST(ReadObject, TakesTheDiffuseColourOrWithATextureTheAmbientOne) {
    const Shape shape = read(DrawingCode()
                                 .materials({{{1, 0.5F, 0, 1}, {0, 0, 1}}})
                                 .textures({"WALL.BMP"})
                                 .vertices(corner)
                                 .material(0)
                                 .triangles({0, 1, 2})
                                 .material(0, 0)
                                 .triangles({0, 1, 2}));
    EXPECT_EQ(shape.faces.at(0).colour, 0xFFFF8000);
    EXPECT_EQ(shape.faces.at(1).colour, 0xFF0000FF);
    EXPECT_THAT(shape.textures, ElementsAre("WALL.BMP"));
}

TEST(ReadObject, KeepsTheTranslucenceOfAMaterial) {
    const Shape shape = read(DrawingCode()
                                 .materials({{{1, 1, 1, 0.2F}, {1, 1, 1}}})
                                 .vertices(corner)
                                 .material(0)
                                 .triangles({0, 1, 2}));
    EXPECT_EQ(shape.faces.at(0).colour, 0x33FFFFFF);
}

TEST(ReadObject, AppliesTheInnerTransformationFirst) {
    // Turned a quarter to the right and moved east; then doubled.
    const Shape shape = read(DrawingCode()
                                 .matrix({0, 0, 0}, {2, 0, 0, 0, 2, 0, 0, 0, 2})
                                 .matrix({10, 0, 0}, {0, 0, -1, 0, 1, 0, 1, 0, 0})
                                 .vertices({{0, 0, 1}, {0, 0, 0}, {0, 1, 0}})
                                 .triangles({0, 1, 2})
                                 .end_matrix()
                                 .end_matrix()
                                 .triangles({0, 1, 2}));
    EXPECT_EQ(shape.points[shape.faces.at(0).corners[0]], (Vec3{22, 0, 0}));
    EXPECT_EQ(shape.points[shape.faces.at(1).corners[0]], (Vec3{0, 0, 1}));
}

TEST(ReadObject, AnAnimationIsAtRest) {
    DrawingCode code;
    code.word(0xAD).dword(1).dword(2).dword(3).dword(4).vector({0, 5, 0});
    code.vertices(corner).triangles({0, 1, 2}).end_matrix();
    EXPECT_EQ(read(code).box.low, (Vec3{0, 5, 0}));
}

TEST(ReadObject, ACallComesBackWithTheTransformationOfBefore) {
    // call +6 (over the return that follows it): the subroutine moves and draws.
    DrawingCode code;
    code.vertices(corner).call(16).triangles({}, 0, 0).word(0xBD).end();
    code.matrix({0, 0, 100}, {1, 0, 0, 0, 1, 0, 0, 0, 1}).triangles({0, 1, 2}).end();
    const Shape shape = read(code);
    EXPECT_THAT(shape.trouble, IsEmpty());
    EXPECT_EQ(shape.faces.size(), 1U);
    EXPECT_EQ(shape.box.low.z, 100);
}

TEST(ReadObject, ATurnedCallTurnsByItsConstants) {
    DrawingCode code;
    code.vertices({{0, 0, 1}, {0, 0, 0}, {0, 1, 0}});
    code.word(0x3B).word(12).word(0).word(0).word(0x4000).end().triangles({0, 1, 2}).end();
    const Shape shape = read(code);
    const Vec3 tip = shape.points[shape.faces.at(0).corners[0]];
    EXPECT_NEAR(tip.x, 1, 1e-12); // a quarter to the right: north becomes east
    EXPECT_NEAR(tip.z, 0, 1e-12);
}

// A condition that leads over the triangle when it does not hold.
bool draws(std::int64_t variable, int low, int high) {
    DrawingCode code;
    code.vertices(corner).word(0x24).word(24).word(variable).word(low).word(high);
    code.triangles({0, 1, 2}).end();
    return !read(code).faces.empty();
}

TEST(ReadObject, ItIsASummersDayWithEverythingShown) {
    EXPECT_TRUE(draws(0x28C, 1, 1));  // day
    EXPECT_FALSE(draws(0x28C, 2, 4)); // night
    EXPECT_TRUE(draws(0x346, 5, 5));  // all details
    EXPECT_FALSE(draws(0x346, 0, 4));
    EXPECT_FALSE(draws(0x6F8, 0, 0)); // winter
    EXPECT_TRUE(draws(0x123, 0, 0));  // everything else counts as 0
    EXPECT_FALSE(draws(0x123, 1, 9));
}

TEST(ReadObject, AMaskThatSharesNoBitJumps) {
    for (const int mask : {1, 2}) {
        DrawingCode code;
        code.vertices(corner).word(0x39).word(22).word(0x28C).word(mask);
        code.triangles({0, 1, 2}).end();
        EXPECT_EQ(read(code).faces.size(), mask == 1 ? 1U : 0U); // day is 1
    }
}

TEST(ReadObject, TheFinestDetailIsShown) {
    DrawingCode code;
    code.vertices(corner).word(0x5F).word(22).word(50).word(400).triangles({0, 1, 2}).end();
    EXPECT_EQ(read(code).faces.size(), 1U);
}

TEST(ReadObject, DrawsFacetsOfTheOlderCommands) {
    DrawingCode code;
    code.word(0x1A).word(3).word(4); // points 3 to 6
    for (const auto& p : {std::array{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}}) {
        code.word(p[0]).word(p[1]).word(p[2]);
    }
    code.word(0x20).word(4).word(0).word(0).word(1).dword(0);
    for (const int point : {3, 4, 5, 6}) {
        code.word(point).word(0).word(255);
    }
    code.word(0x2A).word(3).word(0).word(0).word(1).dword(0).word(3).word(4).word(5).end();
    const Shape shape = read(code);
    EXPECT_THAT(shape.trouble, IsEmpty());
    EXPECT_EQ(shape.faces.size(), 3U); // two of the square, one of the triangle
    EXPECT_EQ(shape.box.high, (Vec3{4, 3, 0}));
}

TEST(ReadObject, AnOldTextureHasTheLengthItSays) {
    DrawingCode code;
    code.word(0x43).word(20).word(0).word(0).dword(0).text("TREE.R8", 8).end();
    const Shape shape = read(code);
    EXPECT_THAT(shape.trouble, IsEmpty());
    EXPECT_THAT(shape.textures, ElementsAre("TREE.R8"));
}

TEST(ReadObject, AnUnknownCommandEndsTheObjectButNotWhatWasDrawn) {
    const Shape shape = read(one_triangle().word(0x7777).triangles({0, 1, 2}));
    EXPECT_EQ(shape.faces.size(), 1U);
    EXPECT_EQ(shape.trouble, "command 7777h at offset 118: it is not known");
}

TEST(ReadObject, RefusesWhatIsNotThere) {
    EXPECT_THAT(read(DrawingCode().vertices(corner).triangles({0, 1, 3}, 0, 3)).trouble,
                HasSubstr("a vertex beyond its count"));
    EXPECT_THAT(read(DrawingCode().vertices(corner).triangles({0, 1, 3})).trouble,
                HasSubstr("a point that is not loaded"));
    EXPECT_THAT(read(DrawingCode().word(0xB5).word(9).dword(0)).trouble, HasSubstr("cut short"));
    EXPECT_THAT(read(DrawingCode().word(0x1A).word(2047).word(2)).trouble,
                HasSubstr("points beyond 2048"));
    const float huge = std::numeric_limits<float>::infinity();
    EXPECT_THAT(
        read(DrawingCode().vertices({{0, 0, 0}, {1, 0, 0}, {huge, 0, 0}}).triangles({0, 1, 2}))
            .trouble,
        HasSubstr("not finite"));
}

TEST(ReadObject, EveryLoopEnds) {
    EXPECT_THAT(read(DrawingCode().jump(0)).trouble, HasSubstr("jumps to itself"));
    EXPECT_THAT(read(DrawingCode().word(0xBD).jump(-2)).trouble, HasSubstr("does not end"));
    EXPECT_THAT(read(DrawingCode().word(0xBD).call(-2)).trouble, HasSubstr("nested too deep"));
    EXPECT_THAT(read(DrawingCode().jump(-8)).trouble, HasSubstr("out of the code"));
    // A loop by a list of 65,535 vertices would take minutes.
    DrawingCode long_list;
    long_list.vertices(std::vector<std::array<float, 3>>(65535));
    const int back = -static_cast<int>(long_list.size());
    EXPECT_THAT(read(long_list.word(0x88).dword(back)).trouble, HasSubstr("does not end"));
}

TEST(ReadObject, CodeThatIsCutOffAnywhereNeverFails) {
    const std::string whole = one_triangle().end().bytes();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Shape shape;
        read_object(std::string_view(whole).substr(0, size), shape);
        EXPECT_LE(shape.faces.size(), 1U);
    }
}

TEST(ReadObject, DamagedCodeIsNeverRefusedWithoutAReason) {
    std::mt19937 random(8);
    const DrawingCode whole = DrawingCode()
                                  .materials({{{1, 0, 0, 1}, {1, 0, 0}}})
                                  .material(0)
                                  .box(4, 3, 5)
                                  .matrix({9, 0, 0}, {1, 0, 0, 0, 1, 0, 0, 0, 1})
                                  .box(1, 1, 1)
                                  .end_matrix()
                                  .end();
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = whole.bytes();
        for (int i = 0; i < 3; ++i) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        Shape shape;
        read_object(bytes, shape);
        EXPECT_TRUE(!shape.trouble.empty() || shape.commands > 0) << round;
        for (const ShapeFace& face : shape.faces) {
            EXPECT_LT(face.corners[2], shape.points.size());
        }
    }
}

} // namespace
} // namespace morvane::scene
