// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/camera.h"
#include "raster/triangles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace morvane::raster {
namespace {

constexpr PictureSize size{64, 48};

// Seen from above, a metre a pixel: x to the right, z up, from the picture's middle.
Camera flat_camera() {
    Camera camera;
    camera.view = View::Plan;
    camera.height = size.height;
    return camera;
}

// The place that is seen at a pixel position.
Vec3 at(double x, double y, double height = 0) {
    return {x - size.width * 0.5, height, size.height * 0.5 - y};
}

Picture drawn(const std::vector<Vec3>& points, const std::vector<Face>& faces,
              const Camera& camera = flat_camera(), Sides sides = Sides::Both) {
    Picture picture;
    clear(picture, size, 0xFF000000);
    const Projection projection = projection_of(camera, size);
    ViewedPoints viewed;
    view_points(viewed, projection, points);
    draw_faces(picture, projection, viewed, faces, sides);
    return picture;
}

struct Place {
    std::int64_t x, y; // sixteenths of a pixel
};

// Whether a pixel's centre is right of the edge from a to b, or on it when the edge is a left or
// an upper one of a triangle whose corners go clockwise in the picture.
bool is_inside(const Place& a, const Place& b, std::int64_t x, std::int64_t y) {
    const std::int64_t side = (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
    const bool upper = a.y == b.y && b.x > a.x;
    const bool left = b.y < a.y;
    return side > 0 || (side == 0 && (upper || left));
}

bool covers(std::array<Place, 3> t, int column, int row) {
    const std::int64_t area =
        (t[1].x - t[0].x) * (t[2].y - t[0].y) - (t[2].x - t[0].x) * (t[1].y - t[0].y);
    if (area == 0) {
        return false;
    }
    if (area < 0) {
        std::swap(t[1], t[2]);
    }
    const std::int64_t x = 16 * column + 8;
    const std::int64_t y = 16 * row + 8;
    return is_inside(t[0], t[1], x, y) && is_inside(t[1], t[2], x, y) &&
           is_inside(t[2], t[0], x, y);
}

TEST(Triangles, CoverThePixelsWhoseCentresAreInside) {
    std::mt19937 random(5);
    const auto place = [&](int from, int to) {
        return Place{std::uniform_int_distribution<int>(16 * from, 16 * to)(random),
                     std::uniform_int_distribution<int>(16 * from, 16 * to)(random)};
    };
    for (int round = 0; round < 2000; ++round) {
        const int reach = round % 3 == 0 ? 200 : 20; // some far outside of the picture
        std::array<Place, 3> t;
        for (Place& p : t) {
            p = place(20 - reach, 20 + reach);
        }
        std::vector<Vec3> points;
        for (const Place& p : t) {
            points.push_back(at(static_cast<double>(p.x) / 16, static_cast<double>(p.y) / 16));
        }
        const Picture picture = drawn(points, {{{0, 1, 2}, 0xFFFFFFFF, 7}});
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x) {
                ASSERT_EQ(picture.ids[picture.at(x, y)], covers(t, x, y) ? 7U : 0U)
                    << "round " << round << " pixel " << x << ' ' << y;
            }
        }
    }
}

TEST(Triangles, ThatShareAnEdgeLeaveNoGapAndNoOverlap) {
    std::mt19937 random(6);
    std::uniform_real_distribution<double> across(0, 48);
    for (int round = 0; round < 300; ++round) {
        const std::vector<Vec3> points{at(0, 0), at(64, 0), at(64, 48), at(0, 48),
                                       at(across(random), across(random))};
        // Translucent, so that a pixel drawn twice is another colour.
        std::vector<Face> faces;
        for (std::uint32_t i = 0; i < 4; ++i) {
            faces.push_back({{i, (i + 1) % 4, 4}, 0x80FFFFFF, 1});
        }
        const Picture picture = drawn(points, faces);
        EXPECT_THAT(picture.pixels, testing::Each(picture.pixels.front())) << round;
    }
}

TEST(Triangles, TheNearerHidesTheFartherInAnyOrder) {
    const std::vector<Vec3> points{at(0, 0, 1), at(64, 0, 1), at(0, 48, 1),
                                   at(0, 0, 2), at(64, 0, 2), at(0, 48, 2)};
    const Face low{{0, 1, 2}, 0xFF111111, 1};
    const Face high{{3, 4, 5}, 0xFF222222, 2};
    EXPECT_EQ(drawn(points, {low, high}).ids[0], 2U);
    EXPECT_EQ(drawn(points, {high, low}).ids[0], 2U);
}

TEST(Triangles, OfTwoInOnePlaneTheLaterIsSeen) {
    const std::vector<Vec3> points{at(0, 0, 1), at(64, 0, 1), at(0, 48, 1), at(64, 48, 1)};
    const Picture picture = drawn(points, {{{0, 1, 2}, 0xFF111111, 1}, {{0, 3, 2}, 0xFF222222, 2}});
    EXPECT_EQ(picture.ids[picture.at(5, 20)], 2U);
}

TEST(Triangles, SurfacesThatCrossAreCutAtTheLineWhereTheyDo) {
    // One rises to the right, the other to the left; they meet in the middle.
    const std::vector<Vec3> points{at(0, 0, 0),  at(64, 0, 64), at(64, 48, 64), at(0, 48, 0),
                                   at(0, 0, 64), at(64, 0, 0),  at(64, 48, 0),  at(0, 48, 64)};
    const Picture picture = drawn(points, {{{0, 1, 2}, 0xFF111111, 1},
                                           {{0, 2, 3}, 0xFF111111, 1},
                                           {{4, 5, 6}, 0xFF222222, 2},
                                           {{4, 6, 7}, 0xFF222222, 2}});
    for (int x = 0; x < size.width; ++x) {
        EXPECT_EQ(picture.ids[picture.at(x, 20)], x < 32 ? 2U : 1U) << x;
    }
}

TEST(Triangles, ATranslucentOneLetsWhatIsBehindShineThrough) {
    const std::vector<Vec3> points{at(0, 0, 1), at(64, 0, 1), at(0, 48, 1),
                                   at(0, 0, 2), at(64, 0, 2), at(0, 48, 2)};
    const Picture picture = drawn(points, {{{3, 4, 5}, 0x80FF0000, 2}, {{0, 1, 2}, 0xFF0000FF, 1}});
    const Colour colour = picture.pixels[0];
    EXPECT_NEAR(static_cast<int>(colour >> 16 & 0xFF), 128, 2);
    EXPECT_NEAR(static_cast<int>(colour & 0xFF), 127, 2);
    EXPECT_EQ(picture.ids[0], 2U);
}

TEST(Triangles, AreDrawnOnlyFromTheSideThatIsAskedFor) {
    const std::vector<Vec3> points{at(0, 0), at(64, 0), at(0, 48)};
    const std::vector<Face> clockwise{{{0, 1, 2}, 0xFFFFFFFF, 1}};
    EXPECT_EQ(drawn(points, clockwise, flat_camera(), Sides::Clockwise).ids[0], 1U);
    EXPECT_EQ(drawn(points, clockwise, flat_camera(), Sides::Counterclockwise).ids[0], 0U);
}

TEST(Triangles, ThatPassBehindTheViewerAreCutOff) {
    Camera camera;
    camera.pitch = 10;
    camera.heading = 0;
    camera.height = 10;
    // The ground, from far behind to far ahead.
    const std::vector<Vec3> points{{-1e5, -1, -1e5}, {1e5, -1, -1e5}, {0, -1, 1e5}};
    const Picture picture = drawn(points, {{{0, 1, 2}, 0xFFFFFFFF, 3}}, camera);
    EXPECT_EQ(picture.ids[picture.at(32, 47)], 3U);
    EXPECT_EQ(picture.ids[picture.at(32, 0)], 0U); // the sky
}

TEST(Triangles, WithCornersThatAreNoPlacesAreSkipped) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<Vec3> points{
        at(0, 0), at(64, 0), at(0, 48), {std::nan(""), 0, 0}, {infinity, 0, 0}, {1e300, 0, 1e300}};
    const Picture picture = drawn(points, {{{0, 1, 3}, 0xFFFFFFFF, 1},
                                           {{0, 1, 4}, 0xFFFFFFFF, 1},
                                           {{0, 1, 99}, 0xFFFFFFFF, 1},
                                           {{0, 5, 5}, 0xFFFFFFFF, 1}});
    EXPECT_THAT(picture.ids, testing::Each(0U));
}

TEST(Light, FallsOnBothSidesAlike) {
    const Vec3 a{0, 0, 0}, b{3, 0.5, 0}, c{0, 1, 4};
    EXPECT_EQ(light_on(a, b, c), light_on(a, c, b));
    EXPECT_GE(light_on(a, b, c), least_light);
    EXPECT_LE(light_on(a, b, c), 256U);
    EXPECT_EQ(light_on(a, a, a), least_light); // without a surface
}

} // namespace
} // namespace morvane::raster
