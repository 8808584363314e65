// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/text.h"
#include "source/fields.h"
#include "source/materials.h"
#include "support/thrown.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace morvane {
namespace {

using test::thrown_by;

using Lines = std::vector<std::string>;

MaterialBlock find(const Lines& lines, std::size_t number) {
    return find_material_block(LineStore(lines), number);
}

TEST(FindMaterialBlock, FromTheSelectingLineToTheEndOfItsTriangles) {
    const Lines model{"    MATERIAL 3,0 ; <255,255,255,255> POLY_01.BMP;POLY_01_LM.BMP;;",
                      "    DRAW_TRI_BEGIN 4, 4", "    DRAW_TRI    2,   0,   1 ; poly=2 part=0",
                      "    DRAW_TRI_END", "    DRAW_TRI_END"};
    EXPECT_EQ(find(model, 3).selecting_line, 1U);
    EXPECT_EQ(find(model, 3).block_end, 4U);
    EXPECT_EQ(find(model, 3).further_places, 0U);
}

TEST(FindMaterialBlock, WithoutASelectingLineBothAreTheSpareElement) {
    const Lines model{"DRAW_TRI 1,2,3", "DRAW_TRI_END"};
    EXPECT_EQ(find(model, 3).selecting_line, 3U);
    EXPECT_EQ(find(model, 3).block_end, 3U);
    EXPECT_EQ(find({}, 0).selecting_line, 1U);
}

TEST(FindMaterialBlock, WithoutTrianglesItEndsAtTheSpareElement) {
    EXPECT_EQ(find({"MATERIAL 1,0", "DRAW_TRI_END"}, 1).block_end, 3U);
    EXPECT_EQ(find({"MATERIAL 1,0", "DRAW_TRI 1,2,3"}, 1).block_end, 3U);
}

TEST(FindMaterialBlock, NumberAsLastOperandIsMatchedAsItIsStored) {
    EXPECT_EQ(find({"MATERIAL 12"}, 12).selecting_line, 2U); // stored as 1
    EXPECT_EQ(find({"MATERIAL 12"}, 1).selecting_line, 1U);
    EXPECT_EQ(find({"MATERIAL 1"}, 1).selecting_line, 2U); // not stored at all
}

TEST(FindMaterialBlock, OnlyTheFirstSelectionIsTheBlock) {
    const Lines model{"MATERIAL 1,0",   "DRAW_TRI 1,2,3", "DRAW_TRI_END", "MATERIAL 1,1",
                      "DRAW_TRI 1,2,3", "DRAW_TRI_END",   "MATERIAL 1,2"};
    EXPECT_EQ(find(model, 1).selecting_line, 1U);
    EXPECT_EQ(find(model, 1).block_end, 3U);
    EXPECT_EQ(find(model, 1).further_places, 2U);
}

TEST(FindMaterialBlock, ASecondBlockOfOneSelectionIsAFurtherPlace) {
    Lines model{"MATERIAL 1,0",   "DRAW_TRI_BEGIN 0, 3", "DRAW_TRI 1,2,3", "DRAW_TRI_END",
                "LOD_2 label x",  "DRAW_TRI_BEGIN 3, 3", "DRAW_TRI 1,2,3", "DRAW_TRI_END",
                "MATERIAL 2,0",   "DRAW_TRI_BEGIN 0, 3", "DRAW_TRI 1,2,3", "DRAW_TRI_END",
                "; MATERIAL 1,0", "DRAW_TRI_BEGIN 0, 3", "DRAW_TRI 1,2,3", "DRAW_TRI_END"};
    EXPECT_EQ(find(model, 1).further_places, 1U);
    EXPECT_EQ(find(model, 1).block_end, 4U);
    EXPECT_EQ(find(model, 2).further_places, 1U);
    EXPECT_EQ(find(model, 2).block_end, 12U);
    model[8] = "MATERIAL 1,0"; // selected again, with two blocks there
    EXPECT_EQ(find(model, 1).further_places, 3U);
}

TEST(FindMaterialBlock, NumbersAreComparedAsText) {
    EXPECT_EQ(find({"MATERIAL 01,0"}, 1).selecting_line, 2U);
    EXPECT_EQ(find({"MATERIAL 1.0,0"}, 1).selecting_line, 2U);
    EXPECT_EQ(find({"material 1,0"}, 1).selecting_line, 2U);
    EXPECT_EQ(find({"MATERIAL 1 ,0"}, 1).selecting_line, 1U);
    EXPECT_EQ(find({"MATERIAL;1,0"}, 1).selecting_line, 1U);
    EXPECT_EQ(find({"\x07MATERIAL\x07"
                    "1,0"},
                   1)
                  .selecting_line,
              1U);
}

std::string overfull(const std::string& keyword) {
    return keyword + " 1" + std::string(60, ',') + "x";
}

TEST(FindMaterialBlock, LineOfTooManyOperandsBeforeTheSelectionIsAnError) {
    const Lines model{"MATERIAL 1,0",   overfull("X"),  "MATERIAL 2,0", overfull("MATERIAL"),
                      "DRAW_TRI 1,2,3", "DRAW_TRI_END", "MATERIAL 1,0"};
    EXPECT_EQ(find(model, 1).selecting_line, 1U);
    EXPECT_EQ(find(model, 1).block_end, 6U);
    EXPECT_EQ(find(model, 1).further_places, 1U);
    for (const std::size_t number : {2U, 3U}) {
        const RuntimeError error = thrown_by([&] { find(model, number); });
        EXPECT_EQ(error.number(), 9);
        EXPECT_EQ(error.about(), "a line of more than 40 operands");
        EXPECT_EQ(error.line(), 2U);
    }
    EXPECT_EQ(thrown_by([&] { find_material_blocks(LineStore(model), {1, 2}); }).number(), 9);
}

TEST(FindMaterialBlock, LineOfTooManyOperandsBehindTheSelectionDoesNotMatter) {
    const Lines model{"MATERIAL 1,0", "DRAW_TRI 1,2,3", "DRAW_TRI_END", overfull("MATERIAL"),
                      overfull("MATERIAL")};
    EXPECT_EQ(find(model, 1).block_end, 3U);
    // The selecting line must be split as well.
    EXPECT_EQ(thrown_by([&] { find({overfull("MATERIAL")}, 1); }).number(), 9);
}

TEST(FindMaterialBlock, InALargeModelToo) {
    Lines model(30'000, "    VERTEX 1,2,3");
    model[20'000] = "MATERIAL 1,0";
    model[20'001] = "DRAW_TRI 1,2,3";
    model[25'000] = "DRAW_TRI_END";
    EXPECT_EQ(find(model, 1).selecting_line, 20'001U);
    EXPECT_EQ(find(model, 1).block_end, 25'001U);
    model[20'002] = overfull("X");
    EXPECT_EQ(find(model, 1).selecting_line, 20'001U);
    model[19'999] = overfull("X");
    EXPECT_EQ(thrown_by([&] { find(model, 1); }).line(), 20'000U);
}

/// One material's search, a step at a time.
MaterialBlock find_plainly(const LineStore& model, std::size_t number) {
    const std::string key = "MATERIAL " + to_text(number);
    std::size_t i = 1;
    std::string keyword;
    std::string operand;
    while (i < model.upper()) {
        const std::string_view line = trim(model.line(i));
        if (line.size() > 5) {
            const FieldArray fields = split_fields(line);
            keyword = fields[0];
            operand = fields[1];
        }
        if (trim(keyword + " " + operand) == key) {
            break;
        }
        ++i;
    }
    MaterialBlock block;
    block.selecting_line = i;
    while (i < model.upper() && trim(model.line(i)).substr(0, 9) != "DRAW_TRI ") {
        ++i;
    }
    while (i < model.upper() && trim(model.line(i)).substr(0, 12) != "DRAW_TRI_END") {
        ++i;
    }
    block.block_end = i;
    return block;
}

/// The block, or the number of the error that finding it ends with.
template <typename Find>
std::string outcome(const Find& find) {
    try {
        const MaterialBlock block = find();
        return to_text(block.selecting_line) + ".." + to_text(block.block_end);
    } catch (const RuntimeError& error) {
        return "error " + std::to_string(error.number());
    }
}

Lines random_model(std::mt19937& random) {
    const Lines shapes{"MATERIAL 0,0",
                       "  MATERIAL 1,0 ; x",
                       "MATERIAL 2",
                       "MATERIAL 12",
                       "MATERIAL 21,",
                       "MATERIAL 1;",
                       "DRAW_TRI 1,2,3",
                       " DRAW_TRI_END ; x",
                       "DRAW_TRI_BEGIN 0, 3",
                       "DRAW_TRI",
                       "DRAW",
                       "MATER",
                       "; MATERIAL 1,0",
                       "",
                       "MATERIAL_DEF 1,0",
                       "MATERIALS 1,0",
                       " \x07MATERIAL 2,0",
                       "\tMATERIAL 2,0",
                       "DRAW_TRI  1,2,33",
                       "MATERIAL",
                       "MATERIAL  0 ,0"};
    Lines lines(random() % 16);
    for (std::string& line : lines) {
        line = random() % 60 == 0 ? overfull("MATERIAL") : shapes[random() % shapes.size()];
    }
    return lines;
}

TEST(FindMaterialBlock, AgreesWithThePlainSearchOnRandomModels) {
    std::mt19937 random(1);
    for (int i = 0; i < 30'000; ++i) {
        const Lines lines = random_model(random);
        const LineStore model(lines);
        for (const std::size_t number : {0U, 1U, 2U, 12U}) {
            ASSERT_EQ(outcome([&] { return find_material_block(model, number); }),
                      outcome([&] { return find_plainly(model, number); }))
                << "material " << number << " in " << testing::PrintToString(lines);
        }
    }
}

TEST(FindMaterialBlocks, OnePassFindsWhatSeparateSearchesFind) {
    std::mt19937 random(2);
    for (int i = 0; i < 10'000; ++i) {
        const LineStore model(random_model(random));
        const std::vector<std::size_t> numbers{2, 0, 1, 12, 1};
        std::vector<MaterialBlock> blocks;
        try {
            blocks = find_material_blocks(model, numbers);
        } catch (const RuntimeError&) {
            continue; // one of them cannot be reached
        }
        ASSERT_EQ(blocks.size(), numbers.size());
        for (std::size_t n = 0; n < numbers.size(); ++n) {
            const MaterialBlock plain = find_plainly(model, numbers[n]);
            ASSERT_EQ(blocks[n].selecting_line, plain.selecting_line);
            ASSERT_EQ(blocks[n].block_end, plain.block_end);
        }
    }
}

} // namespace
} // namespace morvane
