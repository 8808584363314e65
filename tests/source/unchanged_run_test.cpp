// SPDX-License-Identifier: GPL-3.0-or-later

// Writing long stretches of a file in one piece must give what writing line by line gives.

#include "source/line_store.h"
#include "source/source_set.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

LineStore store_of(std::string_view text) {
    FileBytes bytes;
    bytes.data = std::make_unique<char[]>(text.size());
    bytes.size = text.size();
    text.copy(bytes.data.get(), text.size());
    return LineStore(std::move(bytes));
}

std::string written(const LineStore& store) {
    std::string text;
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        text += std::string(store.line(i)) + "\r\n";
    }
    return text;
}

std::string saved(const LineStore& store) {
    const TempFolder folder;
    const auto disk = make_system_disk();
    save_array2file(*disk, folder.file("saved"), store);
    return folder.read("saved");
}

TEST(UnchangedRun, TakesLinesUpToTheLastOneAsked) {
    const LineStore store = store_of("one\r\n\r\nthree\r\nfour\r\n");
    EXPECT_EQ(store.unchanged_run(1, 3).bytes, "one\r\n\r\nthree\r\n");
    EXPECT_EQ(store.unchanged_run(1, 3).count, 3U);
    EXPECT_EQ(store.unchanged_run(4, 5).bytes, "four\r\n");
}

TEST(UnchangedRun, StopsBeforeAChangedLine) {
    LineStore store = store_of("one\r\ntwo\r\nthree\r\n");
    store.comment_out(2);
    EXPECT_EQ(store.unchanged_run(1, 3).bytes, "one\r\n");
    EXPECT_EQ(store.unchanged_run(2, 3).count, 0U);
    EXPECT_EQ(store.unchanged_run(3, 3).bytes, "three\r\n");
}

TEST(UnchangedRun, LeavesOutALastLineWithoutAnEnd) {
    const LineStore store = store_of("one\r\ntwo");
    EXPECT_EQ(store.unchanged_run(1, 2).bytes, "one\r\n");
    EXPECT_EQ(store.unchanged_run(2, 2).count, 0U);
}

TEST(UnchangedRun, IsEmptyWhereOtherLineEndsOccur) {
    // Two bytes lie between "a" and "b" once the empty line is gone, but they are no CR LF.
    LineStore store = store_of("a\n\nb\r\nc\r\n");
    store.erase_lines(2, 2);
    EXPECT_EQ(store.unchanged_run(1, 2).count, 0U);
    EXPECT_EQ(saved(store), "a\r\nb\r\nc\r\n\r\n");
}

TEST(UnchangedRun, SavesLikeLineByLineAfterRandomChanges) {
    std::mt19937 random(7);
    const auto pick = [&](std::size_t below) { return random() % below; };
    for (int round = 0; round < 60; ++round) {
        std::string text;
        const bool mixed = round % 2 == 0;
        for (std::size_t i = pick(30); i > 0; --i) {
            text += std::string(pick(4), 'x') + (mixed && pick(4) == 0 ? "\n" : "\r\n");
        }
        LineStore store = store_of(text + (pick(2) == 0 ? "" : "end"));
        for (std::size_t i = pick(12); i > 0; --i) {
            const std::size_t line = 1 + pick(store.upper());
            if (line < store.upper() && pick(3) == 0) {
                store.erase_lines(line, line);
            } else if (pick(2) == 0) {
                store.insert_lines(line, {"", "new"});
            } else {
                store.comment_out(line);
            }
        }
        ASSERT_EQ(saved(store), written(store)) << "round " << round;
    }
}

} // namespace
} // namespace morvane::test
