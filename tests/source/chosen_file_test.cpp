// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/source_set.h"

#include <gtest/gtest.h>

namespace morvane::test {
namespace {

TEST(ChosenFile, BecomesTheBaseWithoutItsExtension) {
    EXPECT_EQ(base_of_chosen_file("c:\\sets\\airport.asm"), "c:\\sets\\airport");
    EXPECT_EQ(base_of_chosen_file("a.azm"), "a");
    EXPECT_EQ(base_of_chosen_file(".asm"), std::nullopt);
    EXPECT_EQ(base_of_chosen_file(""), std::nullopt);
}

} // namespace
} // namespace morvane::test
