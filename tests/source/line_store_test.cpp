// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "source/line_store.h"
#include "support/thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace morvane {
namespace {

using test::thrown_by;
using testing::ElementsAre;

FileBytes bytes_of(std::string_view text) {
    FileBytes bytes{std::make_unique<char[]>(text.size()), text.size()};
    std::memcpy(bytes.data.get(), text.data(), text.size());
    return bytes;
}

LineStore store_of(std::string_view text) {
    return LineStore(bytes_of(text));
}

/// All lines, the spare element included.
std::vector<std::string> lines(const LineStore& store) {
    std::vector<std::string> result;
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        result.emplace_back(store.line(i));
    }
    return result;
}

TEST(LineStore, EmptyFileHasOnlyTheSpareElement) {
    for (const LineStore& store : {LineStore(), store_of("")}) {
        EXPECT_EQ(store.element0(), "1");
        EXPECT_EQ(store.upper(), 1U);
        EXPECT_EQ(store.count(), 0U);
        EXPECT_THAT(lines(store), ElementsAre(""));
    }
}

TEST(LineStore, ThreeLines) {
    const LineStore store = store_of("one\r\n two \r\n\tthree\r\n");
    EXPECT_EQ(store.element0(), "4");
    EXPECT_THAT(lines(store), ElementsAre("one", " two ", "\tthree", ""));
}

TEST(LineStore, EveryKindOfLineEnd) {
    EXPECT_THAT(lines(store_of("a\nb\rc\r\nd")), ElementsAre("a", "b", "c", "d", ""));
    EXPECT_THAT(lines(store_of("\r\r\n\n\r")), ElementsAre("", "", "", "", ""));
    EXPECT_THAT(lines(store_of("a\n\r\nb")), ElementsAre("a", "", "b", ""));
    EXPECT_THAT(lines(store_of("\n")), ElementsAre("", ""));
    EXPECT_THAT(lines(store_of("a")), ElementsAre("a", ""));
}

TEST(LineStore, OtherBytesAreKept) {
    const std::string odd("\0\x1a\xff\x80\t\x0c", 6);
    EXPECT_THAT(lines(store_of(odd + "\n" + odd)), ElementsAre(odd, odd, ""));
}

TEST(LineStore, VeryLongLines) {
    // The longest line kept as a view, one more, and far more.
    for (const std::size_t length : {8'388'607U, 8'388'608U, 9'000'000U}) {
        const std::string text = std::string(length - 1, 'x') + "y";
        const LineStore store = store_of("a\r\n" + text + "\r\nb\n");
        ASSERT_EQ(store.count(), 3U);
        EXPECT_EQ(store.line(1), "a");
        EXPECT_TRUE(store.line(2) == text) << length;
        EXPECT_EQ(store.line(3), "b");
    }
}

std::vector<std::string> lines_plainly(const std::string& text) {
    std::vector<std::string> result;
    std::string line;
    bool open = false; // something of a line has been read
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n') {
            line += text[i];
            open = true;
            continue;
        }
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            ++i;
        }
        result.push_back(line);
        line.clear();
        open = false;
    }
    if (open) {
        result.push_back(line);
    }
    result.emplace_back();
    return result;
}

TEST(LineStore, SplitsLikeThePlainSplitter) {
    std::mt19937 random(1);
    constexpr std::string_view alphabet("\r\n\r\nab \0", 8);
    for (int i = 0; i < 20'000; ++i) {
        std::string text(random() % 24, ' ');
        for (char& c : text) {
            c = alphabet[random() % alphabet.size()];
        }
        ASSERT_EQ(lines(store_of(text)), lines_plainly(text)) << testing::PrintToString(text);
    }
}

TEST(LineStore, BeginningThatMisleadsAboutTheNumberOfLines) {
    const std::string dense = std::string(100'000, '\n') + std::string(100'000, 'x');
    const std::string sparse = std::string(100'000, 'x') + std::string(100'000, '\n');
    EXPECT_EQ(store_of(dense).count(), 100'001U);
    EXPECT_EQ(store_of(sparse).count(), 100'000U);
}

TEST(LineStore, LinesElsewhereAreOutOfRange) {
    LineStore store = store_of("a\nb\n");
    EXPECT_EQ(thrown_by([&] { store.line(0); }).number(), 9);
    EXPECT_EQ(store.line(3), "");
    EXPECT_EQ(thrown_by([&] { store.line(4); }).number(), 9);
    EXPECT_EQ(thrown_by([&] { store.set_line(0, "x"); }).number(), 9);
    EXPECT_EQ(thrown_by([&] { store.set_line(4, "x"); }).number(), 9);
    EXPECT_EQ(thrown_by([&] { store.comment_out(4); }).number(), 9);
    EXPECT_EQ(thrown_by([&] { store.insert_lines(0, {"x"}); }).number(), 9);
    EXPECT_EQ(thrown_by([&] { store.insert_lines(4, {"x"}); }).number(), 9);
    EXPECT_EQ(thrown_by([&] { store.erase_lines(0, 1); }).number(), 9);
    EXPECT_EQ(thrown_by([&] { store.erase_lines(2, 3); }).number(), 9);
    EXPECT_EQ(thrown_by([&] { store.erase_lines(2, 1); }).number(), 9);
    EXPECT_THAT(lines(store), ElementsAre("a", "b", ""));
}

TEST(LineStore, ChangedLines) {
    LineStore store = store_of("a\r\n  b\r\nc");
    store.set_line(1, "new");
    store.comment_out(2);
    store.set_line(3, "");
    EXPECT_THAT(lines(store), ElementsAre("new", ";   b", "", ""));
    EXPECT_EQ(store.element0(), "4");
    store.set_line(4, "spare");
    EXPECT_THAT(lines(store), ElementsAre("new", ";   b", "", "spare"));
    EXPECT_EQ(store.count(), 3U);
}

TEST(LineStore, InsertedAndRemovedLines) {
    LineStore store = store_of("a\nb\nc\n");
    store.insert_lines(2, {"x", "", "y"});
    EXPECT_THAT(lines(store), ElementsAre("a", "x", "", "y", "b", "c", ""));
    EXPECT_EQ(store.element0(), "7");
    store.erase_lines(1, 3);
    EXPECT_THAT(lines(store), ElementsAre("y", "b", "c", ""));
    store.insert_lines(4, {"last"});
    store.append_line("behind");
    EXPECT_THAT(lines(store), ElementsAre("y", "b", "c", "last", "behind", ""));
    EXPECT_EQ(store.element0(), "6");
    store.insert_lines(1, {});
    store.erase_lines(1, 5);
    EXPECT_THAT(lines(store), ElementsAre(""));
}

TEST(LineStore, CopyWithLinesAtSeveralPlaces) {
    const std::vector<std::string> first{"x", ""};
    const std::vector<std::string> none;
    const std::vector<std::string> last{"end"};
    LineStore store = store_of("a\r\nold\r\nc\r\n");
    store.set_line(2, "b");
    EXPECT_THAT(lines(store.with({{1, &first}, {3, &none}, {3, &last}, {3, &first}, {4, &last}})),
                ElementsAre("x", "", "a", "b", "end", "x", "", "c", "end", ""));
    EXPECT_THAT(lines(store), ElementsAre("a", "b", "c", ""));
    EXPECT_EQ(thrown_by([&] { store.with({{1, &last}, {5, &last}}); }).number(), 9);
}

TEST(LineStore, ViewsOutliveChanges) {
    LineStore store = store_of("a\nb\n");
    const std::string_view from_file = store.line(1);
    store.set_line(1, "changed for the first time");
    const std::string_view changed = store.line(1);
    store.set_line(1, "again");
    store.insert_lines(1, {"x"});
    EXPECT_EQ(from_file, "a");
    EXPECT_EQ(changed, "changed for the first time");
}

TEST(LineStore, CopiesAreIndependent) {
    LineStore store = store_of("a\nb\n");
    store.set_line(2, "changed");
    LineStore copy = store;
    copy.set_line(1, "of the copy");
    copy.erase_lines(2, 2);
    store.append_line("of the first");
    EXPECT_THAT(lines(store), ElementsAre("a", "changed", "of the first", ""));
    EXPECT_THAT(lines(copy), ElementsAre("of the copy", ""));
    store = copy;
    EXPECT_THAT(lines(store), ElementsAre("of the copy", ""));
}

TEST(LineStore, MadeOfTexts) {
    EXPECT_THAT(lines(LineStore(std::vector<std::string>{"a", "", "b"})),
                ElementsAre("a", "", "b", ""));
}

/// Does the same edit to a store and to a plain vector, whose last text is the spare.
void edit_both(std::mt19937& random, LineStore& store, std::vector<std::string>& plain) {
    const std::size_t at = 1 + random() % store.upper();
    const auto place = plain.begin() + static_cast<std::ptrdiff_t>(at) - 1;
    const std::string text = "t" + std::to_string(random() % 100);
    switch (random() % 5) {
    case 0:
        store.set_line(at, text);
        *place = text;
        break;
    case 1:
        store.insert_lines(at, {text, "", text});
        plain.insert(place, {text, "", text});
        break;
    case 2:
        store.append_line(text);
        plain.insert(plain.end() - 1, text);
        break;
    case 3:
        store.comment_out(at);
        *place = "; " + *place;
        break;
    default:
        if (at < store.upper()) {
            store.erase_lines(at, at);
            plain.erase(place);
        }
    }
}

TEST(LineStore, EditsLikeAPlainVector) {
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        LineStore store = store_of("one\r\ntwo\nthree");
        std::vector<std::string> plain{"one", "two", "three", ""};
        for (int i = 0; i < 50; ++i) {
            edit_both(random, store, plain);
        }
        ASSERT_EQ(lines(store), plain);
        ASSERT_EQ(store.element0(), std::to_string(plain.size()));
    }
}

} // namespace
} // namespace morvane
