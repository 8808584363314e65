// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/process.h"
#include "set_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;

class RewriteTest : public SetTest {
  protected:
    std::optional<std::size_t> rewrite(std::size_t row, Kind kind) {
        const ProcessResult result =
            process_material(services, set, row, kind, parameters, folder.path());
        return result.processed ? std::optional(result.lines) : std::nullopt;
    }
};

TEST_F(RewriteTest, ABlockWithoutTrianglesGetsItsTwoLinesCommentedOut) {
    MadeMaterial empty;
    empty.triangles = {};
    open(make_model({empty, MadeMaterial()}));
    const std::size_t opening = set.translation(1).block.selecting_line + 1;
    EXPECT_EQ(rewrite(1, Kind::Lights), 1U);
    EXPECT_EQ(set.model.line(opening), ";     DRAW_TRI_BEGIN 0, 3");
    EXPECT_EQ(set.model.line(opening + 1), ";     DRAW_TRI_END");
    EXPECT_EQ(set.model.line(opening + 2), "    MATERIAL 1,0 ; <255,255,255,255> ;;");
    EXPECT_THAT(new_code(), ElementsAre("LBL1a label BGLCODE"));
}

TEST_F(RewriteTest, ThreeTrianglesOfLightsUseTwelveBufferLines) {
    MadeMaterial three;
    three.triangles = {"0, 1, 2", "0, 1, 2", "1, 2, 0"};
    open(make_model({three}));
    EXPECT_EQ(rewrite(1, Kind::Lights), 4U);
    EXPECT_EQ(new_code().size(), 12U);
    for (std::size_t i = 9; i <= 11; ++i) {
        EXPECT_EQ(new_code().at(i - 1).rfind("    BGL_LIGHT ", 0), 0U) << i;
    }
    EXPECT_EQ(new_code().at(8), new_code().at(9)) << "nothing is deduplicated";
    EXPECT_EQ(new_code().at(11), "LBL1a label BGLCODE");
}

TEST_F(RewriteTest, VertexNumbersCountFromTheBlocksFirstVertex) {
    std::vector<std::string> vertices;
    for (int i = 0; i < 40; ++i) {
        vertices.push_back(std::to_string(i) + ".5,0.0,0.0, 0.0,1.0,0.0");
    }
    MadeMaterial late;
    late.block_vertex = "24";
    late.triangles = {"3, 4, 5"};
    open(make_model({late}, vertices));
    rewrite(1, Kind::LibraryNew);
    EXPECT_EQ(new_code().at(0).rfind("    BGL_TRANSFORM_MAT 27.5, ", 0), 0U) << new_code().at(0);
}

TEST_F(RewriteTest, NumbersAlignedToTheRightAreRead) {
    MadeMaterial aligned;
    aligned.triangles = {"   2,   0,   1"};
    open(make_model({aligned}));
    rewrite(1, Kind::LibraryNew);
    EXPECT_EQ(new_code().at(0).rfind("    BGL_TRANSFORM_MAT 4.000000, ", 0), 0U);
}

TEST_F(RewriteTest, CommentsKeepTheOldTextWithItsBlanks) {
    open(make_model({MadeMaterial()}));
    const std::size_t opening = set.translation(1).block.selecting_line + 1;
    rewrite(1, Kind::Lights);
    EXPECT_EQ(set.model.line(opening), ";     DRAW_TRI_BEGIN 0, 3");
    EXPECT_EQ(set.model.line(opening + 1), ";     DRAW_TRI 0, 1, 2 ; poly=0 part=0");
    EXPECT_EQ(set.model.line(opening + 2), ";     DRAW_TRI_END");
    EXPECT_EQ(set.model.line(opening + 3), "    BGL_RETURN");
}

TEST_F(RewriteTest, ALineOfTwoBlocksIsCommentedOutForEach) {
    std::vector<std::string> model = make_model({MadeMaterial(), MadeMaterial()});
    // The second material is selected right before the first, whose line then opens its block.
    const auto second =
        std::find(model.begin(), model.end(), "    MATERIAL 1,0 ; <255,255,255,255> ;;");
    std::rotate(second - 4, second, second + 1);
    open(model);
    const std::size_t line = set.translation(2).block.selecting_line;
    ASSERT_EQ(set.translation(1).block.selecting_line, line + 1);
    EXPECT_EQ(rewrite(1, Kind::LibraryNew), 3U);
    EXPECT_EQ(rewrite(2, Kind::LibraryNew), 0U);
    EXPECT_EQ(set.model.line(line + 1), ";     MATERIAL 0,0 ; <255,255,255,255> ;;");
    EXPECT_EQ(set.model.line(line + 2), "; ;     DRAW_TRI_BEGIN 0, 3");
    EXPECT_EQ(set.model.line(line + 3), ";     DRAW_TRI 0, 1, 2 ; poly=0 part=0");
}

TEST_F(RewriteTest, ABlockThatRunsIntoTheEndOfTheFileStopsAtTheSpareLine) {
    std::vector<std::string> model = make_model({MadeMaterial()});
    model.resize(model.size() - 3); // up to the last triangle
    open(model);
    EXPECT_EQ(rewrite(1, Kind::Windsock), 1U);
    EXPECT_EQ(set.model.line(set.model.upper()), "; ");
}

TEST_F(RewriteTest, TheTraceFilesAreWrittenAnewOnEveryCall) {
    open(make_model({MadeMaterial(), MadeMaterial()}));
    rewrite(1, Kind::LibraryNew);
    const std::string first = folder.read("bgl_new_code.txt");
    EXPECT_EQ(first, crlf(new_code()));
    rewrite(2, Kind::LibraryNew);
    EXPECT_EQ(folder.read("bgl_new_code.txt"), crlf(new_code()));
    EXPECT_EQ(folder.read("bgl_code.txt"), crlf(lines(set.model)));
    EXPECT_NE(folder.read("bgl_code.txt").find(";     DRAW_TRI_BEGIN 0, 3"), std::string::npos);
}

TEST_F(RewriteTest, NoTraceIsWrittenUnlessAskedFor) {
    open(make_model({MadeMaterial()}));
    process_material(services, set, 1, Kind::Lights, parameters);
    EXPECT_THAT(folder.names(), ElementsAre("set.asm", "set_0.asm"));
}

TEST_F(RewriteTest, AVertexBeyondTheModelIsOutOfRange) {
    MadeMaterial far;
    far.triangles = {"9000, 1, 2"};
    open(make_model({far}));
    EXPECT_EQ(rewrite(1, Kind::Lights), std::nullopt);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "Error : 9 :Subscript out of range");
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_EQ(reporter.notes[0].line, set.translation(1).block.selecting_line + 2);
    EXPECT_THAT(reporter.notes[0].text,
                ::testing::HasSubstr("row 1 (MATERIAL 0): Subscript out of range: vertex 9000 "));
}

TEST_F(RewriteTest, AVertexLineWithFewerOperandsGivesEmptyFields) {
    open(make_model({MadeMaterial()}));
    set.model.set_line(set.vertex_list, "VERTEX_DEF 1.5, 2.5");
    rewrite(1, Kind::LibraryNew);
    EXPECT_EQ(new_code().at(0).rfind("    BGL_TRANSFORM_MAT 1.5, 2., , 0.5, ", 0), 0U)
        << new_code().at(0);
}

} // namespace
} // namespace morvane::test
