// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/process.h"
#include "objects/save.h"
#include "set_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ProcessTest : public SetTest {
  protected:
    static std::vector<std::string> aircraft_frame() {
        std::vector<std::string> frame = default_frame();
        frame.emplace_back("    dd  0");
        return frame;
    }
    void expect_box(const std::string& text) {
        ASSERT_EQ(reporter.boxes.size(), 1U);
        EXPECT_EQ(reporter.boxes[0], (RecordingReporter::Box{text, Icon::None}));
    }
};

TEST_F(ProcessTest, WithoutASelectionNothingHappens) {
    open(make_model({MadeMaterial()}));
    EXPECT_FALSE(process(0, Kind::Lights).processed);
    expect_box("Error ! Please select material and set processing parameters first !!");
}

TEST_F(ProcessTest, WithoutAnOpenSetNothingHappens) {
    EXPECT_FALSE(process(1, Kind::Lights).processed);
    expect_box("Error ! Please select material and set processing parameters first !!");
}

TEST_F(ProcessTest, AMaterialIsProcessedOnce) {
    open(make_model({MadeMaterial()}));
    EXPECT_TRUE(process(1, Kind::Lights).processed);
    EXPECT_EQ(set.unprocessed(), 0U);
    EXPECT_FALSE(process(1, Kind::Windsock).processed);
    expect_box("This material is already processed. Please select another.");
    EXPECT_EQ(set.translation(1).processed, "Lights");
    EXPECT_EQ(set.replacements.size(), 1U);
}

TEST_F(ProcessTest, TheLogTellsTheLinesOfNewCode) {
    open(make_model({MadeMaterial()}));
    process(1, Kind::Lights);
    EXPECT_EQ(reporter.messages.back(), "Lines of new code : 2");
}

TEST_F(ProcessTest, LightsGoBehindTheSelectingLine) {
    open(make_model({MadeMaterial(), MadeMaterial()}));
    process(2, Kind::Lights);
    process(1, Kind::LibraryNew);
    const auto ordered = ordered_replacements(set);
    ASSERT_EQ(ordered.size(), 2U);
    EXPECT_EQ(ordered[0]->before_line, set.translation(1).block.selecting_line + 1);
    EXPECT_EQ(ordered[1]->before_line, set.translation(2).block.selecting_line + 1);
}

TEST_F(ProcessTest, EffectsAndLibraryCallsAllGoBehindBglEnd) {
    open(make_model({MadeMaterial(), MadeMaterial(), MadeMaterial()}));
    process(2, Kind::Effects);
    process(3, Kind::Library);
    process(1, Kind::Effects);
    const std::size_t behind = set.model.count() + 1; // BGL_END is the last line
    std::vector<std::string> first_lines;
    for (const Replacement* replacement : ordered_replacements(set)) {
        EXPECT_EQ(replacement->before_line, behind);
        first_lines.push_back(replacement->code.back());
    }
    EXPECT_THAT(first_lines, ElementsAre("SKIP_FX  label BGLCODE", "SKIP_LIB  label BGLCODE",
                                         "SKIP_FX  label BGLCODE"))
        << "in the order of processing";
}

TEST_F(ProcessTest, OnlyTheLinesOfThisProcessAreFiled) {
    open(make_model({MadeMaterial(), MadeMaterial()}));
    process(1, Kind::LibraryNew);
    process(2, Kind::LibraryNew);
    ASSERT_EQ(set.replacements.size(), 2U);
    EXPECT_EQ(set.replacements[0].code.size(), 3U);
    ASSERT_EQ(set.replacements[1].code.size(), 3U);
    EXPECT_EQ(set.replacements[1].code[0].rfind("    BGL_TRANSFORM_MAT", 0), 0U);
}

TEST_F(ProcessTest, WithoutBglEndEffectsAndLibraryCallsChangeNothing) {
    std::vector<std::string> model = make_model({MadeMaterial()});
    model.pop_back();
    open(model);
    const std::vector<std::string> before = lines(set.model);
    for (const Kind kind : {Kind::Effects, Kind::Library}) {
        reporter.boxes.clear();
        EXPECT_FALSE(process(1, kind).processed);
        EXPECT_THAT(
            reporter.boxes,
            ElementsAre(RecordingReporter::Box{
                "Cannot find proper BGL END code. File cannot be processed.", Icon::Critical}));
    }
    EXPECT_EQ(lines(set.model), before);
    EXPECT_TRUE(process(1, Kind::Lights).processed) << "the others do not need it";
}

TEST_F(ProcessTest, AircraftLightsBringTheirDictionary) {
    open(make_model({MadeMaterial(), MadeMaterial()}), aircraft_frame());
    parameters.lights.AircraftFlag = true;
    process(1, Kind::Lights);
    EXPECT_TRUE(set.frame_changed);
    const std::vector<std::string> frame = lines(set.frame);
    const std::vector<std::string> header{
        "dd  param_extension_dictionary - visual_model_header",
        "    dd   156",
        "    db  'F','S','8','0'",
        "    dd  2048",
        "visual_model_header_end  label dword",
        "  ",
        "    db  'D','I','C','T'",
        "param_extension_dictionary     label dword",
        "    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4",
        "    dict_g_lightStates equ 152",
        "    dd 2,152,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh",
        "param_extension_dictionary_end     label dword",
        ""};
    ASSERT_EQ(frame.size(), 4 + header.size());
    EXPECT_EQ(std::vector<std::string>(frame.begin() + 4, frame.end()), header);
    process(2, Kind::Lights);
    EXPECT_EQ(lines(set.frame), frame) << "the entry is added only once";
    EXPECT_EQ(set.dictionary.size(), 1U);
}

TEST_F(ProcessTest, ADictionaryGetsTheEntryBehindItsLast) {
    open(make_model({MadeMaterial()}),
         {default_frame()[1], "    dd   164", "    db  'F','S','8','0'",
          "param_extension_dictionary label dword", "    dd 1", "    dict_a equ 152",
          "    dd 2,152,12, 1h, 2h, 3h, 4h", "param_extension_dictionary_end label dword"});
    parameters.lights.AircraftFlag = true;
    process(1, Kind::Lights);
    EXPECT_THAT(lines(set.frame),
                ElementsAre(default_frame()[1], "    dd   168", "    db  'F','S','8','0'",
                            "param_extension_dictionary label dword",
                            "    dd (param_extension_dictionary_end) - "
                            "(param_extension_dictionary) - 4",
                            "    dict_a equ 152", "    dd 2,152,12, 1h, 2h, 3h, 4h",
                            "    dict_g_lightStates equ 164",
                            "    dd 2,164,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh",
                            "param_extension_dictionary_end label dword", ""));
}

TEST_F(ProcessTest, ADictionaryThatHasTheEntryIsLeftAsItIs) {
    const std::vector<std::string> frame{default_frame()[1],
                                         "param_extension_dictionary label dword",
                                         "    dd 1",
                                         "  dict_g_lightStates equ 152",
                                         "    dd 2,152,4, 1h, 2h, 3h, 4h",
                                         "param_extension_dictionary_end label dword"};
    open(make_model({MadeMaterial()}), frame);
    parameters.lights.AircraftFlag = true;
    process(1, Kind::Lights);
    EXPECT_TRUE(set.frame_changed);
    std::vector<std::string> with_spare = frame;
    with_spare.emplace_back("");
    EXPECT_EQ(lines(set.frame), with_spare);
}

TEST_F(ProcessTest, LightsThatAreNoAircraftsLeaveTheFrameAlone) {
    open(make_model({MadeMaterial()}), aircraft_frame());
    process(1, Kind::Lights);
    EXPECT_FALSE(set.frame_changed);
    EXPECT_THAT(set.dictionary, IsEmpty());
}

TEST_F(ProcessTest, ABlockWithoutTrianglesGetsANote) {
    MadeMaterial empty;
    empty.triangles = {};
    open(make_model({MadeMaterial(), empty}));
    EXPECT_TRUE(process(2, Kind::Windsock).processed);
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_EQ(reporter.notes[0], (Note{"row 2 (MATERIAL 1) has no triangle in its block.",
                                       base + "_0.asm", set.translation(2).block.selecting_line + 1,
                                       Severity::Warning, "no-triangles"}));
    ASSERT_EQ(set.replacements.size(), 1U);
    EXPECT_THAT(set.replacements[0].code, IsEmpty());
}

TEST_F(ProcessTest, ARunTimeErrorLeavesTheSetAsItWas) {
    MadeMaterial broken;
    broken.triangles = {"0, 1, 2", "900, 1, 2"};
    open(make_model({MadeMaterial(), broken}), aircraft_frame());
    parameters.lights.AircraftFlag = true;
    process(1, Kind::Lights);
    const std::vector<std::string> model = lines(set.model);
    const std::vector<std::string> code = new_code();
    EXPECT_FALSE(process(2, Kind::Lights).processed);
    expect_box("Error : 9 :Subscript out of range");
    EXPECT_EQ(lines(set.model), model);
    EXPECT_EQ(new_code(), code);
    EXPECT_EQ(set.replacements.size(), 1U);
    EXPECT_EQ(set.translation(2).processed, "");
}

TEST_F(ProcessTest, AFailureWhileFilingTakesTheCommentsBackToo) {
    open(make_model({MadeMaterial()}), aircraft_frame());
    const std::vector<std::string> model = lines(set.model);
    const std::vector<std::string> frame = lines(set.frame);
    set.replacements.push_back(
        {2, std::vector<std::string>(OpenSet::max_code_lines - 1, "of other materials")});
    parameters.lights.AircraftFlag = true;
    EXPECT_FALSE(process(1, Kind::Lights).processed);
    expect_box("Error : 9 :Subscript out of range");
    EXPECT_EQ(lines(set.model), model);
    EXPECT_EQ(lines(set.frame), frame);
    EXPECT_FALSE(set.frame_changed);
    EXPECT_THAT(set.dictionary, IsEmpty());
    EXPECT_EQ(set.replacements.size(), 1U) << "that of the others";
}

TEST_F(ProcessTest, AtMost100RecordsAreHeld) {
    open(make_model(std::vector<MadeMaterial>(101)));
    for (std::size_t row = 1; row <= 100; ++row) {
        ASSERT_TRUE(process(row, Kind::LibraryNew).processed) << row;
    }
    EXPECT_FALSE(process(101, Kind::LibraryNew).processed);
    expect_box("Error : 9 :Subscript out of range");
    EXPECT_EQ(set.replacements.size(), 100U);
}

TEST_F(ProcessTest, BglEndInsideTheBlockIsLookedUpAfterTheRewriteAndTheBlockPutBack) {
    std::vector<std::string> model = make_model({MadeMaterial()});
    model.erase(model.end() - 3); // its DRAW_TRI_END
    model.erase(model.end() - 2); // and the BGL_RETURN, so that BGL_END ends the block
    open(model);
    const std::vector<std::string> before = lines(set.model);
    for (const Kind kind : {Kind::Effects, Kind::Library}) {
        reporter.boxes.clear();
        const ProcessResult result = process(1, kind);
        EXPECT_FALSE(result.processed);
        EXPECT_FALSE(result.change);
        EXPECT_THAT(
            reporter.boxes,
            ElementsAre(RecordingReporter::Box{
                "Cannot find proper BGL END code. File cannot be processed.", Icon::Critical}));
        EXPECT_EQ(lines(set.model), before);
        EXPECT_EQ(set.translation(1).processed, "");
        EXPECT_THAT(set.replacements, IsEmpty());
    }
}

TEST_F(ProcessTest, ABglEndThatIsCommentedOutGivesWayToTheNext) {
    std::vector<std::string> model = make_model({MadeMaterial(), MadeMaterial()});
    const auto end = std::find(model.begin(), model.end(), "    DRAW_TRI_END");
    *end = "BGL_END";
    open(model);
    EXPECT_TRUE(process(1, Kind::Effects).processed);
    EXPECT_EQ(set.replacements.front().before_line, set.model.count() + 1);
}

TEST_F(ProcessTest, AFailureNamesRowMaterialFileAndLine) {
    MadeMaterial broken;
    broken.triangles = {"0, 1, 2", "3e9, 1, 2"};
    open(make_model({MadeMaterial(), broken}));
    process(2, Kind::Lights);
    expect_box("Error : 6 :Overflow");
    ASSERT_EQ(reporter.notes.size(), 1U);
    const Note& note = reporter.notes.front();
    EXPECT_EQ(note.path, base + "_0.asm");
    EXPECT_EQ(note.line, set.translation(2).block.selecting_line + 3);
    EXPECT_EQ(note.text, "row 2 (MATERIAL 1): Overflow: the number " +
                             std::to_string(3000000000ULL + set.vertex_list) +
                             " does not fit into 32 bits");
}

TEST_F(ProcessTest, APlaceOffTheGlobeSaysSo) {
    open(make_model({MadeMaterial()}, {"1e30,0,0, 0,1,0", "0,0,0, 0,1,0", "1,0,0, 0,1,0"}));
    process(1, Kind::Effects);
    expect_box("Error : 6 :Overflow");
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_THAT(reporter.notes.front().text,
                ::testing::ContainsRegex("Overflow: the number .* does not fit into 32 bits"));
}

TEST_F(ProcessTest, AircraftLightsOnAFrameWithoutAPlaceForADictionaryAreNoted) {
    open(make_model({MadeMaterial()}));
    parameters.lights.AircraftFlag = true;
    EXPECT_TRUE(process(1, Kind::Lights).processed);
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_EQ(reporter.notes[0].code, "dictionary-missing");
    EXPECT_EQ(reporter.notes[0].path, base + ".asm");
    EXPECT_EQ(reporter.notes[0].severity, Severity::Error);
    reporter.notes.clear();
    open(make_model({MadeMaterial()}), aircraft_frame());
    EXPECT_TRUE(process(1, Kind::Lights).processed);
    EXPECT_THAT(reporter.notes, IsEmpty());
}

TEST(ParameterLine, EveryKind) {
    Parameters parameters;
    parameters.effects.lstEffectType = "fx_beacon";
    EXPECT_EQ(parameter_line(Kind::Lights, parameters), "LIGHT_STROBE/100/CCCC");
    parameters.lights.AircraftFlag = true;
    EXPECT_EQ(parameter_line(Kind::Lights, parameters), "LIGHT_STROBE/100/CCCC-A/C");
    EXPECT_EQ(parameter_line(Kind::Effects, parameters),
              "FX_BEACON/MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;");
    EXPECT_EQ(parameter_line(Kind::Windsock, parameters), "");
    EXPECT_EQ(parameter_line(Kind::Library, parameters),
              "05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h");
    EXPECT_EQ(parameter_line(Kind::LibraryNew, parameters), std::nullopt);
}

} // namespace
} // namespace morvane::test
