// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/export_watch.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

using std::chrono::milliseconds;

PairStamps pair(std::uint64_t model, std::uint64_t frame) {
    FileStamp a;
    a.size = model;
    FileStamp b;
    b.size = frame;
    return {a, b};
}

class QuietPair : public ::testing::Test {
  protected:
    bool look(const PairStamps& now, int after_ms) {
        return is_pair_quiet(watch_, now, start_ + milliseconds(after_ms));
    }

    ExportWatch::Clock::time_point start_{};
    ExportWatch watch_ = begin_export_watch(pair(1, 1), start_);
};

TEST_F(QuietPair, AnUnchangedPairIsLeftAlone) {
    EXPECT_FALSE(look(pair(1, 1), 0));
    EXPECT_FALSE(look(pair(1, 1), 5000));
}

TEST_F(QuietPair, AChangedPairIsReadAfterASecondWithoutAChange) {
    EXPECT_FALSE(look(pair(2, 1), 100));
    EXPECT_FALSE(look(pair(3, 1), 600)); // it is still growing
    EXPECT_FALSE(look(pair(3, 1), 1599));
    EXPECT_TRUE(look(pair(3, 1), 1600));
    watch_.taken = watch_.seen;
    EXPECT_FALSE(look(pair(3, 1), 9000));
}

TEST_F(QuietPair, TheSecondFileBeginsTheWaitAnew) {
    EXPECT_FALSE(look(pair(2, 1), 100));
    EXPECT_FALSE(look(pair(2, 2), 900)); // 0.8 s after the first
    EXPECT_FALSE(look(pair(2, 2), 1100));
    EXPECT_TRUE(look(pair(2, 2), 1900));
}

TEST_F(QuietPair, AMissingFileIsWaitedFor) {
    EXPECT_FALSE(look({std::nullopt, pair(1, 1).frame}, 100));
    EXPECT_FALSE(look({std::nullopt, pair(1, 1).frame}, 5000));
    EXPECT_FALSE(look(pair(1, 2), 5100));
    EXPECT_TRUE(look(pair(1, 2), 6100));
}

TEST_F(QuietPair, ATimeThatChangesIsAChange) {
    PairStamps touched = pair(1, 1);
    touched.frame->modified_ns = 5;
    EXPECT_FALSE(look(touched, 0));
    EXPECT_TRUE(look(touched, 1000));
}

const std::string whole = "VERTEX_LIST_BEGIN\r\nVERTEX_LIST_END\r\nMATERIAL_LIST_BEGIN\r\n"
                          "MATERIAL_LIST_END\r\n  DRAW_TRI_BEGIN 0, 3\r\n  DRAW_TRI 0, 1, 2\r\n"
                          "  DRAW_TRI_END\r\nBGL_END\r\nBGL_RETURN\r\n";

std::string without(const std::string& line) {
    std::string text = whole;
    return text.erase(text.find(line), line.size());
}

TEST(EndMarks, AWholeModelFileHasThem) {
    EXPECT_EQ(model_incompleteness(whole), "");
    EXPECT_EQ(model_incompleteness("BGL_END"), "");
    EXPECT_EQ(model_incompleteness("\tBGL_END ; the end\n"), "");
}

TEST(EndMarks, AModelFileThatLacksOneIsIncomplete) {
    EXPECT_NE(model_incompleteness(""), "");
    EXPECT_NE(model_incompleteness(without("BGL_END\r\n")), "");
    EXPECT_NE(model_incompleteness(without("VERTEX_LIST_END\r\n")), "");
    EXPECT_NE(model_incompleteness(without("MATERIAL_LIST_BEGIN\r\n")), "");
    EXPECT_NE(model_incompleteness(without("DRAW_TRI_END\r\n")), "");
    EXPECT_NE(model_incompleteness("; BGL_END\n"), "");
    EXPECT_NE(model_incompleteness("BGL_ENDING\n"), "");
}

TEST(EndMarks, EveryPieceOfAModelFileWithoutItsEndIsIncomplete) {
    for (std::size_t length = 0; length < whole.find("BGL_END") + 7; ++length) {
        EXPECT_NE(model_incompleteness(whole.substr(0, length)), "") << length;
    }
}

TEST(EndMarks, CommentsDoNotCount) {
    EXPECT_EQ(model_incompleteness("; DRAW_TRI_BEGIN 0, 3\nBGL_END\n"), "");
}

TEST(EndMarks, AFrameFileEndsWithEnd) {
    for (const std::string text : {"END", "x\r\n    END\r\n\r\n  \r\n", "END ; all\n", "end\n"}) {
        EXPECT_EQ(frame_incompleteness(text), "") << text;
    }
    for (const std::string text : {"", "\r\n", "x", "END\nx\n", "; END", "BGL_END", "ENDS\n"}) {
        EXPECT_NE(frame_incompleteness(text), "") << text;
    }
}

} // namespace
} // namespace morvane
