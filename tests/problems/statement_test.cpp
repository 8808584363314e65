// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/statement.h"

#include <gtest/gtest.h>

namespace morvane::test {
namespace {

using Kind = Statement::Kind;

TEST(ReadStatement, TellsDefinitionsFromCalls) {
    EXPECT_EQ(read_statement("SKIP_FX12  label BGLCODE").name, "SKIP_FX12");
    EXPECT_EQ(read_statement("SKIP_FX12  label BGLCODE").kind, Kind::Label);
    EXPECT_EQ(read_statement("LBL1a:").name, "LBL1a");
    EXPECT_EQ(read_statement("    dict_0_x equ 136").rest, "136");
    EXPECT_EQ(read_statement("count = 4").kind, Kind::Equate);
    EXPECT_EQ(read_statement("KZM_FX1 macro name, params").kind, Kind::Macro);
    EXPECT_EQ(read_statement("words dd 1,2").kind, Kind::Label);
    EXPECT_EQ(read_statement("DATA segment").kind, Kind::Empty);
}

TEST(ReadStatement, TakesTabsForBlanksAndCutsComments) {
    const Statement call = read_statement("\tMATERIAL\t3,0 ; <255> A.BMP;;");
    EXPECT_EQ(call.macro, MacroId::Material);
    EXPECT_EQ(call.rest, "3,0");
    EXPECT_EQ(read_statement(";   MATERIAL 3").kind, Kind::Empty);
    EXPECT_EQ(read_statement("   ").kind, Kind::Empty);
    EXPECT_EQ(read_statement("  Include C:\\A B\\x.asm ; y").rest, "C:\\A B\\x.asm");
}

TEST(ReadStatement, LeavesSemicolonsInQuotesAlone) {
    const Statement call = read_statement("KZM_FX1 \"fx\" , \"MOY=01,12;DOM=01,31;\" ; note");
    const Operands operands(call.rest);
    ASSERT_EQ(operands.count(), 2U);
    EXPECT_EQ(operands[2], "\"MOY=01,12;DOM=01,31;\"");
}

TEST(Operands, SplitAtCommasOutsideOfQuotesAndBrackets) {
    const Operands operands("TEXTURE_BUILDING, <255,255,255,255>, 1.0, \"A,B.BMP\"");
    EXPECT_EQ(operands.count(), 4U);
    EXPECT_EQ(operands[2], "<255,255,255,255>");
    EXPECT_EQ(operands[4], "\"A,B.BMP\"");
    EXPECT_EQ(Operands("a,,b")[2], "");
    EXPECT_EQ(Operands("a,,b").count(), 3U);
    EXPECT_EQ(Operands("").count(), 0U);
    EXPECT_EQ(Operands("a,").count(), 2U);
    EXPECT_EQ(Operands("a")[7], "");
}

} // namespace
} // namespace morvane::test
