// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/text.h"
#include "source/fields.h"
#include "support/thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace morvane {
namespace {

using test::thrown_by;
using testing::ElementsAre;

/// Element 0 and the operands stored.
std::vector<std::string> elements(std::string_view line) {
    const FieldArray fields = split_fields(line);
    std::vector<std::string> result;
    for (std::size_t i = 0; i <= fields.count(); ++i) {
        result.emplace_back(fields[i]);
    }
    return result;
}

TEST(SplitFields, CommentLineIsComAndNothingElse) {
    EXPECT_THAT(elements("   ;MATERIAL 1"), ElementsAre("com"));
    EXPECT_EQ(split_fields("   ;MATERIAL 1").count(), 0U);
    EXPECT_THAT(elements("; DRAW_TRI 1, 2, 3"), ElementsAre("com"));
}

TEST(SplitFields, LastOperandOfOneCharacterIsDropped) {
    EXPECT_THAT(elements("MATERIAL 3, 0"), ElementsAre("MATERIAL", "3"));
}

TEST(SplitFields, LastOperandLosesItsLastCharacter) {
    EXPECT_THAT(elements("MATERIAL 12"), ElementsAre("MATERIAL", "1"));
    EXPECT_THAT(elements("SCALE 1.5,20.25"), ElementsAre("SCALE", "1.5", "20.2"));
}

TEST(SplitFields, SemicolonEndsAnOperandAndKeepsTheBlankBeforeIt) {
    EXPECT_THAT(elements("X 10,20 ;note"), ElementsAre("X", "10", "20 ", "not"));
}

TEST(SplitFields, TabIsPartOfTheKeyword) {
    EXPECT_THAT(elements("\tMATERIAL 12,0"), ElementsAre("\tMATERIAL", "12"));
}

TEST(SplitFields, BlanksAndCodeSevenAreSkippedInFront) {
    EXPECT_THAT(elements(" \x07 \x07MATERIAL\x07"
                         "12,0"),
                ElementsAre("MATERIAL", "12"));
}

TEST(SplitFields, KeywordAlone) {
    EXPECT_THAT(elements("BGL_END"), ElementsAre("BGL_END"));
    EXPECT_THAT(elements("BGL_END "), ElementsAre("BGL_END"));
    EXPECT_THAT(elements(""), ElementsAre(""));
    EXPECT_THAT(elements("   "), ElementsAre(""));
}

TEST(SplitFields, SemicolonRightBehindTheKeyword) {
    EXPECT_THAT(elements("BGL_END;note"), ElementsAre("BGL_END", "not"));
}

TEST(SplitFields, EmptyOperandsCount) {
    EXPECT_THAT(elements("X ,,a,b"), ElementsAre("X", "", "", "a"));
}

TEST(SplitFields, TriangleAsExported) {
    EXPECT_THAT(elements("    DRAW_TRI    2,   0,   1 ; poly=2 part=0"),
                ElementsAre("DRAW_TRI", "2", "0", "1 ", "poly=2 part="));
}

TEST(SplitFields, SelectionAsExported) {
    EXPECT_THAT(elements("    MATERIAL 0,0 ; <255,255,255,255> POLY_01.BMP;POLY_01_LM.BMP;;"),
                ElementsAre("MATERIAL", "0", "0 ", "<255", "255", "255", "255> POLY_01.BMP",
                            "POLY_01_LM.BMP"));
}

std::string line_of_operands(std::size_t count) {
    std::string line = "X 1";
    for (std::size_t i = 1; i < count; ++i) {
        line += ",1";
    }
    return line + ",9"; // dropped, being one character
}

TEST(SplitFields, FortyOperandsFitAndOneMoreDoesNot) {
    EXPECT_EQ(split_fields(line_of_operands(40)).count(), 40U);
    EXPECT_FALSE(has_too_many_operands(line_of_operands(40)));
    EXPECT_TRUE(has_too_many_operands(line_of_operands(41)));
    const RuntimeError error = thrown_by([] { split_fields(line_of_operands(41)); });
    EXPECT_EQ(error.number(), 9);
    EXPECT_STREQ(error.description(), "Subscript out of range");
}

TEST(SplitFields, LongLineWithoutOperandsIsNoProblem) {
    EXPECT_FALSE(has_too_many_operands("X " + std::string(100'000, 'a')));
    EXPECT_TRUE(has_too_many_operands("X " + std::string(100'000, ',')));
}

TEST(GetField, GivesOneElement) {
    EXPECT_EQ(get_field("SCALE 1.5,20.25", 0), "SCALE");
    EXPECT_EQ(get_field("SCALE 1.5,20.25", 2), "20.2");
    EXPECT_EQ(get_field("SCALE 1.5,20.25", 3), "");
    EXPECT_EQ(get_field("SCALE 1.5,20.25", 40), "");
    EXPECT_EQ(thrown_by([] { get_field("SCALE 1.5,20.25", 41); }).number(), 9);
}

// The rules of splitting, one after the other, with positions counted from 1.
struct Plain {
    std::string line;

    char at(std::size_t p) const { return p <= line.size() ? line[p - 1] : '\0'; }
    std::string mid(std::size_t p, std::size_t n) const { return line.substr(p - 1, n); }
};

std::string plain_trim(std::string text) {
    while (!text.empty() && text[0] == ' ') {
        text.erase(0, 1);
    }
    while (!text.empty() && text[text.size() - 1] == ' ') {
        text.erase(text.size() - 1);
    }
    return text;
}

std::vector<std::string> split_plainly(const std::string& text) {
    const Plain line{text};
    const std::size_t length = text.size();
    std::size_t p = 1;
    while (p <= length && (line.at(p) == ' ' || line.at(p) == 7)) {
        ++p;
    }
    if (p <= length && line.at(p) == ';') {
        return {"com"};
    }
    std::size_t q = p;
    while (q <= length && line.at(q) != ' ' && line.at(q) != 7 && line.at(q) != ';') {
        ++q;
    }
    std::vector<std::string> result{plain_trim(line.mid(p, q - p))};
    if (q >= length) {
        return result;
    }
    Plain rest{plain_trim(text.substr(q))};
    while (rest.line.size() > 1) {
        std::size_t j = 1;
        while (rest.at(j) != ',' && rest.at(j) != ';' && j < rest.line.size()) {
            ++j;
        }
        result.push_back(rest.line.substr(0, j - 1));
        rest.line = plain_trim(rest.line.substr(j));
    }
    return result;
}

std::string random_line(std::mt19937& random, std::string_view alphabet, std::size_t longest) {
    std::string line(random() % (longest + 1), ' ');
    for (char& c : line) {
        c = alphabet[random() % alphabet.size()];
    }
    return line;
}

void expect_as_plain(const std::string& line) {
    const std::vector<std::string> expected = split_plainly(line);
    const bool overfull = expected.size() > FieldArray::max_operands + 1;
    ASSERT_EQ(has_too_many_operands(line), overfull) << "line '" << line << "'";
    if (overfull) {
        ASSERT_EQ(thrown_by([&] { split_fields(line); }).number(), 9) << "line '" << line << "'";
    } else {
        ASSERT_EQ(elements(line), expected) << "line '" << line << "'";
    }
}

TEST(SplitFields, AgreesWithThePlainRulesOnRandomLines) {
    std::mt19937 random(1);
    for (int i = 0; i < 50'000; ++i) {
        expect_as_plain(random_line(random, "a1 ,;\x07\t", 14));
    }
    for (int i = 0; i < 20'000; ++i) {
        expect_as_plain(random_line(random, "MATERIAL0123456789.,,,; ", 80));
    }
}

TEST(SplitFields, AgreesWithThePlainRulesAroundFortyOperands) {
    std::mt19937 random(2);
    for (int i = 0; i < 20'000; ++i) {
        expect_as_plain("X " + random_line(random, ",;1, ", 20) + std::string(32, ',') +
                        random_line(random, ",;1 ", 30));
    }
    for (std::size_t length = 3100; length < 3300; length += 7) {
        expect_as_plain("X " + std::string(length, '1') + random_line(random, ",;1", 60));
    }
}

} // namespace
} // namespace morvane
