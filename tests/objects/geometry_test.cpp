// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "objects/geo_placement.h"

#include <gtest/gtest.h>

#include <cmath>

namespace morvane {
namespace {

TEST(CartToPolar, EveryQuadrantAndAxis) {
    EXPECT_DOUBLE_EQ(cart_to_polar(2, 0).angle, pi / 2);
    EXPECT_DOUBLE_EQ(cart_to_polar(0, 0).angle, pi / 2);
    EXPECT_DOUBLE_EQ(cart_to_polar(-2, 0).angle, 3 * pi / 2);
    EXPECT_DOUBLE_EQ(cart_to_polar(0, 3).angle, 0);
    EXPECT_DOUBLE_EQ(cart_to_polar(1, 1).angle, std::atan(1.0));
    EXPECT_DOUBLE_EQ(cart_to_polar(1, -1).angle, std::atan(-1.0) + pi);
    EXPECT_DOUBLE_EQ(cart_to_polar(-1, -1).angle, std::atan(1.0) + pi);
    EXPECT_DOUBLE_EQ(cart_to_polar(-1, 1).angle, std::atan(-1.0) + 2 * pi);
    EXPECT_DOUBLE_EQ(cart_to_polar(3, -4).r, 5);
}

TEST(PolarToCart, TakesBackWhatCartToPolarGives) {
    for (double a = -3; a <= 3; a += 0.75) {
        for (double b = -3; b <= 3; b += 0.75) {
            const Polar polar = cart_to_polar(a, b);
            const Cartesian back = polar_to_cart(polar.r, polar.angle);
            EXPECT_NEAR(back.a, a, 1e-12);
            EXPECT_NEAR(back.b, b, 1e-12);
            EXPECT_GE(polar.angle, 0);
            EXPECT_LT(polar.angle, 2 * pi);
        }
    }
}

} // namespace
} // namespace morvane
