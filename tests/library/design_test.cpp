// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "library/design.h"
#include "library/libcomp_fixture.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

using Box = test::RecordingReporter::Box;

class DescribeDesign : public test::LibraryTest {
  protected:
    std::optional<DesignDescription> describe(const std::string& scale_line) {
        return describe_design(services, design("hangar", scale_line));
    }
};

TEST_F(DescribeDesign, ReadsScaleSizeAndName) {
    const auto description = describe("    SCALE_AGL skip,0,40,65536,051EDB8h,0,0,0,0,0");
    ASSERT_TRUE(description);
    EXPECT_EQ(description->scale, "1");
    EXPECT_EQ(description->size, "40");
    EXPECT_EQ(description->name, "hangar");
    EXPECT_TRUE(reporter.boxes.empty());
}

TEST_F(DescribeDesign, DividesByTheStoredScale) {
    EXPECT_EQ(describe("SCALE_AGL skip,0,40,32768,0,0,0,0,0,0")->scale, "2");
    EXPECT_EQ(describe("SCALE_AGL skip,0,40,131072,0,0,0,0,0,0")->scale, "0.5");
    EXPECT_EQ(describe("SCALE_AGL skip,0,40,020000h,0,0,0,0,0,0")->scale, "0.5");
}

TEST_F(DescribeDesign, LeavesTheSizeAsItStands) {
    EXPECT_EQ(describe("    SCALE_AGL skip,0,0A0h,65536,0,0,0,0,0,0")->size, "0A0h");
}

TEST_F(DescribeDesign, TakesTheFirstScaleLine) {
    const std::string base = design("hangar");
    folder.write("hangar.asm",
                 test::crlf({"    SCALE_AGLX x,0,1,65536,0,0", "    SCALE_AGL x,0,2,65536,0,0",
                             "    SCALE_AGL x,0,3,65536,0,0"}));
    EXPECT_EQ(describe_design(services, base)->size, "2");
}

TEST_F(DescribeDesign, TellsThatThereIsNoScale) {
    EXPECT_FALSE(describe("    SCALE x,0,40,65536,0,0,0"));
    EXPECT_EQ(box(), (Box{"The file " + folder.file("hangar") + ".asm has not SCALE command.",
                          Icon::Exclamation}));
}

TEST_F(DescribeDesign, TellsAScaleLineThatCannotBeUsed) {
    for (const std::string line :
         {"; SCALE_AGL x,0,40,65536,0,0,0", "    SCALE_AGL x,0,40", "    SCALE_AGL x,0,40,0,0,0",
          "    SCALE_AGL x,0,40,wide,0,0",
          "    SCALE_AGL 1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,"
          "8,9,0,1,2,3"}) {
        EXPECT_FALSE(describe(line)) << line;
        EXPECT_EQ(box(),
                  (Box{"Error in file " + folder.file("hangar") + ".asm.", Icon::Exclamation}))
            << line;
    }
}

TEST_F(DescribeDesign, TellsThatTheFilesAreMissing) {
    EXPECT_FALSE(describe_design(services, folder.file("none")));
    ASSERT_EQ(reporter.boxes.size(), 3U);
    EXPECT_EQ(reporter.boxes[0].text,
              "Error ! File does not exist: (" + folder.file("none_0.asm") + ").");
    EXPECT_EQ(reporter.boxes[2], (Box{"Invalid filename", Icon::Exclamation}));
}

TEST(DesignBase, CutsTheLastFourCharacters) {
    EXPECT_EQ(design_base("C:\\designs\\hangar.asm"), "C:\\designs\\hangar");
    EXPECT_EQ(design_base("asm"), "");
}

TEST(SizeValue, TakesDecimalAndHexadecimal) {
    EXPECT_EQ(size_value("40"), 40);
    EXPECT_EQ(size_value(" 12.5 "), 12.5);
    EXPECT_EQ(size_value("0A0h"), 160);
    EXPECT_EQ(size_value("10H "), 16);
    EXPECT_EQ(size_value(""), 0);
    EXPECT_THROW(size_value("wide"), RuntimeError);
    EXPECT_THROW(size_value("h"), RuntimeError);
    EXPECT_THROW(size_value("0A0"), RuntimeError);
}

} // namespace
} // namespace morvane
