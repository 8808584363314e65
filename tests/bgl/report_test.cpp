// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/report.h"
#include "bgl_files.h"
#include "support/recording_reporter.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using test::crlf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class HeaderReport : public ::testing::Test {
  protected:
    std::string report(bool show_raw = false) {
        box.clear();
        report_header(box, header, extension, show_raw);
        return box.text();
    }

    test::TempFolder folder;
    test::RecordingReporter reporter;
    std::unique_ptr<Disk> disk = make_system_disk();
    OutputBox box{{*disk, reporter}, folder.path()};
    BglHeader header{.FL_world_set = 1};
    HeaderExtension extension;
};

std::string with_plain_line_ends(std::string text) {
    std::erase(text, '\r');
    return text;
}

TEST_F(HeaderReport, EveryFieldAgainstTheFileWrittenByHand) {
    const std::string golden = test::source_folder() + "/tests/golden/bgl-every-field/";
    const std::string bytes = test::read_file(golden + "in/every_field.bgl");
    ASSERT_EQ(bytes.size(), 168U);
    header = decode_header(bytes);
    extension = decode_extension(std::string_view(bytes).substr(128));
    // There the name of the file stands before the report, and its list of objects behind.
    EXPECT_EQ("every_field.bgl\n" + with_plain_line_ends(report(true)) +
                  "Library Objects : 0\n"
                  "=============================================\n",
              test::read_file(golden + "stdout"));
}

TEST_F(HeaderReport, EmptyHeaderOfOldFormat) {
    EXPECT_EQ(report(), crlf({
                            " This is a Visual/Default data file",
                            " Old file format (pre fs-7) ",
                            " Lat bounds : 0* 0.0 to 0* 0.0",
                            " Lon bounds : 0* 0.0 to 0* 0.0",
                            " UNCOMPRESSED file (FL_Spare2=0)",
                            "    no object data",
                            "    no library data",
                            "    no terrain data",
                            "    no msa data",
                            "    no VOR data",
                            "    no ADF data",
                            "    no facility data",
                            "    no dynamic data",
                            "    no Ecxeption data",
                            "    no misc data",
                            "    no mag.var.data",
                            "    no afd data",
                            "=============================================",
                        }));
}

TEST_F(HeaderReport, InvalidHeaderIsOneLine) {
    header.FL_world_set = 2;
    EXPECT_EQ(report(true), "This is not a valid bgl file.\r\n");
}

TEST_F(HeaderReport, KindThreeIsValidAndHasNoKindLine) {
    header.FL_world_set = 3;
    EXPECT_THAT(report(), StartsWith(" Old file format (pre fs-7) \r\n"));
}

TEST_F(HeaderReport, KindFourIsSpecial) {
    header.FL_world_set = 4;
    EXPECT_THAT(report(), StartsWith(" This is a Special data file\r\n"));
}

TEST_F(HeaderReport, StaleExtensionCountsForNothing) {
    extension.facility2_data = 77;
    const std::string text = report(true);
    EXPECT_THAT(text, HasSubstr("    no afd data\r\n"));
    EXPECT_THAT(text, Not(HasSubstr("guid_1")));
    EXPECT_THAT(text, HasSubstr(" 126 FL_spare3:           0\r\n============"));
}

TEST_F(HeaderReport, CompressedFileShowsItsFlag) {
    header.FL_spare2 = -1;
    EXPECT_THAT(report(), HasSubstr(" COMPRESSED file (FL_Spare2=FFFFFFFF)\r\n"));
}

TEST_F(HeaderReport, NegativeShortFieldHasFourDigits) {
    header.FL_spare3 = -2;
    dump_raw_header(box, header, extension);
    EXPECT_THAT(box.text(), HasSubstr(" 126 FL_spare3:           FFFE\r\n"));
    EXPECT_THAT(box.text(), StartsWith("-------------------- Raw header data\r\n"
                                       " 000 FL_world_set:        1\r\n"));
}

TEST(DegMinText, ValuesFromTheGuide) {
    EXPECT_EQ(deg_min_text(-1.5), "-2* 30.0");
    EXPECT_EQ(deg_min_text(lat_degrees(-10001750)), "-91* 59.9985");
    EXPECT_EQ(deg_min_text(lat_degrees(10001750)), "90* 0.0015");
    EXPECT_EQ(deg_min_text(lon_degrees(-2147483647 - 1)), "-180* 0.0");
    EXPECT_EQ(deg_min_text(lon_degrees(0x7FFFFFFF)), "179* 60.0");
    EXPECT_EQ(deg_min_text(0), "0* 0.0");
}

TEST(LatDegrees, DoesNotOverflow) {
    EXPECT_NEAR(lat_degrees(-10001750), -90.0000256, 0.00000005);
    EXPECT_NEAR(lat_degrees(2147483647), 2147483647.0 / 20003494.319128808 * 180, 1e-6);
    EXPECT_EQ(lon_degrees(-2147483647 - 1), -180);
}

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
