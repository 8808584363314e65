#include "bgl/object_lines.h"
#include "bgl_files.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

LibraryObject example() {
    const auto word = static_cast<std::int32_t>(0xAAAAAAAA);
    return test::listed({.guid = {word, word, word, 1}, .power = 100, .stored_scale = 65536});
}

TEST(AnalysisLine, Example) {
    EXPECT_EQ(analysis_line(example()),
              " 0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h, 1.0 0 100 NewObject");
}

TEST(AnalysisLine, NoScaleLeavesTwoBlanks) {
    LibraryObject object = example();
    object.stored_scale = 0;
    EXPECT_EQ(analysis_line(object),
              " 0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h, 0.0  0 100 NewObject");
}

TEST(SearchLine, Example) {
    EXPECT_EQ(search_line(example()),
              "0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h,1.0,0,NewObject");
}

TEST(SearchLine, NoScaleKeepsItsBlank) {
    LibraryObject object = example();
    object.stored_scale = 0;
    object.type = -7;
    EXPECT_EQ(search_line(object), "0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h,0.0 ,-7,NewObject");
}

TEST(SearchLine, ScaleHasOneToThreeDecimals) {
    LibraryObject object = example();
    object.guid = {0, 0, 0, 0};
    object.name = "  ";
    const auto line = [&](std::int32_t stored_scale) {
        object.stored_scale = stored_scale;
        return search_line(object).substr(44);
    };
    EXPECT_EQ(line(32768), "2.0,0,");
    EXPECT_EQ(line(131072), "0.5,0,");
    EXPECT_EQ(line(524288), "0.125,0,");
    EXPECT_EQ(line(196608), "0.333,0,");
    EXPECT_EQ(line(-65536), "-1.0,0,");
}

} // namespace
} // namespace morvane
