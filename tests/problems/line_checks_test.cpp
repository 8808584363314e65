// SPDX-License-Identifier: GPL-3.0-or-later

// What a single line, or a list of lines, can have wrong.

#include "problems/problem_fixture.h"

#include <gmock/gmock.h>

namespace morvane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string light =
    "    BGL_LIGHT LIGHT_NAV, 1.0, 2.0, 3.0, 100 ,0.4, 0.04, 0FFFF8000h, 0.0, 1.0, 0.0";
const std::string effect =
    "    KZM_FX1 \"fx_smoke\" , \"MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;\"";
const std::string call = "    KZM_LIBRARY_CALL 05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h";
const std::string sock = "    KZM_WINDSOCK 0.0, 0.0, 0.0, 10.0, 3.0, 0FFF0F010h, 0FFFF8000h,1";

std::string changed(std::string line, const std::string& from, const std::string& to) {
    const std::size_t at = line.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return line.replace(at, from.size(), to);
}

class LineProblems : public ProblemTest {
  protected:
    /// What is found in the clean set with one line more, after the triangles: line 15.
    std::vector<std::string> found_with(const std::string& line) {
        model = clean_model();
        model.insert(model.begin() + 14, line);
        open();
        return found();
    }
    static Lines at_15(const std::string& code) { return {"set_0.asm:15 " + code}; }
};

TEST_F(LineProblems, GeneratedLinesAreFine) {
    for (const std::string& line : {light, effect, call, sock}) {
        EXPECT_THAT(found_with(line), IsEmpty()) << line;
    }
}

TEST_F(LineProblems, NumberOfOperands) {
    for (const std::string& line :
         {changed(light, ", 0.0, 1.0, 0.0", ", 0.0, 1.0"), changed(effect, " , \"", " \""),
          changed(call, ",089EC6060h", ""), changed(sock, ",1", ""),
          std::string("    BGL_TRANSFORM_END 1"), std::string("    BGL_JUMP_32 MASTER, 1"),
          std::string("    VPOSITION a, b"), std::string("    MATERIAL 0, 0, 0")}) {
        EXPECT_THAT(found_with(line), Contains("set_0.asm:15 operand-count")) << line;
    }
    found_with(changed(call, ",089EC6060h", ""));
    EXPECT_THAT(text_of("operand-count"), HasSubstr("KZM_LIBRARY_CALL takes 4 operands, not 3"));
}

TEST_F(LineProblems, EmptyOperands) {
    EXPECT_EQ(found_with(changed(light, "100 ", "")), at_15("empty-operand"));
    EXPECT_THAT(text_of("empty-operand"), HasSubstr("operand 5 of BGL_LIGHT"));
    EXPECT_EQ(found_with("    IFMSK MASTER,, 0CCCCh"), at_15("empty-operand"));
}

TEST_F(LineProblems, RealNumbersNeedDigitsAndAPoint) {
    for (const char* wrong : {"0", "1", ".4", "1e-3"}) {
        EXPECT_EQ(found_with(changed(light, "0.4", wrong)), at_15("real-number")) << wrong;
    }
    EXPECT_THAT(found_with(changed(light, "0.4", "0,4")), Contains("set_0.asm:15 operand-count"));
    EXPECT_EQ(found_with(changed(sock, "10.0", "10")), at_15("real-number"));
    EXPECT_EQ(found_with("    BGL_TRANSFORM_END"), at_15("unpaired"));
    replace(model, "VERTEX_DEF 0.0,5.0,2.0", "    VERTEX_DEF 0,5.0,2.0, 0.0,1.0,0.0, 0.0,0.0 ; 2");
}

TEST_F(LineProblems, WholeNumbersWithAPointMeanSomethingElse) {
    EXPECT_EQ(found_with(changed(light, "100", "12.5")), at_15("whole-number"));
    EXPECT_THAT(text_of("whole-number"), HasSubstr("\"12.5\""));
}

TEST_F(LineProblems, NumbersMustFitTheirBits) {
    EXPECT_EQ(found_with(changed(light, "100", "5000000000")), at_15("number-too-wide"));
    EXPECT_EQ(found_with("    IFMSK MASTER,beacnt, 01FFFFh"), at_15("number-too-wide"));
    EXPECT_THAT(found_with("    IFMSK MASTER,beacnt, 0FFFFh"), IsEmpty());
    EXPECT_THAT(found_with("    IFMSK MASTER,beacnt, -1"), IsEmpty());
    EXPECT_THAT(found_with("    IFMSK MASTER,beacnt, 0-1h"), IsEmpty());
    EXPECT_EQ(found_with("    SCALE MASTER, 0, 65536, 65536, 01h, 2, 0FCD9FF8Bh, 3, 0, 0"),
              at_15("number-too-wide"));
    EXPECT_THAT(found_with("    SCALE MASTER, 0, 160, 131072, 01h, 2, 0FCD9FF8Bh, 3, -1, 0"),
                IsEmpty());
}

TEST_F(LineProblems, HexadecimalNumbersMustBeWhole) {
    for (const char* wrong : {"FFFF8000h", "0FFFF8000", "0FFFF8000hh", "0FFFF80Z0h", "0x80"}) {
        EXPECT_EQ(found_with(changed(light, "0FFFF8000h", wrong)), at_15("hexadecimal")) << wrong;
    }
    EXPECT_EQ(found_with("    IFMSK MASTER,beacnt, 0zzh"), at_15("hexadecimal"));
    EXPECT_EQ(found_with(changed(call, "05ADE0809h", "05ADE0809")), at_15("hexadecimal"));
}

TEST_F(LineProblems, TextsOfEffects) {
    EXPECT_EQ(found_with(changed(effect, "fx_smoke", "")), at_15("empty-text"));
    EXPECT_EQ(found_with(changed(effect, "fx_smoke", "fx\"smoke")), at_15("quote-in-text"));
    EXPECT_EQ(found_with(changed(effect, "fx_smoke", std::string(80, 'x'))),
              at_15("text-too-long"));
    EXPECT_THAT(found_with(changed(effect, "fx_smoke", std::string(79, 'x'))), IsEmpty());
    EXPECT_EQ(found_with(changed(effect, "MOY=", "MO>=")), at_15("text-character"));
    EXPECT_EQ(found_with(changed(effect, "MOY=01,12;", "")), at_15("time-constraints"));
}

TEST_F(LineProblems, TextsOfTextures) {
    const auto texture = [](const std::string& name) {
        return "    TEXTURE_DEF TEXTURE_BUILDING, <255,255,255,255>, 1.0, " + name;
    };
    EXPECT_THAT(found_with(texture("\"A.BMP\"")), IsEmpty());
    EXPECT_EQ(found_with(texture("\"" + std::string(64, 'x') + "\"")), at_15("text-too-long"));
    EXPECT_EQ(found_with(texture("A.BMP")), at_15("quote-in-text"));
    EXPECT_EQ(found_with(changed(texture("\"A.BMP\""), "TEXTURE_BUILDING", "BUILDING")),
              at_15("texture-class"));
    EXPECT_EQ(found_with(changed(texture("\"A.BMP\""), "TEXTURE_BUILDING, ", "")),
              at_15("operand-count"));
}

TEST_F(LineProblems, NamesThatTheSimulatorDoesNotDefine) {
    EXPECT_EQ(found_with(changed(light, "LIGHT_NAV", "*LIGHT_PANEL*")), at_15("light-type"));
    model = clean_model();
    model.insert(model.begin() + 14, {"    IFMSK LBL1,beacon, 02h", "LBL1 label BGLCODE"});
    open();
    EXPECT_EQ(found(), at_15("flash-variable"));
    EXPECT_EQ(problem("flash-variable").severity, Severity::Error);
    model[14] = "    IFMSK LBL1,second_flash, 0-1h";
    open();
    EXPECT_EQ(found(), at_15("flash-variable"));
    EXPECT_EQ(problem("flash-variable").severity, Severity::Note);
    EXPECT_THAT(text_of("flash-variable"), HasSubstr("cannot be checked"));
}

TEST_F(LineProblems, ListsAndBlocksComeInPairs) {
    replace(model, "VERTEX_LIST_END", "");
    open();
    EXPECT_THAT(found(), Contains("set_0.asm:11 unpaired"));

    model = clean_model();
    model.insert(model.begin() + 14, "    DRAW_TRI_END");
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:15 unpaired"));

    model = clean_model();
    model.push_back("    BGL_TRANSFORM_MAT 0.0,0.0,0.0, 1.0,0.0,0.0, 0.0,1.0,0.0, 0.0,0.0,1.0");
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:17 unpaired"));
    model.insert(model.end(), {model.back(), "    BGL_TRANSFORM_END", "    BGL_TRANSFORM_END"});
    open();
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LineProblems, ATriangleOutsideOfABlock) {
    EXPECT_EQ(found_with("    DRAW_TRI 0, 1, 2"), at_15("triangle-outside-block"));
}

TEST_F(LineProblems, NumbersBeyondTheirList) {
    EXPECT_THAT(found_with("    MATERIAL 1,0"), Contains("set_0.asm:15 number-beyond-list"));
    replace(model, "DRAW_TRI_BEGIN", "    DRAW_TRI_BEGIN 1, 3");
    model.erase(model.begin() + 14);
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:12 number-beyond-list"));
    model = clean_model();
    replace(model, "DRAW_TRI ", "    DRAW_TRI    0,   1,   3");
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:13 number-beyond-list"));
    model = clean_model();
    replace(model, "MATERIAL 0", "    MATERIAL 0,1");
    insert_after(model, "MATERIAL_LIST_END",
                 {"    TEXTURE_LIST_BEGIN",
                  "    TEXTURE_DEF TEXTURE_BUILDING, <255,255,255,255>, 1.0, \"A.BMP\"",
                  "    TEXTURE_LIST_END"});
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:14 number-beyond-list"));
}

TEST_F(LineProblems, LinesNamesAndCharacters) {
    EXPECT_EQ(found_with("; " + std::string(511, 'x')), at_15("long-line"));
    EXPECT_THAT(found_with("; " + std::string(510, 'x')), IsEmpty());
    EXPECT_EQ(found_with(std::string(248, 'x') + " label BGLCODE"), at_15("long-name"));
    EXPECT_EQ(found_with("; a bell \x07"), at_15("control-character"));
    EXPECT_EQ(found_with("caf\xe9 label BGLCODE"), at_15("non-ascii"));
    EXPECT_THAT(found_with("    db \"caf\xe9\" ; caf\xe9"), IsEmpty());
    EXPECT_EQ(found_with("9lives label BGLCODE"), at_15("label-name"));
    EXPECT_EQ(found_with("a-b label BGLCODE"), at_15("label-name"));
}

TEST_F(LineProblems, KeywordsBesideTabsAreNotSeen) {
    EXPECT_THAT(found_with("\tBGL_END"), Contains("set_0.asm:15 tab-before-keyword"));
    EXPECT_THAT(found_with("\tdb 1"), IsEmpty());
}

TEST_F(LineProblems, ZeroNormalsAndDegenerateTriangles) {
    replace(model, "VERTEX_DEF 0.0,5.0,0.0", "    VERTEX_DEF 0.0,5.0,0.0, 0.0,0.0,0.0, 0.0,0.0");
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:8 zero-normal"));
    model = clean_model();
    replace(model, "VERTEX_DEF 0.0,5.0,2.0", "    VERTEX_DEF 0.0,9.0,0.0, 0.0,1.0,0.0, 0.0,0.0");
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:13 degenerate-triangle"));
    EXPECT_EQ(problem("degenerate-triangle").row, 1U);
}

} // namespace
} // namespace morvane::test
