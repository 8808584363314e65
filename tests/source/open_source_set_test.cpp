#include "source/open_source_set.h"
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
    EXPECT_EQ(set.placement.placement_a, 0x20);
    EXPECT_EQ(set.placement.placement_rotation, 0x8000);
}

TEST_F(OpenSourceSet, FurtherPlacesOfAMaterialAreHinted) {
    write(small_model, small_frame);
    open();
    EXPECT_EQ(reporter.messages.back(),
              "Note: material 2 is drawn in 1 more place, which stays as it is.");
    Lines model = small_model;
    model.emplace_back("MATERIAL 2,0");
    write(model, small_frame);
    open();
    EXPECT_EQ(reporter.messages.back(),
              "Note: material 2 is drawn in 2 more places, which stay as they are.");
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
    EXPECT_THAT(reporter.messages,
                ElementsAre("ASM file:17 lines of code", "AZM file:4 lines of code",
                            "Materials found : 3 ", "Materials for translation : 2"));
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
        EXPECT_THAT(set.translations, IsEmpty());
    }
}

std::string overfull(const std::string& beginning) {
    return beginning + " 1" + std::string(60, ',') + "x";
}

TEST_F(OpenSourceSet, AFrameLineOfTooManyOperandsLeavesTheListUsable) {
    write(small_model, {"first", overfull("  BGL"), small_frame[0]});
    EXPECT_TRUE(open());
    EXPECT_TRUE(set.opened);
    EXPECT_EQ(set.translations.size(), 2U);
    EXPECT_THAT(reporter.boxes, ElementsAre(Box{"Error : 9 :Subscript out of range", Icon::None}));
    ASSERT_FALSE(reporter.notes.empty());
    EXPECT_EQ(place_and_text(reporter.notes[0]),
              base + ".asm:2: Subscript out of range: a line of more than 40 operands");
    EXPECT_THAT(reporter.plain_messages(), testing::Contains("Material colors : "));
    EXPECT_EQ(set.placement.placement_line, "");
    EXPECT_EQ(set.placement.unreadable,
              "the placement could not be read from " + base + ".asm because of line 2");
}

TEST_F(OpenSourceSet, APlacementInFrontOfALineOfTooManyOperandsIsNotHalfUsed) {
    write(small_model, {small_frame[0], overfull("INSTANCE_CALL")});
    EXPECT_TRUE(open());
    ASSERT_FALSE(reporter.notes.empty());
    EXPECT_EQ(reporter.notes[0].line, 2U);
    EXPECT_EQ(set.placement.placement_line, "");
}

TEST_F(OpenSourceSet, AMaterialLineOfTooManyOperandsIsNamed) {
    Lines model = small_model;
    model[2] = overfull("    MATERIAL_DEF 1,1,1,1,1,1,1,1");
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
    model[6] = overfull("X");
    expect_refused(model, "Error : 9 :Subscript out of range");
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_EQ(reporter.notes[0].path, base + "_0.asm");
    EXPECT_EQ(reporter.notes[0].line, 7U);
}

TEST_F(OpenSourceSet, OpeningAgainBeginsAnew) {
    write(small_model, small_frame);
    open();
    set.translation(1).processed = "Lights";
    set.new_code.set_line(1, "x");
    set.records.push_back({5, 1});
    set.generated.push_back({1, "x"});
    set.dictionary.push_back({"a", "b"});
    set.frame_changed = true;
    EXPECT_TRUE(open());
    EXPECT_EQ(set.unprocessed(), 2U);
    EXPECT_EQ(set.new_code.lines.size(), 1U);
    EXPECT_THAT(set.records, IsEmpty());
    EXPECT_THAT(set.generated, IsEmpty());
    EXPECT_THAT(set.dictionary, IsEmpty());
    EXPECT_FALSE(set.frame_changed);
}

} // namespace
} // namespace morvane
