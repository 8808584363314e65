// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/open_set.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace morvane {
namespace {

using test::crlf;
using test::FaultyDisk;
using test::RecordingReporter;
using test::TempFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using Box = RecordingReporter::Box;
using Lines = std::vector<std::string>;

const Lines small_model{
    "    MATERIAL_LIST_BEGIN",
    "    MATERIAL_DEF 1.0,0.5,0.0,1.0,  0.5,0.5,0.5,  1.000000,0.000000,0.000000,  0,0,0,  0 ; 0",
    "    MATERIAL_DEF 0.2,0.2,0.2,1.0,  0.5,0.5,0.5,  0.000000,0.000000,0.000000,  0,0,0,  0 ; 1",
    "    MATERIAL_DEF 0.0,1.0,1.0,1.0,  0.5,0.5,0.5,  0.000000,0.000000,1.000000,  0,0,0,  0 ; 2",
    "    MATERIAL_LIST_END",
    "    VERTEX_LIST_BEGIN",
    "    VERTEX_LIST_END",
    "    MATERIAL 0,0 ; <255,255,255,255>",
    "    DRAW_TRI_BEGIN 0, 3",
    "    DRAW_TRI    0,   1,   2 ; poly=1 part=0",
    "    DRAW_TRI    0,   2,   1 ; poly=2 part=0",
    "    DRAW_TRI_END",
    "    MATERIAL 2,0",
    "    DRAW_TRI_BEGIN 0, 3",
    "    DRAW_TRI_END",
    "    MATERIAL 2,1",
};

const Lines small_frame{"    SCALE_AGL d,1,2,3,010h,0,020h,0,0,0", "    INSTANCE_CALL d,0,0,08000h",
                        "    BGL_END"};

class OpenSourceSet : public testing::Test {
  protected:
    void write(const Lines& model, const Lines& frame) {
        folder.write("tower_0.asm", crlf(model));
        folder.write("tower.asm", crlf(frame));
    }
    bool open() { return open_source_set({disk, reporter}, set, base); }
    void expect_refused(const Lines& model, const std::string& text) {
        write(model, small_frame);
        EXPECT_FALSE(open());
        EXPECT_FALSE(set.opened);
        ASSERT_EQ(reporter.boxes.size(), 1U);
        EXPECT_EQ(reporter.boxes[0].text, text);
    }

    TempFolder folder;
    FaultyDisk disk;
    RecordingReporter reporter;
    OpenSet set;
    std::string base = folder.file("tower");
};

TEST_F(OpenSourceSet, LogAndTables) {
    write(small_model, small_frame);
    reporter.messages = {"of before"};
    EXPECT_TRUE(open());
    EXPECT_TRUE(set.opened);
    EXPECT_THAT(reporter.plain_messages(),
                ElementsAre("ASM file:17 lines of code", "AZM file:4 lines of code",
                            "Materials found : 3 ", "Materials for translation : 2", "", "  FF7F00",
                            "  00FFFF", "Material colors : ", "Rotation is 180 degrees"));
    EXPECT_THAT(reporter.boxes, IsEmpty());
    EXPECT_EQ(set.base, base);
    EXPECT_EQ(set.vertex_list, 7U);
    ASSERT_EQ(set.translations.size(), 2U);
    EXPECT_EQ(set.translation(1).highlight, "0000FF");
    EXPECT_EQ(set.translation(2).highlight, "FF0000");
    EXPECT_EQ(set.unprocessed(), 2U);
    EXPECT_EQ(set.placement.longitude, 0x20);
    EXPECT_EQ(set.placement.rotation, 0x8000);
}

TEST_F(OpenSourceSet, FurtherPlacesOfAMaterialAreHinted) {
    write(small_model, small_frame);
    open();
    EXPECT_EQ(reporter.messages.back(),
              "Note: " + base +
                  "_0.asm:13: row 2 (MATERIAL 2) is drawn in 1 more place, which stays "
                  "as it is.");
    Lines model = small_model;
    model.emplace_back("MATERIAL 2,0");
    write(model, small_frame);
    open();
    EXPECT_EQ(reporter.messages.back(),
              "Note: " + base +
                  "_0.asm:13: row 2 (MATERIAL 2) is drawn in 2 more places, which stay "
                  "as they are.");
}

TEST_F(OpenSourceSet, TrianglesOfABlock) {
    write(small_model, small_frame);
    open();
    EXPECT_EQ(count_triangles(set.model, set.translation(1).block), 2U);
    EXPECT_EQ(count_triangles(set.model, set.translation(2).block), 0U);
}

TEST_F(OpenSourceSet, MissingModelFile) {
    set.base = "of before";
    folder.write("tower.asm", "");
    EXPECT_FALSE(open());
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"Please enter valid input file. " + base + "_0.asm file not found",
                                Icon::Critical}));
    EXPECT_EQ(set.base, "of before");
}

TEST_F(OpenSourceSet, MissingFrameFile) {
    set.base = "of before";
    folder.write("tower_0.asm", "");
    EXPECT_FALSE(open());
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"Please enter valid input file. " + base + ".asm file not found",
                                Icon::Critical}));
    EXPECT_EQ(set.base, "of before");
}

TEST_F(OpenSourceSet, BaseTypedWithItsExtension) {
    write(small_model, small_frame);
    const std::string right = base;
    for (const std::string ending : {".asm", "_0.asm", ".ASM"}) {
        base = right + ending;
        reporter.messages.clear();
        EXPECT_FALSE(open());
        EXPECT_THAT(reporter.messages, ElementsAre("Note: The path is typed without an ending: '" +
                                                   right + "' instead of '" + base + "'."));
    }
}

TEST_F(OpenSourceSet, FolderAsBase) {
    base = folder.path();
    EXPECT_FALSE(open());
    EXPECT_THAT(reporter.messages, ElementsAre("Note: '" + base + "' is a folder."));
}

TEST_F(OpenSourceSet, ProcessedSetIsRefused) {
    Lines model = small_model;
    model[8] = "; " + model[8];
    expect_refused(model, "This file cannot be used. (Already processed ?)");
    EXPECT_EQ(reporter.boxes[0].icon, Icon::Critical);
    EXPECT_EQ(set.model.element0(), "17");
    EXPECT_THAT(reporter.plain_messages(),
                ElementsAre("ASM file:17 lines of code", "AZM file:4 lines of code",
                            "Materials found : 3 ", "Materials for translation : 2"));
}

// Each refusal has one note that names the cause.
TEST_F(OpenSourceSet, ARefusalNamesItsCause) {
    const auto expect_cause = [&](const Lines& model, std::size_t line, const std::string& text) {
        reporter.boxes.clear();
        expect_refused(model, "This file cannot be used. (Already processed ?)");
        ASSERT_EQ(reporter.notes.size(), 1U);
        EXPECT_EQ(reporter.notes[0].path, base + "_0.asm");
        EXPECT_EQ(reporter.notes[0].line, line);
        EXPECT_EQ(reporter.notes[0].text, text);
    };
    expect_cause({"x"}, 0, "there is no MATERIAL_LIST_BEGIN line, so this is not a model file.");
    expect_cause({"x", "MATERIAL_LIST_BEGIN", "MATERIAL_LIST_END"}, 2,
                 "the material list is empty.");
    expect_cause({"x", "\tMATERIAL_LIST_BEGIN", "\tMATERIAL_LIST_END"}, 2,
                 "no material list is found, because this line begins with a tab; only blanks may "
                 "come before a keyword.");
    Lines model = small_model;
    model[1] = "    MATERIAL_DEF 1.0,0.5,0.0,1.0,  0.5,0.5,0.5,  0.9,0.1,0.000000,  0,0,0,  0 ; 0";
    model[3] = "    MATERIAL_DEF 0.0,1.0,1.0,1.0,  0.5,0.5,0.5,  0.97,1.0,0,  0,0,0,  0 ; 2";
    expect_cause(model, 4,
                 "none of the 3 materials has a pure highlight colour; the nearest is MATERIAL 2 "
                 "with 0.97, 1.0, 0. Red, green and blue must each be exactly 0 or 1.");
    model[1] = model[3] = model[2];
    expect_cause(model, 2,
                 "none of the 3 materials has a pure highlight colour, so nothing is marked.");
    model = small_model;
    model[8] = "    ; drawn in red";
    expect_cause(
        model, 9,
        "the line after the MATERIAL line of row 1 (MATERIAL 0) is \"; drawn in red\", not "
        "a block of triangles.");
    model = small_model;
    model[8] = "; " + model[8];
    expect_cause(model, 9,
                 "row 1 (MATERIAL 0) is already rewritten. Restore the backup or export the model "
                 "again.");
}

TEST_F(OpenSourceSet, AFirstMaterialThatIsDrawnNowhereIsNamed) {
    Lines model = small_model;
    model[7] = "    \tMATERIAL 0,0 ; the tab hides it";
    expect_refused(model, "Error : 9 :Subscript out of range");
    ASSERT_FALSE(reporter.notes.empty());
    EXPECT_EQ(reporter.notes[0].text, "row 1 (MATERIAL 0) is drawn nowhere.");
    EXPECT_EQ(reporter.notes[0].line, 2U);
}

TEST_F(OpenSourceSet, NearlyPureHighlightsAreNoted) {
    const auto with_highlight = [&](const std::string& parts) {
        Lines model = small_model;
        model[2] = "    MATERIAL_DEF 0.2,0.2,0.2,1.0,  0.5,0.5,0.5,  " + parts + ",  0,0,0,  0 ; 1";
        write(model, small_frame);
        EXPECT_TRUE(open());
        std::vector<std::string> texts;
        for (const Note& note : reporter.notes) {
            if (note.code == "near-highlight") {
                EXPECT_EQ(note.line, 3U);
                texts.push_back(note.text);
            }
        }
        return texts;
    };
    EXPECT_THAT(
        with_highlight("0.98,0.02,0.000000"),
        ElementsAre("MATERIAL 1 is not marked: its highlight 0.98, 0.02, 0.000000 is nearly "
                    "pure, but each part must be exactly 0 or 1."));
    EXPECT_THAT(with_highlight("0.996078,1.0,1.02"), testing::SizeIs(1));
    EXPECT_THAT(with_highlight("0.97,0.0,0.0"), IsEmpty()) << "too far from pure";
    EXPECT_THAT(with_highlight("0.01,0.01,0.01"), IsEmpty()) << "nearly black";
    EXPECT_THAT(with_highlight("1.0,0.0,0.0"), IsEmpty()) << "pure, and marked";
}

TEST_F(OpenSourceSet, SetWithoutMarkedMaterialIsRefused) {
    expect_refused({"x", "MATERIAL_LIST_BEGIN", "MATERIAL_LIST_END", "DRAW_TRI 1,2,3"},
                   "This file cannot be used. (Already processed ?)");
}

// Without a marked material the line that is looked at is the first of the file.
TEST_F(OpenSourceSet, SetWithoutMarkedMaterialThatBeginsWithDrawingIsAccepted) {
    write({"  DRAW_TRI 1,2,3", "MATERIAL_LIST_BEGIN", "MATERIAL_LIST_END"}, small_frame);
    EXPECT_TRUE(open());
    EXPECT_THAT(set.translations, IsEmpty());
    EXPECT_THAT(reporter.boxes, IsEmpty());
}

TEST_F(OpenSourceSet, MarkedMaterialThatIsNeverDrawn) {
    Lines model(small_model.begin(), small_model.begin() + 7);
    expect_refused(model, "Error : 9 :Subscript out of range");
}

TEST_F(OpenSourceSet, EmptyFiles) {
    expect_refused({}, "This file cannot be used. (Already processed ?)");
}

const Box unreadable_file{"Error in load_file2array: 70 :Permission denied", Icon::None};
const Box refused_set{"Error ! Make sure you do not specify the extension, and both azm and asm "
                      "files are in the same folder.",
                      Icon::None};

TEST_F(OpenSourceSet, FailureWhileLoading) {
    write(small_model, small_frame);
    disk.fail_from(1, ErrorNumber::PermissionDenied);
    EXPECT_FALSE(open());
    EXPECT_THAT(reporter.boxes, ElementsAre(unreadable_file, unreadable_file, refused_set));
    EXPECT_FALSE(set.opened);
}

TEST_F(OpenSourceSet, HalfASetIsRefused) {
    write(small_model, small_frame);
    for (const std::size_t file : {1U, 2U}) { // the model is read first
        disk.fail_at(file, ErrorNumber::PermissionDenied);
        reporter.boxes.clear();
        EXPECT_FALSE(open());
        EXPECT_THAT(reporter.boxes, ElementsAre(unreadable_file, refused_set));
        EXPECT_FALSE(set.opened);
        EXPECT_EQ(set.base, "");
        EXPECT_EQ(set.model.count(), 0U);
        EXPECT_THAT(set.translations, IsEmpty());
    }
}

std::string overfull_line(const std::string& beginning) {
    return beginning + " 1" + std::string(60, ',') + "x";
}

TEST_F(OpenSourceSet, AFrameLineOfTooManyOperandsLeavesTheListUsable) {
    write(small_model, {"first", overfull_line("  BGL"), small_frame[0]});
    EXPECT_TRUE(open());
    EXPECT_TRUE(set.opened);
    EXPECT_EQ(set.translations.size(), 2U);
    EXPECT_THAT(reporter.boxes, ElementsAre(Box{"Error : 9 :Subscript out of range", Icon::None}));
    ASSERT_FALSE(reporter.notes.empty());
    EXPECT_EQ(place_and_text(reporter.notes[0]),
              base + ".asm:2: Subscript out of range: a line of more than 40 operands");
    EXPECT_THAT(reporter.plain_messages(), testing::Contains("Material colors : "));
    EXPECT_EQ(set.placement.scale_line, "");
    EXPECT_EQ(set.placement.unreadable,
              "the placement could not be read from " + base + ".asm because of line 2");
}

TEST_F(OpenSourceSet, APlacementInFrontOfALineOfTooManyOperandsIsNotHalfUsed) {
    write(small_model, {small_frame[0], overfull_line("INSTANCE_CALL")});
    EXPECT_TRUE(open());
    ASSERT_FALSE(reporter.notes.empty());
    EXPECT_EQ(reporter.notes[0].line, 2U);
    EXPECT_EQ(set.placement.scale_line, "");
}

TEST_F(OpenSourceSet, AMaterialLineOfTooManyOperandsIsNamed) {
    Lines model = small_model;
    model[2] = overfull_line("    MATERIAL_DEF 1,1,1,1,1,1,1,1");
    expect_refused(model, "Error : 9 :Subscript out of range");
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_EQ(place_and_text(reporter.notes[0]),
              base + "_0.asm:3: Subscript out of range: a line of more than 40 operands");
}

TEST_F(OpenSourceSet, AColorOutOfRangeIsNamed) {
    Lines model = small_model;
    model[3] = "MATERIAL_DEF 0.5,1e9,0.0,1.0,  0.5,0.5,0.5,  1.0,0.0,0.0,  0,0,0,  0 ; 2";
    expect_refused(model, "Error : 6 :Overflow");
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_EQ(place_and_text(reporter.notes[0]),
              base + "_0.asm:4: Overflow: the colour's part 1e9 is not between 0 and 1");
}

TEST_F(OpenSourceSet, ALineOfTooManyOperandsBeforeABlockIsNamed) {
    Lines model = small_model;
    model[6] = overfull_line("X");
    expect_refused(model, "Error : 9 :Subscript out of range");
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_EQ(reporter.notes[0].path, base + "_0.asm");
    EXPECT_EQ(reporter.notes[0].line, 7U);
}

TEST_F(OpenSourceSet, OpeningAgainBeginsAnew) {
    write(small_model, small_frame);
    open();
    set.translation(1).processed = "Lights";
    set.replacements.push_back({5, {"x"}});
    set.dictionary.push_back({"a", "b"});
    set.frame_changed = true;
    EXPECT_TRUE(open());
    EXPECT_EQ(set.unprocessed(), 2U);
    EXPECT_THAT(set.replacements, IsEmpty());
    EXPECT_THAT(set.dictionary, IsEmpty());
    EXPECT_FALSE(set.frame_changed);
}

} // namespace
} // namespace morvane
