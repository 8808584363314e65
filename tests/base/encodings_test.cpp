// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/encodings.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(Windows1252, PlainTextIsTheSameInBoth) {
    EXPECT_EQ(to_utf8("Hangar 1"), "Hangar 1");
    EXPECT_EQ(from_utf8("Hangar 1"), "Hangar 1");
    EXPECT_EQ(from_utf8(""), "");
}

TEST(Windows1252, LettersWithAccentsTakeTwoBytesInUtf8) {
    EXPECT_EQ(to_utf8("Z\xFCrich"), "Z\xC3\xBCrich");
    EXPECT_EQ(from_utf8("Z\xC3\xBCrich"), "Z\xFCrich");
}

TEST(Windows1252, TheBytesOfItsOwnStandForTheirCharacters) {
    EXPECT_EQ(to_utf8("\x80"), "\xE2\x82\xAC");     // the euro sign
    EXPECT_EQ(to_utf8("\x85"), "\xE2\x80\xA6");     // an ellipsis
    EXPECT_EQ(to_utf8("\x99"), "\xE2\x84\xA2");     // the trade mark sign
    EXPECT_EQ(to_utf8("\x9F"), "\xC5\xB8");         // Y with diaeresis
    EXPECT_EQ(from_utf8("\xE2\x80\x93"), "\x96");   // an en dash
    EXPECT_EQ(from_utf8("\xC2\x80"), std::nullopt); // the control character 80 has no byte
    EXPECT_EQ(from_utf8("\xC2\x81"), std::string("\x81"));
}

TEST(Windows1252, EveryByteSurvivesTheWayThereAndBack) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    const std::string utf8 = to_utf8(all);
    EXPECT_EQ(valid_utf8_length(utf8), utf8.size());
    EXPECT_EQ(first_foreign_character(utf8), "");
    EXPECT_EQ(from_utf8(utf8), all);
}

TEST(Windows1252, CharactersThatItLacksAreNamed) {
    EXPECT_EQ(from_utf8("Pra\xC5\x88"), std::nullopt);
    EXPECT_EQ(first_foreign_character("Pra\xC5\x88 x"), "\xC5\x88");
    EXPECT_EQ(first_foreign_character("\xF0\x9F\x9B\xA9"), "\xF0\x9F\x9B\xA9");
    EXPECT_EQ(first_foreign_character("a\xC5"), "") << "no character at all";
}

TEST(Windows1252, TextThatIsNoUtf8IsFoundOut) {
    for (const std::string text : {
             "\xFC",             // a letter of Windows-1252
             "\x80",             // a following byte without a first one
             "\xC3",             // cut off
             "\xE2\x82",         // cut off
             "\xC0\xAF",         // longer than needed
             "\xE0\x80\xAF",     // longer than needed
             "\xED\xA0\x80",     // half of a pair
             "\xF4\x90\x80\x80", // beyond the last character
             "\xC3(",            // not followed up
         }) {
        EXPECT_EQ(valid_utf8_length("ab" + text), 2U) << text;
        EXPECT_EQ(from_utf8(text), std::nullopt);
    }
    EXPECT_EQ(valid_utf8_length("\xF0\x9F\x9B\xA9"), 4U);
}

// UTF-8 written down plainly, by the table of its bits.
std::string utf8_of(std::uint32_t character) {
    const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
    const auto tail = [&](unsigned shift) { return byte(0x80U | (character >> shift & 0x3FU)); };
    if (character < 0x80) {
        return {byte(character)};
    }
    if (character < 0x800) {
        return {byte(0xC0U | character >> 6U), tail(0)};
    }
    if (character < 0x10000) {
        return {byte(0xE0U | character >> 12U), tail(6), tail(0)};
    }
    return {byte(0xF0U | character >> 18U), tail(12), tail(6), tail(0)};
}

TEST(Windows1252, EveryOtherFirstByteIsNone) {
    for (const int lead : {0x80, 0x91, 0xBF, 0xC0, 0xC1, 0xF5, 0xF8, 0xF9, 0xFC, 0xFF}) {
        for (const char tail : {'\x80', '\x90', '\xBF'}) {
            const std::string text = static_cast<char>(lead) + std::string(3, tail);
            EXPECT_EQ(valid_utf8_length(text), 0U) << lead;
        }
    }
}

TEST(Windows1252, EveryCharacterOfUtf8IsWellFormedAndNothingElse) {
    std::size_t wrong = 0;
    for (std::uint32_t character = 1; character <= 0x110FFF; ++character) {
        const std::string text = utf8_of(character);
        const bool proper = character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
        wrong += valid_utf8_length(text) == (proper ? text.size() : 0) ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0U);
}

TEST(SourceText, EncodesUtf8AndKeepsWhatIsNot) {
    EXPECT_EQ(source_text("plain"), "plain");
    EXPECT_EQ(source_text("h\xC3\xBCtte"), "h\xFCtte");
    EXPECT_EQ(source_text("h\xFCtte"), "h\xFCtte");
    EXPECT_EQ(source_text("\xE2\x82\xAC"), "\x80");
    EXPECT_EQ(source_text("\xD0\x96"), std::nullopt);
}

TEST(ReadableText, DecodesOnlyWhatIsNotUtf8) {
    EXPECT_EQ(readable_text("caf\xE9 in h\xC3\xBCtte"), "caf\xC3\xA9 in h\xC3\xBCtte");
    EXPECT_EQ(readable_text("\xE9"), "\xC3\xA9");
    EXPECT_EQ(readable_text("\xC3"), "\xC3\x83");
    EXPECT_EQ(readable_text(""), "");
}

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
} // namespace morvane
