// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/include_lines.h"
#include "objects/save.h"
#include "set_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> lines_of(const LineStore& store) {
    std::vector<std::string> lines;
    for (std::size_t i = 1; i <= store.count(); ++i) {
        lines.emplace_back(store.line(i));
    }
    return lines;
}

std::vector<std::string> included(const std::vector<std::string>& lines, std::string_view file) {
    LineStore store(lines);
    const bool added = add_macro_include(store, file);
    EXPECT_EQ(added, lines_of(store) != lines);
    return lines_of(store);
}

TEST(MacroInclude, GoesAfterTheLastLineThatIncludesAnIncFile) {
    EXPECT_THAT(included({"include a.inc", "  INCLUDE B.INC ; b", "include m_0.asm", "x"}, "m.inc"),
                ElementsAre("include a.inc", "  INCLUDE B.INC ; b", "    include m.inc",
                            "include m_0.asm", "x"));
    EXPECT_THAT(included({"x", "\tinclude\ta.inc"}, "m.inc"),
                ElementsAre("x", "\tinclude\ta.inc", "    include m.inc"));
}

TEST(MacroInclude, IsTheFirstLineWhereNoIncFileIsIncluded) {
    EXPECT_THAT(included({"; include a.inc", "include m_0.asm"}, "m.inc"),
                ElementsAre("    include m.inc", "; include a.inc", "include m_0.asm"));
    EXPECT_THAT(included({}, "m.inc"), ElementsAre("    include m.inc"));
}

TEST(MacroInclude, IsWrittenByItsBareName) {
    EXPECT_THAT(included({}, "../inc/m.inc"), ElementsAre("    include m.inc"));
    EXPECT_THAT(included({}, "inc\\m.inc"), ElementsAre("    include m.inc"));
}

TEST(MacroInclude, AFrameThatIncludesItAlreadyStays) {
    for (const std::string line :
         {"include morvane.inc", "\tInclude  C:\\sdk\\MORVANE.INC", "include ../morvane.inc ; ours",
          "include <morvane.inc>", "include \"sdk/morvane.inc\""}) {
        EXPECT_THAT(included({line}, "morvane.inc"), ElementsAre(line));
    }
}

TEST(MacroInclude, OtherWordsAreNoInclude) {
    EXPECT_EQ(included_file("includes morvane.inc"), "");
    EXPECT_EQ(included_file("include"), "");
    EXPECT_EQ(included_file("x include morvane.inc"), "");
    EXPECT_EQ(included_file("    include  my files/a.inc  ; c"), "my files/a.inc");
}

using MacroIncludeOfASet = SetTest;

TEST_F(MacroIncludeOfASet, IsSavedWithTheFrameFile) {
    open(make_model({{}}));
    ASSERT_TRUE(process(1, Kind::Lights).processed);
    include_macros(set, "morvane.inc");
    ASSERT_TRUE(save_set(services, set, base).saved);
    EXPECT_TRUE(folder.read("set.asm").starts_with("    include morvane.inc\r\n"));
}

} // namespace
} // namespace morvane::test
