// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "bgl/report.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

const char* const overflow_message = "Too many data for output box. The complete list can be "
                                     "examined from file 'Out.txt'.";

class OutputBoxTest : public ::testing::Test {
  protected:
    // Fills the box up to `size` characters without a line break.
    void fill(std::size_t size) { box.out_line(std::string(size - box.text().size(), 'x'), true); }

    test::TempFolder folder;
    test::RecordingReporter reporter;
    test::FaultyDisk disk;
    OutputBox box{{disk, reporter}, folder.path()};
};

TEST_F(OutputBoxTest, LinesEndInCrLfUnlessToldNotTo) {
    box.out_line("a", true);
    box.out_line("b");
    box.out_line("");
    EXPECT_EQ(box.text(), "ab\r\n\r\n");
}

TEST_F(OutputBoxTest, BreakAtTheLimitOverflows) {
    fill(65400);
    EXPECT_TRUE(reporter.boxes.empty());
    box.out_line("");
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0],
              (test::RecordingReporter::Box{overflow_message, Icon::Exclamation}));
    EXPECT_EQ(box.text(), "");
    EXPECT_EQ(folder.read("out.txt"), std::string(65400, 'x') + "\r\n\r\n");
}

TEST_F(OutputBoxTest, OneCharacterBelowTheLimitDoesNot) {
    fill(65398);
    box.out_line("");
    EXPECT_EQ(box.text().size(), 65400U);
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_FALSE(folder.has("out.txt"));
}

TEST_F(OutputBoxTest, ReachingTheLimitExactlyOverflows) {
    fill(65399);
    box.out_line("");
    EXPECT_EQ(reporter.boxes.size(), 1U);
}

TEST_F(OutputBoxTest, TextWithoutBreakNeverOverflows) {
    fill(200000);
    box.out_line("", true);
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_EQ(box.text().size(), 200000U);
}

TEST_F(OutputBoxTest, EveryOverflowHasItsMessageAndLaterOnesAppend) {
    folder.write("out.txt", "of an earlier command");
    box.begin_command(false);
    std::string expected;
    for (char c : {'1', '2', '3'}) {
        box.out_line(std::string(65400, c));
        expected += std::string(65400, c) + "\r\n\r\n";
    }
    EXPECT_EQ(reporter.boxes.size(), 3U);
    EXPECT_EQ(folder.read("out.txt"), expected);
    box.out_line("end");
    box.write_results();
    EXPECT_EQ(folder.read("out.txt"), expected + "end\r\n\r\n");
    EXPECT_EQ(box.text(), "end\r\n");
}

TEST_F(OutputBoxTest, ResultsOfACommandReplaceThoseOfTheLast) {
    box.begin_command(false);
    box.out_line(std::string(65400, '1'));
    box.write_results();
    box.begin_command(false);
    box.out_line("second");
    box.write_results();
    EXPECT_EQ(folder.read("out.txt"), "second\r\n\r\n");
}

TEST_F(OutputBoxTest, TheBoxGrowsAcrossCommandsUnlessCleared) {
    box.out_line("first");
    box.begin_command(false);
    box.out_line("second");
    EXPECT_EQ(box.text(), "first\r\nsecond\r\n");
    box.begin_command(true);
    EXPECT_EQ(box.text(), "");
}

TEST_F(OutputBoxTest, AnOnlookerSeesAllOfTheReport) {
    std::string seen;
    int cleared = 0;
    box.on_text = [&](std::string_view text) { seen += text; };
    box.on_clear = [&] { ++cleared; };
    box.out_line("a", true);
    box.out_line(std::string(65400, 'x'));
    box.out_line("b");
    EXPECT_EQ(seen, "a" + std::string(65400, 'x') + "\r\nb\r\n");
    EXPECT_EQ(cleared, 1);
}

TEST_F(OutputBoxTest, AFailedWriteKeepsTheText) {
    fill(65400);
    disk.fail_at(1, ErrorNumber::DiskFull);
    EXPECT_THROW(box.out_line(""), RuntimeError);
    EXPECT_EQ(box.text().size(), 65402U);
    disk.fail_at(0);
    box.write_results();
    EXPECT_EQ(folder.read("out.txt").size(), 65404U);
}

} // namespace
} // namespace morvane
