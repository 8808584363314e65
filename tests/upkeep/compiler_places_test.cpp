// SPDX-License-Identifier: GPL-3.0-or-later
#include "upkeep/compiler_places.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

CompilerPlace only_place(std::string_view output) {
    const std::vector<CompilerPlace> places = compiler_places(output);
    EXPECT_THAT(places, SizeIs(1)) << output;
    return places.empty() ? CompilerPlace() : places.front();
}

TEST(CompilerPlaces, ALineThatBeginsWithFileAndLineNamesAPlace) {
    const CompilerPlace place =
        only_place("Assembling: a.asm\r\na_0.asm(123) : error A2008: syntax error\r\n");
    EXPECT_EQ(place.file, "a_0.asm");
    EXPECT_EQ(place.line, 123U);
    EXPECT_EQ(place.line_of_output, 2U);
    EXPECT_EQ(place.begin, 0U);
    EXPECT_EQ(place.length, std::string_view("a_0.asm(123)").size());
}

TEST(CompilerPlaces, BothManners) {
    EXPECT_EQ(only_place("C:\\scenery\\a 1.asm(7): warning").file, "C:\\scenery\\a 1.asm");
    EXPECT_EQ(only_place("/home/x/a.asm:12:3: error: no").line, 12U);
    EXPECT_EQ(only_place("C:\\x\\a.asm:12: error").file, "C:\\x\\a.asm");
    EXPECT_EQ(only_place("  a.asm(5,9): error").line, 5U);
    EXPECT_EQ(only_place("  a.asm(5,9): error").begin, 2U);
}

TEST(CompilerPlaces, WhatNamesNoPlaceIsNone) {
    for (const std::string_view line :
         {"", "compiling a.asm", "12 errors (3)", "(12) : error", "Done: 12: 13", "a.asm(x)",
          "a.asm()", "a.asm(12", "a.asm(0): error", "see chapter (3) of it",
          "a.asm(99999999999999999999999): error"}) {
        EXPECT_THAT(compiler_places(line), IsEmpty()) << line;
    }
}

TEST(CompilerPlaces, EveryLineIsLookedAt) {
    EXPECT_THAT(compiler_places("a.asm(1): x\nb.asm(2): y\n\nc.inc(3): z"), SizeIs(3));
}

#ifndef _WIN32
TEST(CompilerPlaces, AFileIsInTheFolderWhereTheCompilerRan) {
    EXPECT_EQ(compiled_file("/x/set", "a_0.asm"), "/x/set/a_0.asm");
    EXPECT_EQ(compiled_file("/x/set", "/y/a.asm"), "/y/a.asm");
    EXPECT_EQ(compiled_file("/x/set", "Z:\\y\\a.asm"), "/y/a.asm");
    EXPECT_EQ(compiled_file("/x/set", "C:\\work\\a.asm"), "/x/set/a.asm");
    EXPECT_EQ(compiled_file("/x/set", "sub\\a.asm"), "/x/set/sub/a.asm");
}
#endif

} // namespace
} // namespace morvane
