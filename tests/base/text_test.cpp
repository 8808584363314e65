// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(Trim, RemovesBlanksOnly) {
    EXPECT_EQ(trim("  a b  "), "a b");
    EXPECT_EQ(trim("\ta "), "\ta");
    EXPECT_EQ(trim("   "), "");
}

TEST(CollapseBlanks, KeepsOneBlankOfEachRun) {
    EXPECT_EQ(collapse_blanks("  a   b \t  c "), "a b \t c");
    EXPECT_EQ(collapse_blanks(""), "");
    EXPECT_EQ(collapse_blanks("    "), "");
}

TEST(LetterCase, OnlyTheLettersOfAsciiChange) {
    const std::string lower = "abcdefghijklmnopqrstuvwxyz";
    const std::string upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::string others;
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        if (lower.find(c) == std::string::npos && upper.find(c) == std::string::npos) {
            others += c;
        }
    }
    EXPECT_EQ(lower_case(upper + lower + others), lower + lower + others);
    EXPECT_EQ(upper_case(upper + lower + others), upper + upper + others);
}

} // namespace
} // namespace morvane
