// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "source/materials.h"
#include "support/thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace morvane {
namespace {

using test::thrown_by;
using testing::ElementsAre;
using testing::IsEmpty;

std::string material(const std::string& diffuse, const std::string& highlight) {
    return "MATERIAL_DEF " + diffuse + ",1.000000,  0.588235,0.588235,0.588235,  " + highlight +
           ",  0.000000,0.000000,0.000000,  0.000000 ; 0";
}

std::string marked(const std::string& highlight) {
    return material("0.588235,0.588235,0.588235", highlight);
}

TEST(FindMaterialList, TrimmedLinesBetweenTheMarkers) {
    const LineStore model(std::vector<std::string>{"x", "  MATERIAL_LIST_BEGIN ", "  MATERIAL 1 ",
                                                   "", "anything", "MATERIAL_LIST_END", "y"});
    const std::vector<Material> found = find_material_list(model);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].text, "MATERIAL 1");
    EXPECT_EQ(found[0].list_line, 3U);
    EXPECT_EQ(found[1].text, "");
    EXPECT_EQ(found[2].text, "anything");
    EXPECT_EQ(found[2].list_line, 5U);
}

TEST(FindMaterialList, WithoutItsBeginningThereIsNone) {
    const LineStore model(std::vector<std::string>{"MATERIAL 1", "MATERIAL_LIST_END"});
    EXPECT_THAT(find_material_list(model), IsEmpty());
    EXPECT_THAT(build_translation_list(model, find_material_list(model)), IsEmpty());
    EXPECT_THAT(find_material_list(LineStore()), IsEmpty());
}

TEST(FindMaterialList, WithoutItsEndAllLinesBehindCount) {
    const LineStore model(std::vector<std::string>{"MATERIAL_LIST_BEGIN", "a", "b"});
    EXPECT_EQ(find_material_list(model).size(), 2U);
}

TEST(FindMaterialList, MarkersAreWholeLines) {
    const LineStore model(std::vector<std::string>{"MATERIAL_LIST_BEGIN ; list", "a",
                                                   "material_list_begin", "MATERIAL_LIST_END"});
    EXPECT_THAT(find_material_list(model), IsEmpty());
}

TEST(FindVertexList, TheLineBehindTheMarker) {
    const LineStore model(std::vector<std::string>{"a", "    VERTEX_LIST_BEGIN", "VERTEX_DEF 1"});
    EXPECT_EQ(find_vertex_list(model), 3U);
}

TEST(FindVertexList, WithoutAMarkerBehindTheSpareElement) {
    const LineStore model(std::vector<std::string>{"a", "b"});
    EXPECT_EQ(model.upper(), 3U);
    EXPECT_EQ(find_vertex_list(model), 4U);
}

TEST(MatchHighlight, RedIsIndexFour) {
    EXPECT_EQ(match_highlight(marked("1.000000,0.000000,0.000000")), 4);
    EXPECT_EQ(highlight_digits(4), "0000FF");
}

TEST(MatchHighlight, EveryColor) {
    const std::vector<std::string> parts{"0,0,1", "0,1,0", "0,1,1", "1,0,0",
                                         "1,0,1", "1,1,0", "1,1,1"};
    const std::vector<std::string> digits{"FF0000", "00FF00", "FFFF00", "0000FF",
                                          "FF00FF", "00FFFF", "FFFFFF"};
    const std::vector<std::string> names{"Blue",    "Green",  "Cyan", "Red",
                                         "Magenta", "Yellow", "White"};
    for (std::size_t k = 1; k <= 7; ++k) {
        EXPECT_EQ(match_highlight(marked(parts[k - 1])), static_cast<int>(k));
        EXPECT_EQ(highlight_digits(static_cast<int>(k)), digits[k - 1]);
        EXPECT_EQ(highlight_color_name(digits[k - 1]), names[k - 1]);
    }
    EXPECT_EQ(highlight_color_name("123456"), "");
}

TEST(MatchHighlight, OtherColorsAreNotMarked) {
    EXPECT_FALSE(match_highlight(marked("0.5,0,1")));
    EXPECT_FALSE(match_highlight(marked("0.000000,0.000000,0.000000")));
    EXPECT_FALSE(match_highlight(marked("1,1,2")));
    EXPECT_FALSE(match_highlight(marked("-1,0,1")));
    EXPECT_FALSE(match_highlight("MATERIAL_DEF 1,1,1"));
    EXPECT_FALSE(match_highlight(""));
    EXPECT_FALSE(match_highlight(";" + marked("1,1,1")));
}

TEST(MatchHighlight, LastOperandOfALineIsReadAsItIsStored) {
    // The tenth operand ends the line and loses its last character: "1.0" is 1, "1" is nothing.
    EXPECT_EQ(match_highlight("M 0,0,0,0,0,0,0,1,0,1.0"), 5);
    EXPECT_EQ(match_highlight("M 0,0,0,0,0,0,0,1,0,1"), 4);
}

TEST(MaterialColor, ThreePartsInHexadecimal) {
    EXPECT_EQ(material_color("MATERIAL 1.0, 0.5, 0.0, 1"), "FF7F00");
    EXPECT_EQ(material_color("MATERIAL 0.588235,0.588235,0.588235,1"), "959595");
    EXPECT_EQ(material_color("MATERIAL 0.01,0.02,0.03,1"), "020507");
    EXPECT_EQ(material_color("MATERIAL"), "000000");
}

TEST(MaterialColor, PartsBeyondOneKeepTheirLastTwoDigits) {
    EXPECT_EQ(material_color("MATERIAL 2.0,-0.5,1.5,1"), "FE807E");
    EXPECT_EQ(thrown_by([] { material_color("MATERIAL 1e30,0,0,0"); }).number(), 6);
}

TEST(SwapRgb, TurnsTheOrder) {
    EXPECT_EQ(swap_rgb("FF7F00"), "007FFF");
    EXPECT_EQ(swap_rgb(swap_rgb("123456")), "123456");
}

bool shows_a_rewrite(const std::vector<std::string>& lines) {
    const LineStore model(lines);
    return is_rewritten(model, find_material_block(model, 3));
}

TEST(IsRewritten, AnExportIsNot) {
    EXPECT_FALSE(shows_a_rewrite({"    MATERIAL 3,0", "    DRAW_TRI_BEGIN 0, 3",
                                  "    DRAW_TRI 0, 1, 2", "    DRAW_TRI_END"}));
    EXPECT_FALSE(
        shows_a_rewrite({"    MATERIAL 3,0", "    DRAW_TRI_BEGIN 0, 3", "    DRAW_TRI_END"}));
    EXPECT_FALSE(shows_a_rewrite({"    MATERIAL 3,0"}));
    EXPECT_FALSE(shows_a_rewrite({"    MATERIAL 4,0"}));
    EXPECT_FALSE(shows_a_rewrite({}));
}

TEST(IsRewritten, EffectsLeaveTheBlockCommentedOutAfterTheSelectingLine) {
    EXPECT_TRUE(shows_a_rewrite({"    MATERIAL 3,0", ";     DRAW_TRI_BEGIN 0, 3",
                                 ";     DRAW_TRI 0, 1, 2", ";     DRAW_TRI_END"}));
}

TEST(IsRewritten, LightsHaveTheirCodeInFrontOfTheBlock) {
    EXPECT_TRUE(
        shows_a_rewrite({"    MATERIAL 3,0", "", ";", ";", "LBL1b label BGLCODE",
                         "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL", ";     DRAW_TRI_BEGIN 0, 3",
                         ";     DRAW_TRI 0, 1, 2", ";     DRAW_TRI_END"}));
}

TEST(IsRewritten, AlsoWhenOnlyTheBeginningOfABlockWas) {
    EXPECT_TRUE(
        shows_a_rewrite({"    MATERIAL 3,0", ";     DRAW_TRI_BEGIN 0, 3", ";     DRAW_TRI 0, 1, 2",
                         ";     ; a comment", "    DRAW_TRI 0, 1, 2", "    DRAW_TRI_END"}));
    EXPECT_TRUE(shows_a_rewrite({"    MATERIAL 3,0", "; ", ";     DRAW_TRI_BEGIN 0, 3",
                                 "    DRAW_TRI 0, 1, 2", "    DRAW_TRI_END"}));
}

TEST(IsRewritten, AlsoWhenItWasRewrittenTwice) {
    EXPECT_TRUE(shows_a_rewrite({"    MATERIAL 3,0", "; ;     DRAW_TRI_BEGIN 0, 3",
                                 "; ;     DRAW_TRI 0, 1, 2", ";     DRAW_TRI_END"}));
}

TEST(IsRewritten, ATriangleThatTheUserCommentedOutIsNoTrace) {
    EXPECT_FALSE(shows_a_rewrite({"    MATERIAL 3,0", "; mine", "    DRAW_TRI_BEGIN 0, 3",
                                  "; DRAW_TRI 0, 1, 2", "    DRAW_TRI_END"}));
}

TEST(IsRewritten, TheNextMaterialsBlockDoesNotCount) {
    EXPECT_FALSE(shows_a_rewrite({"    MATERIAL 3,0", "    MATERIAL 4,0",
                                  ";     DRAW_TRI_BEGIN 0, 3", ";     DRAW_TRI_END"}));
    EXPECT_FALSE(
        shows_a_rewrite({"    MATERIAL 3,0", "    DRAW_TRI_BEGIN 0, 3", "    DRAW_TRI_END",
                         "    MATERIAL 4,0", ";     DRAW_TRI_BEGIN 0, 3", ";     DRAW_TRI_END"}));
}

LineStore model_with(const std::vector<std::string>& materials,
                     const std::vector<std::string>& behind) {
    std::vector<std::string> texts{"MATERIAL_LIST_BEGIN"};
    texts.insert(texts.end(), materials.begin(), materials.end());
    texts.emplace_back("MATERIAL_LIST_END");
    texts.insert(texts.end(), behind.begin(), behind.end());
    return LineStore(texts);
}

TEST(BuildTranslationList, RowsInTheOrderOfTheList) {
    const LineStore model =
        model_with({marked("0,0,0"), material("1.0,0.5,0.0", "0,0,1"), marked("1,1,1")},
                   {"MATERIAL 2,0", "DRAW_TRI_BEGIN 0, 3", "DRAW_TRI 0,1,2", "DRAW_TRI_END",
                    "MATERIAL 1,0", "DRAW_TRI_BEGIN 0, 3", "DRAW_TRI 0,1,2", "DRAW_TRI_END"});
    const std::vector<Translation> rows = build_translation_list(model, find_material_list(model));
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].number, 1U);
    EXPECT_EQ(rows[0].list_line, 3U);
    EXPECT_EQ(rows[0].block.selecting_line, 10U);
    EXPECT_EQ(rows[0].block.block_end, 13U);
    EXPECT_EQ(rows[0].highlight, "FF0000");
    EXPECT_EQ(rows[0].color, "FF7F00");
    EXPECT_EQ(rows[0].processed, "");
    EXPECT_EQ(rows[1].number, 2U);
    EXPECT_EQ(rows[1].list_line, 4U);
    EXPECT_EQ(rows[1].block.selecting_line, 6U);
    EXPECT_EQ(rows[1].block.block_end, 9U);
    EXPECT_EQ(rows[1].highlight, "FFFFFF");
    EXPECT_EQ(rows[1].color, "959595");
}

TEST(BuildTranslationList, ThreeHundredMarkedMaterialsAreTheMost) {
    const std::vector<std::string> most(300, marked("1,0,0"));
    const LineStore model = model_with(most, {});
    EXPECT_EQ(build_translation_list(model, find_material_list(model)).size(), 300U);
    const std::vector<std::string> more(301, marked("1,0,0"));
    const LineStore larger = model_with(more, {});
    const RuntimeError error =
        thrown_by([&] { build_translation_list(larger, find_material_list(larger)); });
    EXPECT_EQ(error.number(), 9);
}

} // namespace
} // namespace morvane
