// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/assembly.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

using Lines = std::vector<std::string>;

Lines converted(const Lines& lines, int times = 1) {
    LineStore store(lines);
    for (int i = 0; i < times; ++i) {
        convert_calls32(store);
    }
    Lines result;
    for (std::size_t i = 1; i <= store.count(); ++i) {
        result.emplace_back(store.line(i));
    }
    return result;
}

TEST(ConvertCalls32, KeepsTheBlankBehindTheKeyword) {
    EXPECT_EQ(converted({"VINSTANCE_CALL model_outside,x", "   VINSTANCE_CALL  a  ",
                         "    SHADOW_VICALL    model_shadow,y"}),
              (Lines{"    VINSTANCE_CALL32  model_outside,x", "    VINSTANCE_CALL32   a",
                     "    SHADOW_VICALL32     model_shadow,y"}));
}

TEST(ConvertCalls32, LeavesEverythingElse) {
    const Lines lines{
        "    VINSTANCE_CALL32 a", "vinstance_call a", "VINSTANCE_CALL",      "VINSTANCE_CALL\ta",
        "; VINSTANCE_CALL a",     "SHADOW_VICALL ",   "  SHADOW_VICALL32 b", "",
        "xSHADOW_VICALL b"};
    EXPECT_EQ(converted(lines), lines);
}

TEST(ConvertCalls32, TwiceEqualsOnceOnRandomFiles) {
    std::mt19937 random(1);
    const Lines pieces{"VINSTANCE_CALL", "SHADOW_VICALL", "32", " ", "  ", "a,b", "\t", "CALL"};
    for (int round = 0; round < 2000; ++round) {
        Lines lines(random() % 8);
        for (std::string& line : lines) {
            for (std::size_t n = random() % 6; n > 0; --n) {
                line += pieces[random() % pieces.size()];
            }
        }
        ASSERT_EQ(converted(lines, 2), converted(lines)) << round;
    }
}

} // namespace
} // namespace morvane::test
