// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/model_header.h"
#include "set_fixture.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;

constexpr const char* light_equ = "    dict_g_lightStates equ 152";
constexpr const char* light_dd = "    dd 2,152,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh";
constexpr const char* body_size =
    "    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4";

const std::vector<std::string> frame_with_dictionary{
    "dd  param_extension_dictionary - visual_model_header",
    "    dd   160",
    "    db  'F','S','8','0'",
    "    dd  2048",
    "visual_model_header_end  label dword",
    "    db  'D','I','C','T'",
    "param_extension_dictionary     label dword",
    body_size,
    "; gear",
    "    dict_gear equ 152",
    "    dd 2,152,8, 1h, 2h, 3h, 4h",
    "",
    "    ; flaps",
    "    dict_flaps equ 160",
    "    dd 2,160,4, 5h, 6h, 7h, 8h",
    "param_extension_dictionary_end     label dword",
    "    BGL_END"};

class ModelHeaderTest : public SetTest {
  protected:
    DictionaryTable load(const std::vector<std::string>& frame) {
        folder.write("set.asm", crlf(frame));
        return load_ext_parameters(services, base);
    }
    LineStore frame_store{std::vector<std::string>{"a", "    dd  0 ; header offset", "b"}};
};

TEST_F(ModelHeaderTest, LoadLeavesCommentsAndBlankLinesOut) {
    const DictionaryTable table = load(frame_with_dictionary);
    ASSERT_EQ(table.size(), 2U);
    EXPECT_EQ(table[0].equ_line, "    dict_gear equ 152");
    EXPECT_EQ(table[0].dd_line, "    dd 2,152,8, 1h, 2h, 3h, 4h");
    EXPECT_EQ(table[1].equ_line, "    dict_flaps equ 160");
    EXPECT_EQ(dictionary_size(table), 164);
}

TEST_F(ModelHeaderTest, TheFirstLineOfTheBodyIsKept) {
    const DictionaryTable table =
        load({"param_extension_dictionary label dword", "size", "    first equ 0",
              "    dd 2,0,4, 1h", "param_extension_dictionary_end label dword"});
    ASSERT_EQ(table.size(), 1U);
    EXPECT_EQ(table[0].equ_line, "    first equ 0");
}

TEST_F(ModelHeaderTest, ALastLineWithoutPartnerIsToldOf) {
    const DictionaryTable table =
        load({"param_extension_dictionary label dword", "size", "    a equ 0", "    dd 2,0,4, 1h",
              "    lonely equ 4", "param_extension_dictionary_end label dword"});
    EXPECT_EQ(table.size(), 1U);
    EXPECT_THAT(reporter.messages,
                ElementsAre("Note: " + base +
                            ".asm:1: the last line of the parameter dictionary has no partner and "
                            "is dropped:     lonely equ 4"));
}

TEST_F(ModelHeaderTest, AFrameWithoutDictionaryHasNoRows) {
    EXPECT_TRUE(load({"x", "y"}).empty());
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_EQ(dictionary_size({}), 0);
}

TEST_F(ModelHeaderTest, AtMost300LinesAreRead) {
    std::vector<std::string> frame{"param_extension_dictionary label dword", "size"};
    for (int i = 0; i < 200; ++i) {
        frame.insert(frame.end(), {"    e equ 0", "    dd 2,0,4, 1h"});
    }
    frame.emplace_back("param_extension_dictionary_end label dword");
    EXPECT_EQ(load(frame).size(), 150U);
}

TEST_F(ModelHeaderTest, AMissingFrameFileIsReported) {
    const RuntimeError error =
        test::thrown_by([&] { load_ext_parameters(services, folder.file("none")); });
    EXPECT_EQ(error.number(), 53);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text,
              "File " + folder.file("none") +
                  ".asm cannot be opened (load_ext_parameters): File not found");
}

TEST_F(ModelHeaderTest, InsertReplacesTheOffsetsSlot) {
    insert_model_header(*disk, frame_store, {{light_equ, light_dd}}, folder.path());
    EXPECT_THAT(lines(frame_store),
                ElementsAre("a", "dd  param_extension_dictionary - visual_model_header",
                            "    dd   156", "    db  'F','S','8','0'", "    dd  2048",
                            "visual_model_header_end  label dword", "  ", "    db  'D','I','C','T'",
                            "param_extension_dictionary     label dword", body_size, light_equ,
                            light_dd, "param_extension_dictionary_end     label dword", "b", ""));
    EXPECT_EQ(frame_store.element0(), "15");
    EXPECT_EQ(folder.read("new_azm.txt"), crlf(lines(frame_store)));
}

TEST_F(ModelHeaderTest, InsertWithoutASlotChangesNothingButWritesItsTrace) {
    LineStore frame(std::vector<std::string>{"a", "b"});
    insert_model_header(*disk, frame, {{light_equ, light_dd}}, folder.path());
    EXPECT_THAT(lines(frame), ElementsAre("a", "b", ""));
    EXPECT_EQ(folder.read("new_azm.txt"), crlf({"a", "b", ""}));
}

TEST_F(ModelHeaderTest, UpdateRewritesSizeAndBodyAndKeepsTheEndLabelOnce) {
    LineStore frame(frame_with_dictionary);
    DictionaryTable table = load(frame_with_dictionary);
    table.push_back({"    dict_g_lightStates equ 164", "    dd 2,164,4, 9h"});
    update_model_header(*disk, frame, table);
    EXPECT_THAT(lines(frame),
                ElementsAre("dd  param_extension_dictionary - visual_model_header", "    dd   168",
                            "    db  'F','S','8','0'", "    dd  2048",
                            "visual_model_header_end  label dword", "    db  'D','I','C','T'",
                            "param_extension_dictionary     label dword", body_size,
                            "    dict_gear equ 152", "    dd 2,152,8, 1h, 2h, 3h, 4h",
                            "    dict_flaps equ 160", "    dd 2,160,4, 5h, 6h, 7h, 8h",
                            "    dict_g_lightStates equ 164", "    dd 2,164,4, 9h",
                            "param_extension_dictionary_end     label dword", "    BGL_END", ""));
}

TEST_F(ModelHeaderTest, TheLineBeforeTheSignatureIsTheSizeEvenIfItIsTheFirst) {
    std::vector<std::string> frame{"dd 1", "db  'F','S','8','0'", "x"};
    LineStore store(frame);
    update_model_header(*disk, store, {{light_equ, light_dd}});
    EXPECT_THAT(lines(store), ElementsAre("    dd   156", "db  'F','S','8','0'", "x", ""));
    frame.erase(frame.begin());
    LineStore without(frame);
    update_model_header(*disk, without, {{light_equ, light_dd}});
    EXPECT_THAT(lines(without), ElementsAre("db  'F','S','8','0'", "x", ""));
}

TEST_F(ModelHeaderTest, ADictionaryWithoutABodyGetsOne) {
    LineStore frame(std::vector<std::string>{
        "dd 1", "db  'F','S','8','0'", "param_extension_dictionary     label dword",
        "param_extension_dictionary_end     label dword", "x"});
    update_model_header(*disk, frame, {{light_equ, light_dd}});
    EXPECT_THAT(lines(frame),
                ElementsAre("    dd   156", "db  'F','S','8','0'",
                            "param_extension_dictionary     label dword", body_size, light_equ,
                            light_dd, "param_extension_dictionary_end     label dword", "x", ""));
}

TEST_F(ModelHeaderTest, ADictionaryWithoutEndLabelKeepsItsLines) {
    std::vector<std::string> open_ended = frame_with_dictionary;
    open_ended.erase(open_ended.end() - 2);
    LineStore frame(open_ended);
    update_model_header(*disk, frame, {{light_equ, light_dd}});
    open_ended[1] = "    dd   156";
    open_ended.emplace_back("");
    EXPECT_EQ(lines(frame), open_ended);
}

TEST_F(ModelHeaderTest, FindBglEndTakesTheFirst) {
    EXPECT_EQ(
        find_bgl_end(LineStore(std::vector<std::string>{"a", "   BGL_END_X", "BGL_END"}), reporter),
        2U);
    EXPECT_TRUE(reporter.boxes.empty());
}

TEST_F(ModelHeaderTest, FindBglEndReportsNone) {
    EXPECT_EQ(find_bgl_end(LineStore(std::vector<std::string>{"bgl_end"}), reporter), 0U);
    EXPECT_THAT(reporter.boxes,
                ElementsAre(RecordingReporter::Box{
                    "Cannot find proper BGL END code. File cannot be processed.", Icon::Critical}));
}

} // namespace
} // namespace morvane::test
