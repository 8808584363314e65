// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/block_checks.h"
#include "objects/save.h"
#include "set_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class BlockChecks : public SetTest {
  protected:
    // The second of two materials: the first lets Open take the set.
    static std::vector<std::string> model() { return make_model({MadeMaterial(), MadeMaterial()}); }
    static std::size_t place_of_block(const std::vector<std::string>& model) {
        const auto selecting =
            std::find_if(model.begin(), model.end(), [](const std::string& line) {
                return line.starts_with("    MATERIAL 1,");
            });
        return static_cast<std::size_t>(selecting - model.begin()) + 1;
    }
    BlockFinding check(const std::vector<std::string>& changed) {
        open(changed);
        return check_block(set, set.translation(2));
    }
    std::vector<std::string> codes(Kind kind) {
        std::vector<std::string> result;
        for (const Note& note : check_material(set, set.translation(1), kind, parameters)) {
            result.push_back(note.code + ":" +
                             std::to_string(note.line - set.translation(1).block.selecting_line));
        }
        return result;
    }
};

TEST_F(BlockChecks, ABlockOfTrianglesIsFit) {
    EXPECT_EQ(check(model()).state, BlockState::Fit);
    EXPECT_FALSE(block_note(set, set.translation(2)));
}

TEST_F(BlockChecks, ABlockThatWasSavedIsRewritten) {
    for (const Kind kind : all_kinds) {
        open(model());
        process(2, kind);
        ASSERT_TRUE(save_set(services, set, base).saved);
        ASSERT_TRUE(open_source_set(services, set, base));
        const BlockFinding finding = check_block(set, set.translation(2));
        EXPECT_EQ(finding.state, BlockState::Rewritten) << kind_text(kind);
        EXPECT_EQ(finding.line, set.translation(2).block.selecting_line + 1);
        EXPECT_EQ(check_block(set, set.translation(1)).state, BlockState::Fit);
    }
}

TEST_F(BlockChecks, CommentsAndBlankLinesInsideABlockAreOtherLines) {
    for (const char* line :
         {"    ; a comment", "", "    DRAW_LINE 1, 2", "    DRAW_TRI_BEGIN 0, 3"}) {
        std::vector<std::string> changed = model();
        const std::size_t block = place_of_block(changed);
        changed.insert(changed.begin() + static_cast<std::ptrdiff_t>(block) + 2, line);
        const BlockFinding finding = check(changed);
        EXPECT_EQ(finding.state, BlockState::OtherLines) << line;
        EXPECT_EQ(finding.line, block + 3) << line;
    }
}

TEST_F(BlockChecks, ALineBeforeTheBlockIsOtherLines) {
    std::vector<std::string> changed = model();
    const std::size_t block = place_of_block(changed);
    changed.insert(changed.begin() + static_cast<std::ptrdiff_t>(block), "    ; a comment");
    const BlockFinding finding = check(changed);
    EXPECT_EQ(finding.state, BlockState::OtherLines);
    EXPECT_EQ(finding.line, block + 1);
}

TEST_F(BlockChecks, ABlockWithoutTriangles) {
    std::vector<std::string> changed = model();
    const std::size_t block = place_of_block(changed);
    changed.erase(changed.begin() + static_cast<std::ptrdiff_t>(block) + 1);
    EXPECT_EQ(check(changed).state, BlockState::NoTriangles);
    changed.insert(changed.begin() + static_cast<std::ptrdiff_t>(block) + 1,
                   "    DRAW_TRI_BEGIN 0, 1");
    EXPECT_EQ(check(changed).state, BlockState::NoTriangles) << "a nested opening line";
    EXPECT_THAT(check(changed).text, HasSubstr("\"DRAW_TRI_BEGIN 0, 1\""));
}

TEST_F(BlockChecks, ABlockWithoutItsEnd) {
    std::vector<std::string> changed = model();
    changed.resize(place_of_block(changed) + 2);
    const BlockFinding finding = check(changed);
    EXPECT_EQ(finding.state, BlockState::OtherLines);
    EXPECT_EQ(finding.line, changed.size());
}

TEST_F(BlockChecks, AMaterialThatIsNotDrawn) {
    std::vector<std::string> changed = model();
    changed.resize(place_of_block(changed) - 1);
    const BlockFinding finding = check(changed);
    EXPECT_EQ(finding.state, BlockState::NotDrawn);
    EXPECT_EQ(finding.line, set.translation(2).list_line);
    EXPECT_EQ(triangles_to_rewrite(set, set.translation(2)), 0U);
}

TEST_F(BlockChecks, AGivenUpWindsockDoesNotLookRewritten) {
    MadeMaterial flat;
    flat.triangles = {"0, 1, 2", "0, 0, 2"};
    open(make_model({flat}));
    EXPECT_FALSE(process(1, Kind::Windsock).processed);
    EXPECT_EQ(check_block(set, set.translation(1)).state, BlockState::Fit);
    EXPECT_EQ(triangles_to_rewrite(set, set.translation(1)), 2U);
}

TEST_F(BlockChecks, AVertexOutsideTheListIsNotedWithItsLineOnce) {
    MadeMaterial far;
    far.triangles = {"0, 1, 2", "3, 1, 2", "4, 1, 2"}; // three vertices: numbers 0 to 2
    open(make_model({far}));
    EXPECT_THAT(codes(Kind::LibraryNew), ElementsAre("vertex-range:3"));
    EXPECT_THAT(check_material(set, set.translation(1), Kind::LibraryNew, parameters)[0].text,
                HasSubstr("vertex 3, which is not in the vertex list (so do 1 more"));
    far.triangles = {"0, 1, 3"};
    open(make_model({far}));
    EXPECT_THAT(codes(Kind::Lights), IsEmpty()) << "only the first corner is used";
    EXPECT_THAT(codes(Kind::Windsock), ElementsAre("vertex-range:2"));
    far.block_vertex = "-1";
    far.triangles = {"0, 1, 2"};
    open(make_model({far}));
    EXPECT_THAT(codes(Kind::LibraryNew), ElementsAre("vertex-range:2"));
}

TEST_F(BlockChecks, AnEmptyNormalCountsForLightsOnly) {
    open(make_model({MadeMaterial()}));
    set.model.set_line(set.vertex_list, "VERTEX_DEF 1.5, 2.5, 3.5, 0.0, , 0.0, 0.0, 0.0");
    EXPECT_THAT(codes(Kind::Lights), ElementsAre("vertex-normal:2"));
    EXPECT_THAT(codes(Kind::Effects), IsEmpty());
}

TEST_F(BlockChecks, ASockOfLengthZero) {
    open(make_model({MadeMaterial()}, {"0,0,0, 0,1,0", "1,10,2, 0,1,0", "1,12,2, 0,1,0"}));
    EXPECT_THAT(codes(Kind::Windsock), ElementsAre("windsock-size:2"));
    open(make_model({MadeMaterial()}, {"0,0,0, 0,1,0", "1,10,2, 0,1,0", "1,12,2.1, 0,1,0"}));
    EXPECT_THAT(codes(Kind::Windsock), IsEmpty());
}

TEST_F(BlockChecks, TheDictionaryOfAircraftLights) {
    parameters.lights.AircraftFlag = true;
    const std::vector<std::string> head{default_frame()[1], "x",
                                        "param_extension_dictionary label dword", "    dd 1"};
    const auto codes_with = [&](std::size_t entries, bool end) {
        std::vector<std::string> frame = head;
        for (std::size_t i = 0; i < entries; ++i) {
            frame.insert(frame.end(), {"    dict_a equ 8", "    dd 2,8,4, 1h, 2h, 3h, 4h"});
        }
        if (end) {
            frame.emplace_back("param_extension_dictionary_end label dword");
        }
        open(make_model({MadeMaterial()}), frame);
        std::vector<std::string> result;
        for (const Note& note : check_material(set, set.translation(1), Kind::Lights, parameters)) {
            EXPECT_EQ(note.path, base + ".asm");
            EXPECT_EQ(note.line, 3U);
            result.push_back(note.code);
        }
        return result;
    };
    EXPECT_THAT(codes_with(150, true), IsEmpty());
    EXPECT_THAT(codes_with(151, true), ElementsAre("dictionary-full"));
    EXPECT_THAT(codes_with(1, false), ElementsAre("dictionary-end"));
}

} // namespace
} // namespace morvane::test
