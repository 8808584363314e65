#include "core/text.h"

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

} // namespace
} // namespace morvane
