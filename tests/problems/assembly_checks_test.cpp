// SPDX-License-Identifier: GPL-3.0-or-later

// What the assembler stops at: labels, includes, macros, the dictionary, jumps.

#include "problems/problem_fixture.h"

#include <gmock/gmock.h>

namespace morvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class AssemblyProblems : public ProblemTest {};

TEST_F(AssemblyProblems, ACleanSetHasNone) {
    open();
    EXPECT_THAT(found(), IsEmpty());
    frame = aircraft_frame();
    open();
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(AssemblyProblems, ALabelDefinedTwiceIsReportedWithBothPlaces) {
    model.insert(model.end() - 1, {"twice label BGLCODE", "twice:"});
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:17 duplicate-label"));
    EXPECT_THAT(text_of("duplicate-label"), HasSubstr("set_0.asm:16; rename one of the two"));
}

TEST_F(AssemblyProblems, AnEquateMayBeRepeatedWithItsValueOnly) {
    frame.insert(frame.begin(), {"one equ 1", "one equ 1", "two = 1", "two = 2"});
    open();
    EXPECT_THAT(found(), IsEmpty());
    frame.insert(frame.begin() + 4, "one equ 2");
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:5 duplicate-label"));
}

TEST_F(AssemblyProblems, TheSecondClosingLabelOfEffectsAndLibraryCallsSaysWhatToDo) {
    model.insert(model.end() - 1, {"SKIP_FX  label BGLCODE", "SKIP_LIB  label BGLCODE",
                                   "SKIP_FX  label BGLCODE", "SKIP_LIB  label BGLCODE"});
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:18 skip-label", "set_0.asm:19 skip-label"));
    EXPECT_THAT(text_of("skip-label"), HasSubstr("unique_labels = true"));
}

TEST_F(AssemblyProblems, NumberedLabelsOfTwoDesignsAskForASuffix) {
    write("a_0.asm", {"LBL1 label BGLCODE", "LBL1a label BGLCODE"});
    write("b_0.asm", {"LBL1 label BGLCODE"});
    write("lib.asm", {"    include a_0.asm", "    include b_0.asm"});
    EXPECT_THAT(found_in("lib.asm"), ElementsAre("b_0.asm:1 duplicate-label"));
    EXPECT_THAT(text_of("duplicate-label"), HasSubstr("a suffix with rename-labels"));
    EXPECT_THAT(text_of("duplicate-label"), HasSubstr("a_0.asm:1"));
}

TEST_F(AssemblyProblems, ModelShadowTwiceAndMissing) {
    const Lines twice{"    SHADOW_VICALL32 model_shadow,x", "model_shadow label BGLCODE",
                      "model_shadow label BGLCODE"};
    write("plane.asm", twice);
    EXPECT_THAT(found_in("plane.asm"), ElementsAre("plane.asm:3 duplicate-label"));
    EXPECT_THAT(text_of("duplicate-label"), HasSubstr("together with the include line after it"));

    write("plane.asm", {twice[0], "; model_shadow label BGLCODE"});
    EXPECT_THAT(found_in("plane.asm"), ElementsAre("plane.asm:1 undefined-label"));
    EXPECT_THAT(text_of("undefined-label"), HasSubstr("\";\" of line 2"));

    write("plane.asm", {twice[0], twice[1]});
    EXPECT_THAT(found_in("plane.asm"), IsEmpty());
}

TEST_F(AssemblyProblems, EveryJumpingMacroNeedsItsLabel) {
    for (const char* call :
         {"SCALE x,0,0,1,0,0,0,0,0,0", "SCALE_AGL x,0,0,1,0,0,0,0,0,0", "IFMSK x, tod, 1",
          "IFIN1 x, tod, 1, 1", "IFSIZEV x, 1, 2", "BGL_JUMP_32 x", "BGL_CALL x", "BGL_CALL_32 x",
          "INSTANCE_CALL x,0,0,0", "VINSTANCE_CALL x,y", "VINSTANCE_CALL32 x,y",
          "SHADOW_VICALL x,y", "SHADOW_VICALL32 x,y", "SHADOW_CALL x", "ADDOBJ x"}) {
        write("one.asm", {call});
        EXPECT_THAT(found_in("one.asm"), ElementsAre("one.asm:1 undefined-label")) << call;
        write("one.asm", {call, "x label BGLCODE"});
        EXPECT_THAT(found_in("one.asm"), IsEmpty()) << call;
    }
}

TEST_F(AssemblyProblems, LabelsMayBeInAnIncludedFileThatWasNotFound) {
    write("one.asm", {"    BGL_JUMP_32 x", "    BGL_JUMP_32 x", "    include gone_0.asm"});
    EXPECT_THAT(found_in("one.asm"), ElementsAre("one.asm:3 include-missing"));
}

TEST_F(AssemblyProblems, NamesAreCaseSensitiveAndReportedOnce) {
    write("one.asm", {"    BGL_JUMP_32 Label1", "    BGL_JUMP_32 Label1", "label1 label BGLCODE"});
    EXPECT_THAT(found_in("one.asm"), ElementsAre("one.asm:1 undefined-label"));
}

TEST_F(AssemblyProblems, NamesOfTheDictionaryMustBeInIt) {
    model[10] = "    IFMSK MASTER, dict_0_gear, 1";
    model.insert(model.begin() + 10, "    IFIN1 MASTER, dict_1_flaps, 1, 1");
    frame = aircraft_frame();
    open();
    EXPECT_THAT(found(), testing::Contains("set_0.asm:11 undefined-dictionary-name"));
    EXPECT_THAT(text_of("undefined-dictionary-name"), HasSubstr("copy its two lines"));

    frame = clean_frame();
    open();
    EXPECT_THAT(found(), testing::Contains("set_0.asm:12 undefined-dictionary-name"));
    EXPECT_THAT(text_of("undefined-dictionary-name"), HasSubstr("no parameter dictionary"));
}

TEST_F(AssemblyProblems, IncludesAreLookedUpAsWrittenThenBesideTheFrame) {
    folder.write("sub/near_0.asm", "near label BGLCODE\r\n");
    write("far_0.asm", {"far label BGLCODE"});
    write("one.asm", {"    include sub/near_0.asm", "    include C:\\EXPORT\\far_0.asm",
                      "    include " + folder.file("far_0.asm"), "    include gone_0.asm",
                      "    include C:\\SIM\\BGL.INC", "    include own.inc"});
    EXPECT_THAT(found_in("one.asm"),
                ElementsAre("one.asm:4 include-missing", "one.asm:6 include-missing",
                            "far_0.asm:1 duplicate-label"));
    EXPECT_EQ(problems[0].severity, Severity::Error);
    EXPECT_EQ(problems[1].severity, Severity::Note);
}

TEST_F(AssemblyProblems, IncludeLinesWithoutANameAndWithASemicolon) {
    write("one.asm", {"    include  _0.asm", "    include", "    include C:\\a;b\\set_0.asm",
                      "    include C:\\a\\gone_0.asm; model"});
    EXPECT_THAT(found_in("one.asm"),
                ElementsAre("one.asm:1 include-nameless", "one.asm:2 include-nameless",
                            "one.asm:3 include-semicolon", "one.asm:4 include-missing"));
}

TEST_F(AssemblyProblems, AFileThatIncludesItselfIsReadOnce) {
    write("one.asm", {"a label BGLCODE", "    include one.asm", "    BGL_JUMP_32 a"});
    EXPECT_THAT(found_in("one.asm"), IsEmpty());
}

TEST_F(AssemblyProblems, OwnMacrosNeedTheirIncludeOrADefinition) {
    const std::string call = "    KZM_LIBRARY_CALL 01h, 02h, 03h, 04h";
    write("one.asm", {call, call});
    EXPECT_THAT(found_in("one.asm"), ElementsAre("one.asm:1 macro-undefined"));
    EXPECT_THAT(text_of("macro-undefined"), HasSubstr("\"include morvane.inc\""));
    for (const char* first :
         {"include C:\\SIM\\Morvane.inc", "include C:\\SIM\\model.inc", "include mine.inc"}) {
        folder.write("mine.inc", "KZM_LIBRARY_CALL macro a,b,c,d\r\nendm\r\n");
        write("one.asm", {first, call});
        EXPECT_THAT(found_in("one.asm"), IsEmpty()) << first;
    }
    write("one.asm", {"KZM_LIBRARY_CALL macro a,b,c,d", "    nonsense a", "endm", call});
    EXPECT_THAT(found_in("one.asm"), IsEmpty());
}

// A block of aircraft lights as it is generated: the first test is 22 bytes before the lights.
Lines aircraft_lights(std::size_t count) {
    Lines lines{"    IFMSK LBL1a, dict_g_lightStates , 16", "LBL1b label BGLCODE",
                "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL", "    IFMSK LBL1a,beacnt, 02h",
                "LBL1 label BGLCODE"};
    lines.insert(
        lines.end(), count,
        "    BGL_LIGHT LIGHT_NAV, 0.0, 0.0, 0.0, 60 ,0.4, 0.04, 0FFFF0000h, 0.0, 1.0, 0.0");
    lines.push_back("LBL1a label BGLCODE");
    return lines;
}

TEST_F(AssemblyProblems, AircraftLightsReach744) {
    frame = aircraft_frame();
    const Lines plain = model;
    for (const auto& [count, expected] : std::vector<std::pair<std::size_t, Lines>>{
             {669, {}},
             {671, {"set_0.asm:15 jump-nearly-too-far"}},
             {744, {"set_0.asm:15 jump-nearly-too-far", "set_0.asm:18 jump-nearly-too-far"}},
             {745, {"set_0.asm:15 jump-too-far", "set_0.asm:18 jump-too-far"}}}) {
        model = plain;
        const Lines lights = aircraft_lights(count);
        model.insert(model.begin() + 14, lights.begin(), lights.end());
        write("set_0.asm", model);
        write("set.asm", frame);
        Lines places = found_in("set.asm");
        if (count == 671) { // 22 + 44 * 671 = 29,546; from the second test 14 less
            EXPECT_THAT(places, testing::Contains(expected[0]));
        } else {
            EXPECT_EQ(places, expected) << count;
        }
    }
    EXPECT_THAT(text_of("jump-too-far"), HasSubstr("32802 bytes"));
    EXPECT_THAT(text_of("jump-too-far"), HasSubstr("at most 744 triangles"));
}

TEST_F(AssemblyProblems, LongJumpsOf32BitsAreFine) {
    Lines lines{"    BGL_JUMP_32 end_label"};
    lines.insert(lines.end(), 900,
                 "    BGL_LIGHT LIGHT_NAV, 0.0, 0.0, 0.0, 60 ,0.4, 0.04, 0h, "
                 "0.0, 1.0, 0.0");
    lines.push_back("end_label label BGLCODE");
    write("one.asm", lines);
    EXPECT_THAT(found_in("one.asm"), IsEmpty());
    lines[0] = "    BGL_JUMP end_label";
    write("one.asm", lines);
    EXPECT_THAT(found_in("one.asm"), ElementsAre("one.asm:1 jump-too-far"));
}

class DictionaryProblems : public ProblemTest {
  protected:
    DictionaryProblems() { frame = aircraft_frame(); }
};

TEST_F(DictionaryProblems, AnEntryTwice) {
    insert_after(frame, "dd 2,152", {"    dict_0_gear equ 156", "    dd 2,156,4, 01h,02h,03h,04h"});
    replace(frame, "dd   156", "    dd   160");
    open();
    EXPECT_THAT(found(),
                ElementsAre("set.asm:15 duplicate-label", "set.asm:15 dictionary-entry-twice"));
}

TEST_F(DictionaryProblems, AnOffsetThatIsNotTheEndOfTheEntryBefore) {
    replace(frame, "dict_g_lightStates", "    dict_g_lightStates equ 160");
    replace(frame, "dd 2,152", "    dd 2,160,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh");
    replace(frame, "dd   156", "    dd   164");
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:14 dictionary-offset"));
    EXPECT_THAT(text_of("dictionary-offset"),
                HasSubstr("begins at 160 but the one before ends at 152"));
}

TEST_F(DictionaryProblems, TwoOffsetsOfOneEntry) {
    replace(frame, "dict_g_lightStates", "    dict_g_lightStates equ 156");
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:14 dictionary-offset"));
}

TEST_F(DictionaryProblems, ASizeThatIsNotTheSum) {
    replace(frame, "dd   156", "    dd   160");
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:4 dictionary-size"));
    EXPECT_THAT(text_of("dictionary-size"), HasSubstr("write 156"));
}

TEST_F(DictionaryProblems, AMissingLabel) {
    replace(frame, "visual_model_header label", "");
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:2 dictionary-label"));
    EXPECT_THAT(text_of("dictionary-label"), HasSubstr("visual_model_header"));
}

TEST_F(DictionaryProblems, ALightSwitchWithoutAHeaderToPutItInto) {
    frame = clean_frame();
    open();
    parameters.lights.LightVariable = "beacnt";
    parameters.lights.AircraftFlag = true;
    ASSERT_TRUE(process(1, Kind::Lights).processed);
    EXPECT_THAT(found(), ElementsAre("set_0.asm:13 undefined-dictionary-name",
                                     "set_0.asm:13 dictionary-slot"));
}

TEST_F(AssemblyProblems, GeneratedCodeIsCheckedWhereItWillBe) {
    open();
    parameters.effects.lstEffectType = "fx_smoke";
    frame[1] = ""; // without the include line of the macros
    open();
    ASSERT_TRUE(process(1, Kind::Effects).processed);
    EXPECT_THAT(found(), ElementsAre("set_0.asm:17 macro-undefined"));
    saved_lines = false;
    EXPECT_THAT(found(), ElementsAre("set_0.asm:16 macro-undefined"));
}

TEST_F(AssemblyProblems, ACodeThatIsAllowedIsNotReported) {
    frame = aircraft_frame();
    replace(frame, "dd   156", "    dd   160");
    allowed = {"dictionary-size"};
    open();
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(AssemblyProblems, NotesNameCodeAndPlaceAndAreNotTooMany) {
    std::vector<Problem> many(25, {"skip-label", Severity::Error, "text", "a.asm", 7, {}});
    note_problems(reporter, many);
    ASSERT_EQ(reporter.notes.size(), 21U);
    EXPECT_EQ(reporter.messages.front(), "Note: a.asm:7: text [skip-label]");
    EXPECT_EQ(reporter.messages.back(), "Note: 5 more of these [skip-label]");
}

} // namespace
} // namespace morvane::test
