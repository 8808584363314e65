// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/wide_text.h"

#include <gtest/gtest.h>

namespace morvane::test {
namespace {

// Spelled by number, so that the test does not lean on how a compiler reads its source.
std::wstring units(std::initializer_list<int> values) {
    std::wstring result;
    for (const int value : values) {
        result += static_cast<wchar_t>(value);
    }
    return result;
}

TEST(WideText, TurnsUtf8IntoUnitsAndBack) {
    EXPECT_EQ(wide_text("a.asm"), L"a.asm");
    EXPECT_EQ(wide_text("\xC3\xA4\xE4\xBC\x9A"), units({0xE4, 0x4F1A}));
    EXPECT_EQ(narrow_text(units({0xE4, 0x4F1A})), "\xC3\xA4\xE4\xBC\x9A");
    EXPECT_EQ(wide_text("\xF0\x9F\x9B\xAB"), units({0xD83D, 0xDEEB}));
    EXPECT_EQ(narrow_text(units({0xD83D, 0xDEEB})), "\xF0\x9F\x9B\xAB");
    EXPECT_EQ(wide_text(""), L"");
    EXPECT_EQ(narrow_text(L""), "");
}

TEST(WideText, EveryUnitSurvivesTheWayThereAndBack) {
    for (int unit = 1; unit <= 0xFFFF; ++unit) {
        EXPECT_EQ(wide_text(narrow_text(units({unit, 'x'}))), units({unit, 'x'})) << unit;
    }
}

TEST(WideText, EveryPairSurvivesTheWayThereAndBack) {
    for (int low = 0xDC00; low <= 0xDFFF; ++low) {
        const std::wstring pair = units({0xD800 + (low - 0xDC00), low});
        EXPECT_EQ(narrow_text(pair).size(), 4U);
        EXPECT_EQ(wide_text(narrow_text(pair)), pair);
    }
}

TEST(WideText, NoTwoUnitsButAPairAreTakenForOne) {
    const std::initializer_list<int> some{0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000};
    for (const int first : some) {
        for (const int second : some) {
            const bool pair =
                first >= 0xD800 && first <= 0xDBFF && second >= 0xDC00 && second <= 0xDFFF;
            EXPECT_EQ(narrow_text(units({first, second})).size(), pair ? 4U : 6U)
                << first << " " << second;
        }
    }
}

TEST(WideText, WhatIsNotUtf8IsTakenForWindows1252) {
    EXPECT_EQ(wide_text("\xFC"
                        "ber"),
              units({0xFC, 'b', 'e', 'r'}));
    EXPECT_EQ(wide_text("\x80"), units({0x20AC}));
    EXPECT_EQ(wide_text("\xF8\xFF"), units({0xF8, 0xFF}));
    // Cut off, too long for what it says, beyond the last character.
    EXPECT_EQ(wide_text("\xC3"), units({0xC3}));
    EXPECT_EQ(wide_text("\xC3("), units({0xC3, '('}));
    EXPECT_EQ(wide_text("\xC0\xAF"), units({0xC0, 0xAF}));
    EXPECT_EQ(wide_text("\xF4\x90\x80\x80"), units({0xF4, 0x90, 0x20AC, 0x20AC}));
}

} // namespace
} // namespace morvane::test
