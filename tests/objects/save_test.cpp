// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/save.h"
#include "objects/unified_diff.h"
#include "set_fixture.h"
#include "system/replace_files.h"

#include <gmock/gmock.h>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;

class SaveTest : public SetTest {
  protected:
    SaveResult save() { return save_set(services, set, base); }

    /// A store of `count` lines "1", "2", ... in a set that may be saved.
    void number_lines(std::size_t count) {
        std::vector<std::string> numbers;
        for (std::size_t i = 1; i <= count; ++i) {
            numbers.push_back(std::to_string(i));
        }
        set.model = LineStore(numbers);
    }
    std::vector<std::string> saved_lines() const {
        const std::string text = folder.read("set_0.asm");
        std::vector<std::string> result;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = text.find("\r\n", at);
            result.push_back(text.substr(at, end - at));
            at = end + 2;
        }
        return result;
    }
};

TEST_F(SaveTest, AReplacementGoesBeforeItsLine) {
    number_lines(300);
    set.replacements = {{120, {"first", "second"}}};
    EXPECT_TRUE(save().saved);
    const std::vector<std::string> lines = saved_lines();
    ASSERT_EQ(lines.size(), 303U);
    EXPECT_EQ(lines[118], "119");
    EXPECT_EQ(lines[119], "first");
    EXPECT_EQ(lines[120], "second");
    EXPECT_EQ(lines[121], "120");
    EXPECT_EQ(lines[301], "300");
    EXPECT_EQ(lines[302], "");
}

TEST_F(SaveTest, ReplacementsAreWrittenByTheirPlaces) {
    number_lines(4);
    set.replacements = {{4, {"processed first"}}, {2, {"x", "y"}}};
    save();
    EXPECT_THAT(saved_lines(), ElementsAre("1", "x", "y", "2", "3", "processed first", "4", ""));
}

TEST_F(SaveTest, ReplacementsOfOnePlaceAreWrittenInTheOrderOfProcess) {
    number_lines(2);
    set.replacements = {{3, {"a"}}, {3, {"b"}}};
    save();
    EXPECT_THAT(saved_lines(), ElementsAre("1", "2", "a", "b", ""));
}

TEST_F(SaveTest, ABlockThatTheFileBreaksOffInLeavesACommentAtItsEnd) {
    std::vector<std::string> model = make_model({MadeMaterial()});
    model.resize(model.size() - 3); // up to the last triangle
    open(model);
    process(1, Kind::Windsock);
    save();
    const std::vector<std::string> saved = saved_lines();
    EXPECT_EQ(saved.back(), "; ") << "the line after the last, which is empty otherwise";
    model.end()[-2].insert(0, "; ");
    model.back().insert(0, "; ");
    std::size_t at = 0;
    for (const std::string& line : saved) {
        at += at < model.size() && line == model[at] ? 1 : 0;
    }
    EXPECT_EQ(at, model.size()) << "every loaded line is there, in its order";
}

TEST_F(SaveTest, RightAfterOpenThereIsNothingToSave) {
    open(make_model({MadeMaterial()}));
    const std::string before = folder.read("set_0.asm");
    EXPECT_FALSE(save().saved);
    EXPECT_THAT(reporter.boxes,
                ElementsAre(RecordingReporter::Box{"No material matches", Icon::None}));
    EXPECT_EQ(folder.read("set_0.asm"), before);
}

TEST_F(SaveTest, ASecondSaveIsRefused) {
    open(make_model({MadeMaterial()}));
    process(1, Kind::Lights);
    EXPECT_TRUE(save().saved);
    const std::string saved = folder.read("set_0.asm");
    reporter.boxes.clear();
    EXPECT_FALSE(save().saved);
    EXPECT_THAT(reporter.boxes,
                ElementsAre(RecordingReporter::Box{
                    "This file has already been saved. Reload or restore to continue modifications",
                    Icon::None}));
    EXPECT_EQ(folder.read("set_0.asm"), saved);
}

TEST_F(SaveTest, TheReportNamesTheFrameFile) {
    open(make_model({MadeMaterial()}));
    process(1, Kind::Lights);
    const SaveResult result = save();
    EXPECT_THAT(result.paths, ElementsAre(base + "_0.asm"));
    EXPECT_EQ(reporter.messages.back(), "Done. ");
    EXPECT_EQ(reporter.boxes.back(),
              (RecordingReporter::Box{"Finished. Use 'bglc /bgl set.asm' to compile.",
                                      Icon::Information}));
}

TEST_F(SaveTest, TheFrameFileIsWrittenOnlyWhenItChanged) {
    open(make_model({MadeMaterial(), MadeMaterial()}));
    const std::string frame = folder.read("set.asm");
    process(1, Kind::Lights);
    save();
    EXPECT_EQ(folder.read("set.asm"), frame);
}

TEST_F(SaveTest, AnAircraftsFrameIsWrittenWithItsDictionary) {
    std::vector<std::string> frame = default_frame();
    frame.emplace_back("    dd  0");
    open(make_model({MadeMaterial()}), frame);
    parameters.lights.AircraftFlag = true;
    process(1, Kind::Lights);
    EXPECT_THAT(save().paths, ElementsAre(base + "_0.asm", base + ".asm"));
    EXPECT_EQ(folder.read("set.asm"), crlf(lines(set.frame)));
}

TEST_F(SaveTest, AnotherBasePathTakesTheResult) {
    open(make_model({MadeMaterial()}));
    const std::string before = folder.read("set_0.asm");
    process(1, Kind::Lights);
    EXPECT_TRUE(save_set(services, set, folder.file("other")).saved);
    EXPECT_EQ(folder.read("set_0.asm"), before);
    EXPECT_TRUE(folder.has("other_0.asm"));
    EXPECT_FALSE(folder.has("other.asm"));
}

TEST_F(SaveTest, ARecordWithoutLinesIsOutOfRangeAndTheFileStaysWhole) {
    MadeMaterial empty;
    empty.triangles = {};
    open(make_model({MadeMaterial(), empty}));
    const std::string before = folder.read("set_0.asm");
    process(2, Kind::LibraryNew);
    EXPECT_FALSE(save().saved);
    EXPECT_EQ(reporter.boxes.back(),
              (RecordingReporter::Box{"ERROR : 9: Subscript out of range", Icon::None}));
    EXPECT_EQ(folder.read("set_0.asm"), before);
    EXPECT_THAT(folder.names(), ElementsAre("set.asm", "set_0.asm"));
}

TEST_F(SaveTest, ASavedSetIsRefusedByOpen) {
    open(make_model({MadeMaterial()}));
    process(1, Kind::Lights);
    save();
    EXPECT_FALSE(open_source_set(services, set, base));
    EXPECT_EQ(reporter.boxes.back(),
              (RecordingReporter::Box{"This file cannot be used. (Already processed ?)",
                                      Icon::Critical}));
}

std::string with_unix_ends(std::string text) {
    std::erase(text, '\r');
    return text;
}

TEST_F(SaveTest, TheDiffShowsCommentsAndNewCode) {
    open(make_model({MadeMaterial()}));
    process(1, Kind::LibraryNew);
    EXPECT_EQ(with_unix_ends(model_diff(set, "set_0.asm")),
              "--- set_0.asm\n"
              "+++ set_0.asm\n"
              "@@ -8,8 +8,12 @@\n"
              "     VERTEX_DEF 4.000000,0.000000,0.000000, 0.000000,1.000000,0.000000, "
              "0.000000,0.000000 ; v\n"
              " VERTEX_LIST_END\n"
              "     MATERIAL 0,0 ; <255,255,255,255> ;;\n"
              "-    DRAW_TRI_BEGIN 0, 3\n"
              "-    DRAW_TRI 0, 1, 2 ; poly=0 part=0\n"
              "-    DRAW_TRI_END\n"
              "+    BGL_TRANSFORM_MAT 0.000000, 0.000000, 0.000000, 0.5, 0.0, 0.0, 0.0, 0.5, "
              "0.0, 0.0, 0.0, 0.5\n"
              "+    KZM_LIBRARY_CALL 05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h\n"
              "+    BGL_TRANSFORM_END\n"
              "+;     DRAW_TRI_BEGIN 0, 3\n"
              "+;     DRAW_TRI 0, 1, 2 ; poly=0 part=0\n"
              "+;     DRAW_TRI_END\n"
              "     BGL_RETURN\n"
              " BGL_END\n"
              "+\n");
}

TEST_F(SaveTest, TheFramesDiffShowsTheDictionary) {
    std::vector<std::string> frame = default_frame();
    frame.insert(frame.begin(), "    dd  0");
    open(make_model({MadeMaterial()}), frame);
    EXPECT_EQ(frame_diff(set, "set.asm"), "");
    parameters.lights.AircraftFlag = true;
    process(1, Kind::Lights);
    const std::string diff = with_unix_ends(frame_diff(set, "set.asm"));
    EXPECT_EQ(diff.rfind("--- set.asm\n+++ set.asm\n@@ -1,5 +1,17 @@\n-    dd  0\n", 0), 0U)
        << diff;
    EXPECT_TRUE(diff.ends_with(" OBJ_END label BGLCODE\n+\n")) << diff;
}

} // namespace
} // namespace morvane::test
