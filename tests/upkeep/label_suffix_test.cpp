// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "upkeep/plain_label_suffix.h"
#include "upkeep/rename_labels.h"

#include <gtest/gtest.h>

#include <random>

namespace morvane::test {
namespace {

using Lines = std::vector<std::string>;

Lines lines_of(const LineStore& store) {
    Lines lines;
    for (std::size_t i = 1; i <= store.count(); ++i) {
        lines.emplace_back(store.line(i));
    }
    return lines;
}

Lines with_suffix(const Lines& lines, std::string_view suffix) {
    LineStore store(lines);
    append_label_suffix(store, suffix);
    return lines_of(store);
}

TEST(CollectLabels, TakesTheTrimmedTextBeforeTheFirstLabel) {
    const LineStore store(Lines{"model_wingsl label BGLCODE", "  x   label    BGLCODE label",
                                "label", "LABEL", "dd 1", "a_label_b"});
    EXPECT_EQ(collect_labels(store), (Lines{"model_wingsl", "x", "", "a_"}));
}

TEST(AppendLabelSuffix, RenamesTheDefinitionAndTheUses) {
    EXPECT_EQ(
        with_suffix({"wing label BGLCODE", "    BGL_CALL wing", "X 1,wing,2", "wing;", "WING"},
                    "G2"),
        (Lines{"wingG2 label BGLCODE", "    BGL_CALL wingG2", "X 1,wingG2,2", "wingG2;", "WING"}));
}

TEST(AppendLabelSuffix, GivesTheNumberOfLabels) {
    LineStore store(Lines{"a label x", "label", "a label x"});
    EXPECT_EQ(append_label_suffix(store, "S"), 3U);
    LineStore none(Lines{"nothing here"});
    EXPECT_EQ(append_label_suffix(none, "S"), 0U);
}

TEST(AppendLabelSuffix, AnEmptySuffixLeavesEveryLine) {
    const Lines lines{"wing label BGLCODE", " CALL wing"};
    EXPECT_EQ(with_suffix(lines, ""), lines);
}

TEST(AppendLabelSuffix, OnlyTheFirstOccurrenceInALineIsTested) {
    EXPECT_EQ(with_suffix({"wing label x", "CALL wingtip, wing"}, "G2"),
              (Lines{"wingG2 label x", "CALL wingtip, wing"}));
    EXPECT_EQ(with_suffix({"wing label x", "CALL wing, wing"}, "G2"),
              (Lines{"wingG2 label x", "CALL wingG2, wing"}));
}

TEST(AppendLabelSuffix, APrefixOfAnotherLabelDoesNotTouchIt) {
    EXPECT_EQ(with_suffix({"wing label x", "wing2 label x", "CALL wing2"}, "G2"),
              (Lines{"wingG2 label x", "wing2G2 label x", "CALL wing2G2"}));
}

TEST(AppendLabelSuffix, ASuffixMayMakeAnotherLabelThatStillHasItsTurn) {
    EXPECT_EQ(with_suffix({"a label x", "aG label x", "CALL a"}, "G"),
              (Lines{"aGG label x", "aGG label x", "CALL aGG"}));
    EXPECT_EQ(with_suffix({"aG label x", "a label x", "CALL a"}, "G"),
              (Lines{"aGG label x", "aG label x", "CALL aG"}));
}

TEST(AppendLabelSuffix, ALabelThatIsDefinedTwiceIsTakenTwice) {
    EXPECT_EQ(with_suffix({"a label x", "a label x"}, "G"), (Lines{"aG label x", "aG label x"}));
    // With a delimiter in front the suffix leaves the name standing alone for the second turn.
    EXPECT_EQ(with_suffix({"a label x", "a label x"}, ",G"),
              (Lines{"a,G,G label x", "a,G,G label x"}));
}

TEST(AppendLabelSuffix, NamesOfSeveralWordsAreFound) {
    EXPECT_EQ(with_suffix({"; the old label is", "; the old thing", "x; the old"}, "Z"),
              (Lines{"; the oldZ label is", "; the oldZ thing", "x; the old"}));
    EXPECT_EQ(with_suffix({"; label", "a ; b", "a;"}, "Z"), (Lines{";Z label", "a ;Z b", "a;"}));
}

TEST(AppendLabelSuffix, AnEmptyNameOccursNowhere) {
    EXPECT_EQ(with_suffix({"label x", "", " y"}, "G"), (Lines{"label x", "", " y"}));
}

TEST(AppendLabelSuffix, The2001stLabelIsARangeErrorAndChangesNothing) {
    Lines lines;
    for (std::size_t i = 0; i < max_labels; ++i) {
        lines.push_back("n" + std::to_string(i) + " label x");
    }
    LineStore enough(lines);
    EXPECT_EQ(append_label_suffix(enough, "G"), 2000U);
    lines.emplace_back("one_more label x");
    LineStore too_many(lines);
    try {
        append_label_suffix(too_many, "G");
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 9);
        EXPECT_STREQ(error.description(), "Subscript out of range");
    }
    EXPECT_EQ(lines_of(too_many), lines);
}

/// Random files whose few letters and words make names inside names, chains and repeats likely.
class RandomFile {
  public:
    explicit RandomFile(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t n) { return random_() % n; }

    std::string text(std::string_view letters, std::size_t longest) {
        std::string result;
        for (std::size_t n = below(longest + 1); n > 0; --n) {
            result += letters[below(letters.size())];
        }
        return result;
    }

    Lines lines(std::string_view letters, std::size_t count, std::size_t longest) {
        Lines result;
        for (std::size_t i = 0; i < count; ++i) {
            result.push_back(text(letters, longest));
            if (below(3) == 0) {
                result.back() += below(8) == 0 ? "label" : " label BGLCODE";
            }
            if (below(4) == 0) {
                result.back() += text(letters, longest);
            }
        }
        return result;
    }

  private:
    std::mt19937 random_;
};

TEST(AppendLabelSuffix, EqualsThePlainDoubleLoopOnRandomFiles) {
    const std::vector<std::string_view> alphabets{"ab", "ab ", "ab ,;", "aG2 ,", " ,;", "label ,"};
    for (unsigned seed = 0; seed < 6000; ++seed) {
        RandomFile file(seed);
        const std::string_view letters = alphabets[file.below(alphabets.size())];
        const Lines before = file.lines(letters, file.below(30), 1 + file.below(12));
        const std::string suffix = file.below(2) == 0 ? "G2" : file.text(letters, 3);
        Lines expected = before;
        const std::size_t labels = plain_label_suffix(expected, suffix);
        LineStore store(before);
        ASSERT_EQ(append_label_suffix(store, suffix), labels) << "seed " << seed;
        ASSERT_EQ(lines_of(store), expected) << "seed " << seed << " suffix '" << suffix << "'";
    }
}

TEST(AppendLabelSuffix, EqualsThePlainDoubleLoopWith2000Labels) {
    RandomFile file(7);
    Lines before;
    for (std::size_t i = 0; i < max_labels; ++i) {
        before.push_back("L" + std::to_string(file.below(2500)) + " label BGLCODE");
    }
    for (std::size_t i = 0; i < 3000; ++i) {
        std::string line = "    MACRO";
        for (std::size_t n = file.below(6); n > 0; --n) {
            line += std::string(1, " ,;"[file.below(3)]) + "L" + std::to_string(file.below(2500));
        }
        before.push_back(line);
    }
    for (const std::string suffix : {"G3", "0", ",L1", "1 L"}) {
        Lines expected = before;
        plain_label_suffix(expected, suffix);
        EXPECT_EQ(with_suffix(before, suffix), expected) << suffix;
    }
}

} // namespace
} // namespace morvane::test
