// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/literals.h"

#include <gtest/gtest.h>

namespace morvane::test {
namespace {

TEST(Literals, RealNumbersHaveDigitsAndAPoint) {
    for (const char* real : {"1.0", "-0.5", "+3.", "12.25e-3", "0.000000", "1.5E+10"}) {
        EXPECT_TRUE(is_real_number(real)) << real;
    }
    for (const char* other : {"0", "1", ".4", "0,4", "1e-3", "", "-", "1.0e", "1.0e3", "1.0x"}) {
        EXPECT_FALSE(is_real_number(other)) << other;
    }
    EXPECT_EQ(real_number("-12.5"), -12.5);
    EXPECT_EQ(real_number("+1.5e+2"), 150.0);
    EXPECT_FALSE(real_number("1.0x"));
}

TEST(Literals, WholeNumbersAreDecimalOrHexadecimal) {
    EXPECT_EQ(whole_number("65536"), 65536);
    EXPECT_EQ(whole_number("-4"), -4);
    EXPECT_EQ(whole_number("0FFFFFFFFh"), 0xFFFFFFFF);
    EXPECT_EQ(whole_number("0a0H"), 160);
    for (const char* other : {"", "FFh", "12.5", "0x80", "1e3", "h", "99999999999999999999"}) {
        EXPECT_FALSE(whole_number(other)) << other;
    }
}

TEST(Literals, HexadecimalFaultsAreNamed) {
    EXPECT_EQ(hexadecimal_fault("0CCCCh"), "");
    EXPECT_EQ(hexadecimal_fault("0FF80FF00h"), "");
    EXPECT_EQ(hexadecimal_fault("0CCCC"), "has no \"h\" at its end");
    EXPECT_EQ(hexadecimal_fault("08000hh"), "ends in two \"h\"");
    EXPECT_EQ(hexadecimal_fault("CCCCh"), "does not begin with a digit, so write a 0 before it");
    EXPECT_EQ(hexadecimal_fault("0zzh"), "has a \"z\", which is not a hexadecimal digit");
}

} // namespace
} // namespace morvane::test
