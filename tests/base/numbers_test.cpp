// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "support/thrown.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace morvane {
namespace {

using test::thrown_by;

TEST(Val, LongestLeadingNumber) {
    EXPECT_EQ(val("12abc"), 12);
    EXPECT_EQ(val("  -1.5e2x"), -150);
    EXPECT_EQ(val("+3"), 3);
    EXPECT_EQ(val(".5"), 0.5);
    EXPECT_EQ(val("5."), 5);
    EXPECT_EQ(val("1.2.3"), 1.2);
    EXPECT_EQ(val("1e"), 1);
    EXPECT_EQ(val("1e+"), 1);
    EXPECT_EQ(val("1E3"), 1000);
    EXPECT_EQ(val("1 2"), 1);
    EXPECT_EQ(val("0.588235"), 0.588235);
    EXPECT_EQ(val("1,5"), 1);
}

TEST(Val, ZeroWithoutANumber) {
    for (const char* text : {"", "   ", "abc", "-", "+", ".", "-.", "e5", "--1", "+-1", "- 1",
                             "inf", "-inf", "nan", "infinity", "\t1", "$1"}) {
        EXPECT_EQ(val(text), 0) << "'" << text << "'";
    }
}

TEST(Val, HexadecimalIsNotRead) {
    EXPECT_EQ(val("0x10"), 0);
    EXPECT_EQ(val("0FFh"), 0);
}

TEST(Val, BeyondADouble) {
    EXPECT_EQ(thrown_by([] { val("1e400"); }).number(), 6);
    EXPECT_EQ(thrown_by([] { val("-" + std::string(400, '9')); }).number(), 6);
    EXPECT_EQ(thrown_by([] { val("1e99999999999999999999"); }).number(), 6);
    EXPECT_EQ(val("1e-400"), 0);
    EXPECT_EQ(val("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(val("1e-99999999999999999999"), 0);
    EXPECT_EQ(val("0e99999999999999999999"), 0);
    EXPECT_EQ(val("0." + std::string(400, '0') + "1e402"), 10);
}

TEST(NumberField, EmptyTextIsZero) {
    EXPECT_EQ(number_field(""), 0);
    EXPECT_EQ(number_field("   "), 0);
}

TEST(NumberField, BlanksAroundANumberAreAllowed) {
    EXPECT_EQ(number_field(" 12.5 "), 12.5);
    EXPECT_EQ(number_field("-1e3"), -1000);
}

TEST(NumberField, AnyOtherTextIsATypeMismatch) {
    for (const char* text : {"x", "1x", "1 2", "1,5", "-", "1e", "\t1", "0FFh", "inf", "nan"}) {
        const RuntimeError error = thrown_by([&] { number_field(text); });
        EXPECT_EQ(error.number(), 13) << "'" << text << "'";
        EXPECT_STREQ(error.description(), "Type mismatch");
    }
}

TEST(HexValue, ReadsUpToTheFirstOtherCharacter) {
    EXPECT_EQ(hex_value("0FFh"), 255);
    EXPECT_EQ(hex_value("ff"), 255);
    EXPECT_EQ(hex_value("4000h"), 0x4000);
    EXPECT_EQ(hex_value("1G"), 1);
    EXPECT_EQ(hex_value("12 34"), 0x12);
}

TEST(HexValue, ZeroWithoutADigit) {
    EXPECT_EQ(hex_value(""), 0);
    EXPECT_EQ(hex_value("h"), 0);
    EXPECT_EQ(hex_value(" 1"), 0);
    EXPECT_EQ(hex_value("-1"), 0);
}

TEST(HexValue, ThirtyTwoBitsSigned) {
    EXPECT_EQ(hex_value("7FFFFFFFh"), 2147483647);
    EXPECT_EQ(hex_value("080000000h"), -2147483648LL);
    EXPECT_EQ(hex_value("0FFFFFFFFh"), -1);
    EXPECT_EQ(hex_value("0C1234567h"), static_cast<std::int32_t>(0xC1234567U));
}

TEST(HexValue, MoreThanEightSignificantDigitsOverflow) {
    EXPECT_EQ(hex_value("00000000012345678"), 0x12345678);
    EXPECT_EQ(thrown_by([] { hex_value("123456789"); }).number(), 6);
    EXPECT_EQ(thrown_by([] { hex_value("0100000000h"); }).number(), 6);
}

TEST(HexText, UpperCaseWithoutLeadingZeros) {
    EXPECT_EQ(hex_text(0), "0");
    EXPECT_EQ(hex_text(0xABCDEF), "ABCDEF");
    EXPECT_EQ(hex_text(0xFFFFFFFFU), "FFFFFFFF");
}

TEST(FormatDecimal, PatternOfSixPlaces) {
    EXPECT_EQ(format_decimal(0, 1, 6), "0.0");
    EXPECT_EQ(format_decimal(1, 1, 6), "1.0");
    EXPECT_EQ(format_decimal(1.5, 1, 6), "1.5");
    EXPECT_EQ(format_decimal(-12.345678, 1, 6), "-12.345678");
    EXPECT_EQ(format_decimal(12.3456785, 1, 6), "12.345679");
    EXPECT_EQ(format_decimal(0.1234564, 1, 6), "0.123456");
    EXPECT_EQ(format_decimal(1.100000, 1, 6), "1.1");
}

TEST(FormatDecimal, RoundsHalfAwayFromZero) {
    EXPECT_EQ(format_decimal(0.05, 1, 1), "0.1");
    EXPECT_EQ(format_decimal(-0.05, 1, 1), "-0.1");
    EXPECT_EQ(format_decimal(0.25, 1, 1), "0.3");
    EXPECT_EQ(format_decimal(2.5, 0, 0), "3");
    EXPECT_EQ(format_decimal(-2.5, 0, 0), "-3");
    EXPECT_EQ(format_decimal(9.95, 1, 1), "10.0");
    EXPECT_EQ(format_decimal(0.0000005, 1, 6), "0.000001");
    EXPECT_EQ(format_decimal(0.0004, 3, 3), "0.000");
    EXPECT_EQ(format_decimal(0.00001, 3, 3), "0.000");
}

TEST(FormatDecimal, TakesFifteenSignificantDigits) {
    // As a double it lies just below the half, with 15 digits upon it.
    EXPECT_EQ(format_decimal(1.005, 1, 2), "1.01");
    EXPECT_EQ(format_decimal(0.1 + 0.2, 1, 16), "0.3");
    EXPECT_EQ(format_decimal(123456789.0078125, 1, 7), "123456789.007813");
    EXPECT_EQ(format_decimal(123456789.0234375, 1, 6), "123456789.023438");
    EXPECT_EQ(format_decimal(1234567890123456.0, 0, 1), "1234567890123460");
}

TEST(FormatDecimal, ZeroHasNoSign) {
    EXPECT_EQ(format_decimal(-0.0, 1, 6), "0.0");
    EXPECT_EQ(format_decimal(-0.0000001, 1, 6), "0.0");
    EXPECT_EQ(format_decimal(-1e-300, 1, 6), "0.0");
    EXPECT_EQ(format_decimal(-0.04, 1, 1), "0.0");
}

TEST(FormatDecimal, NoExponent) {
    EXPECT_EQ(format_decimal(1e20, 1, 6), "100000000000000000000.0");
    EXPECT_EQ(format_decimal(-1e15, 0, 0), "-1000000000000000");
}

TEST(FormatDecimal, WhatIsNoNumberOverflows) {
    EXPECT_EQ(
        thrown_by([] { format_decimal(std::numeric_limits<double>::infinity(), 1, 6); }).number(),
        6);
    EXPECT_EQ(
        thrown_by([] { format_decimal(std::numeric_limits<double>::quiet_NaN(), 1, 6); }).number(),
        6);
}

TEST(PlainText, NoNeedlessZerosAndNoExponent) {
    EXPECT_EQ(plain_text(0), "0");
    EXPECT_EQ(plain_text(-0.0), "0");
    EXPECT_EQ(plain_text(90), "90");
    EXPECT_EQ(plain_text(-22.5), "-22.5");
    EXPECT_EQ(plain_text(0.1 + 0.2), "0.3");
    EXPECT_EQ(plain_text(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(plain_text(2.0 / 3), "0.666666666666667");
    EXPECT_EQ(plain_text(1e20), "100000000000000000000");
    EXPECT_EQ(plain_text(1e-7), "0.0000001");
}

TEST(RoundToInt32, HalvesGoToTheEvenNeighbour) {
    EXPECT_EQ(round_to_int32(0.5), 0);
    EXPECT_EQ(round_to_int32(1.5), 2);
    EXPECT_EQ(round_to_int32(2.5), 2);
    EXPECT_EQ(round_to_int32(-0.5), 0);
    EXPECT_EQ(round_to_int32(-1.5), -2);
    EXPECT_EQ(round_to_int32(-2.5), -2);
    EXPECT_EQ(round_to_int32(2.4999), 2);
    EXPECT_EQ(round_to_int32(2.5001), 3);
}

TEST(RoundToInt32, BeyondThirtyTwoBits) {
    EXPECT_EQ(round_to_int32(2147483647.4), 2147483647);
    EXPECT_EQ(round_to_int32(-2147483648.5), -2147483648LL);
    for (const double value :
         {2147483647.5, -2147483649.0, 1e300, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(thrown_by([&] { round_to_int32(value); }).number(), 6) << value;
    }
}

TEST(ToIndex, NegativeIsOutOfRange) {
    EXPECT_EQ(to_index(0), 0U);
    EXPECT_EQ(to_index(2.5), 2U);
    EXPECT_EQ(to_index(-0.5), 0U);
    EXPECT_EQ(thrown_by([] { to_index(-1); }).number(), 9);
    EXPECT_EQ(thrown_by([] { to_index(1e10); }).number(), 6);
}

} // namespace
} // namespace morvane
