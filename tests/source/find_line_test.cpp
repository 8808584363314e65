// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/text.h"
#include "source/find_line.h"
#include "support/thrown.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace morvane {
namespace {

using test::thrown_by;

LineStore sample() {
    return LineStore(std::vector<std::string>{"    SCALE_AGL  a,b", "  BGL_END_X", "bgl_end",
                                              "model  label   BGLCODE", "BGL_END"});
}

TEST(FindLine, LowerCaseKeyMatchesUpperCaseLine) {
    EXPECT_EQ(find_line("scale_agl", sample(), 1), 1U);
    EXPECT_EQ(find_line("Bgl_End", sample(), 3), 3U);
}

TEST(FindLine, MatchesAPrefix) {
    EXPECT_EQ(find_line("BGL_END", sample(), 1), 2U);
    EXPECT_EQ(find_line("BGL_END_XY", sample(), 1), 0U);
}

TEST(FindLine, BlanksOfTheKeyAreCollapsed) {
    EXPECT_EQ(find_line("  model   label ", sample(), 1), 4U);
    EXPECT_EQ(find_line("model label", sample(), 1), 4U);
    EXPECT_EQ(find_line("model label bglcode", sample(), 1), 4U);
}

TEST(FindLine, SearchesBackward) {
    EXPECT_EQ(find_line("BGL_END", sample(), 6, true), 5U);
    EXPECT_EQ(find_line("BGL_END", sample(), 4, true), 3U);
    EXPECT_EQ(find_line("BGL_END", sample(), 1, true), 0U);
    EXPECT_EQ(find_line("BGL_END", sample(), 0, true), 0U);
}

TEST(FindLine, NothingFound) {
    EXPECT_EQ(find_line("NOWHERE", sample(), 1), 0U);
    EXPECT_EQ(find_line("BGL_END", sample(), 7), 0U);
    EXPECT_EQ(find_line("BGL_END", LineStore(), 1), 0U);
}

TEST(FindLine, SpareElementIsSearchedToo) {
    LineStore store(std::vector<std::string>{"a"});
    store.set_line(2, "BGL_END");
    EXPECT_EQ(find_line("BGL_END", store, 1), 2U);
}

TEST(FindLine, ElementZeroIsComparedAndItsIndexMeansNothingFound) {
    const LineStore store(std::vector<std::string>{"a", "3 b"});
    EXPECT_EQ(store.element0(), "3");
    EXPECT_EQ(find_line("3", store, 0), 0U);
    EXPECT_EQ(find_line("3 b", store, 0), 2U);
    EXPECT_EQ(find_line("3", store, 1), 2U);
}

TEST(FindLine, BackwardFromBehindTheEndIsOutOfRange) {
    EXPECT_EQ(thrown_by([] { find_line("BGL_END", sample(), 7, true); }).number(), 9);
}

std::size_t find_plainly(std::string_view key, const LineStore& store, std::size_t start,
                         bool backward) {
    const std::string wanted = upper_case(collapse_blanks(key));
    const auto matches = [&](std::size_t i) {
        const std::string line = i == 0 ? store.element0() : std::string(store.line(i));
        return upper_case(collapse_blanks(line)).substr(0, wanted.size()) == wanted;
    };
    if (backward) {
        for (std::size_t i = start; i >= 1; --i) {
            if (matches(i)) {
                return i;
            }
        }
        return 0;
    }
    for (std::size_t i = start; i <= store.upper(); ++i) {
        if (matches(i)) {
            return i;
        }
    }
    return 0;
}

std::string random_text(std::mt19937& random, std::size_t longest) {
    constexpr std::string_view alphabet = "aA bB  2\t";
    std::string text(random() % (longest + 1), ' ');
    for (char& c : text) {
        c = alphabet[random() % alphabet.size()];
    }
    return text;
}

TEST(FindLine, AgreesWithThePlainSearchOnRandomStores) {
    std::mt19937 random(1);
    for (int i = 0; i < 20'000; ++i) {
        std::vector<std::string> texts(random() % 6);
        for (std::string& text : texts) {
            text = random_text(random, 8);
        }
        const LineStore store(texts);
        const std::string key = random_text(random, 4);
        const std::size_t start = random() % (store.upper() + 1);
        for (const bool backward : {false, true}) {
            ASSERT_EQ(find_line(key, store, start, backward),
                      find_plainly(key, store, start, backward))
                << "key '" << key << "' in " << testing::PrintToString(texts) << " from " << start;
        }
    }
}

TEST(FindTrimmedPrefix, CountsCaseAndInnerBlanks) {
    EXPECT_EQ(find_trimmed_prefix("BGL_END", sample()), 2U);
    EXPECT_EQ(find_trimmed_prefix("BGL_END", sample(), 3), 5U);
    EXPECT_EQ(find_trimmed_prefix("model label", sample()), 0U);
    EXPECT_EQ(find_trimmed_prefix("model  label", sample()), 4U);
    EXPECT_EQ(find_trimmed_prefix("BGL_END", sample(), 6), 0U);
    LineStore store = sample();
    store.set_line(store.upper(), " END");
    EXPECT_EQ(find_trimmed_prefix("END", store), store.upper()) << "the spare element";
}

} // namespace
} // namespace morvane
