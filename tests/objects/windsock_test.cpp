// SPDX-License-Identifier: GPL-3.0-or-later
#include "set_fixture.h"

#include <gmock/gmock.h>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;

constexpr const char* normal = ", 0.0,1.0,0.0";

class WindsockTest : public SetTest {
  protected:
    void open_triangle(const std::string& a, const std::string& b, const std::string& c,
                       const std::vector<std::string>& triangles = {"0, 1, 2"}) {
        MadeMaterial sock;
        sock.color = "1.0,0.502,0.0"; // Int(0.502 * 255) = 128 = 80h
        sock.triangles = triangles;
        open(make_model({sock, MadeMaterial()}, {a + normal, b + normal, c + normal}));
    }
    void expect_flat() {
        ASSERT_EQ(reporter.boxes.size(), 1U);
        EXPECT_EQ(reporter.boxes[0],
                  (RecordingReporter::Box{
                      "The triangle used has zero height. It cannot be used for Windsock object.",
                      Icon::Exclamation}));
    }
};

TEST_F(WindsockTest, MastHeightSizeAndColours) {
    parameters.windsock.ws_lit = true;
    open_triangle("0,0,0", "1,10,5", "4,12,5");
    EXPECT_EQ(process(1, Kind::Windsock).lines, 1U);
    EXPECT_THAT(new_code(),
                ElementsAre("    KZM_WINDSOCK 0.0, 0.0, 0.0, 10.0, 3.0, 0FFF0F010h, 0FFFF8000h,1"));
}

TEST_F(WindsockTest, TheLowestVertexIsTheFootWhereverItStands) {
    open_triangle("1,10,5", "4,12,5", "0.25,-2,0");
    process(1, Kind::Windsock);
    // Vertices 1 and 3 change places: height 12 - -2, size between (4, 5) and (1, 5).
    EXPECT_THAT(new_code(), ElementsAre("    KZM_WINDSOCK 0.25, -2.0, 0.0, 14.0, 3.0, 0FFF0F010h, "
                                        "0FFFF8000h,0"));
}

TEST_F(WindsockTest, OnTiesTheFirstOfTheLowestIsTheFoot) {
    open_triangle("7,10,0", "1,2,0", "4,2,0");
    process(1, Kind::Windsock);
    // Vertex 2 is the first of the lowest and goes to the front; vertex 2 is then the old first.
    EXPECT_THAT(new_code(), ElementsAre("    KZM_WINDSOCK 1.0, 2.0, 0.0, 8.0, 3.0, 0FFF0F010h, "
                                        "0FFFF8000h,0"));
}

TEST_F(WindsockTest, ASecondVertexAtTheFootIsFlatEvenIfTheThirdIsHigher) {
    open_triangle("0,0,0", "5,0,0", "0,10,0");
    const std::size_t block = set.translation(1).block.selecting_line + 1;
    EXPECT_FALSE(process(1, Kind::Windsock).processed);
    expect_flat();
    EXPECT_EQ(set.translation(1).processed, "");
    EXPECT_TRUE(set.replacements.empty());
    EXPECT_EQ(new_code().size(), 0U);
    EXPECT_EQ(set.model.line(block), ";     DRAW_TRI_BEGIN 0, 3") << "what was done stays";
    EXPECT_EQ(set.model.line(block + 1), "    DRAW_TRI 0, 1, 2 ; poly=0 part=0");
}

TEST_F(WindsockTest, AFlatSecondTriangleLeavesNoLineOfTheFirstBehind) {
    open_triangle("0,0,0", "1,10,5", "4,12,5", {"0, 1, 2", "1, 1, 2"});
    EXPECT_FALSE(process(1, Kind::Windsock).processed);
    expect_flat();
    EXPECT_EQ(new_code().size(), 0U);
    // The lights of the next material leave their first line as it is: empty text.
    EXPECT_TRUE(process(2, Kind::Lights).processed);
    EXPECT_EQ(new_code().at(0), "");
}

TEST_F(WindsockTest, AHeightOfOneTenthPasses) {
    open_triangle("0,0,0", "0,0.1,0", "0,5,0");
    EXPECT_TRUE(process(1, Kind::Windsock).processed);
    EXPECT_EQ(new_code().front().rfind("    KZM_WINDSOCK 0.0, 0.0, 0.0, 0.1, ", 0), 0U);
}

TEST_F(WindsockTest, AHeightOfOneTenthPassesWhateverItIsTheDifferenceOf) {
    for (int tenths = 0; tenths < 100; ++tenths) {
        const auto text = [](int value) {
            return std::to_string(value / 10) + "." + std::to_string(value % 10);
        };
        open_triangle("0," + text(tenths) + ",0", "1," + text(tenths + 1) + ",0", "4,20,0");
        EXPECT_TRUE(process(1, Kind::Windsock).processed) << tenths;
    }
    open_triangle("0,0,0", "1,0.0999994,0", "4,20,0"); // written as 0.099999
    EXPECT_FALSE(process(1, Kind::Windsock).processed);
    open_triangle("0,0,0", "1,0.0999995,0", "4,20,0"); // written as 0.1
    EXPECT_TRUE(process(1, Kind::Windsock).processed);
}

// What another kind makes of the material when no windsock was tried before.
struct Outcome {
    std::vector<std::string> model;
    std::vector<std::string> code;
    std::size_t lines = 0;
    bool operator==(const Outcome&) const = default;
};

TEST_F(WindsockTest, AfterAFlatTriangleAnotherKindMakesWhatItWouldHaveMadeAtFirst) {
    const auto reopen = [&] {
        MadeMaterial sock;
        sock.block_vertex = "3";
        sock.triangles = {"0, 1, 2", "2, 1, 0", "1, 1, 2"};
        std::vector<std::string> vertices(3, std::string("9,9,9") + normal);
        for (const char* vertex : {"0,0,0", "1,10,5", "4,12,5"}) {
            vertices.push_back(vertex + std::string(normal));
        }
        open(make_model({sock, MadeMaterial()}, vertices));
    };
    for (const Kind kind : {Kind::Lights, Kind::Effects, Kind::Library, Kind::LibraryNew}) {
        reopen();
        const std::size_t at_first = process(1, kind).lines;
        const Outcome expected{lines(set.model), new_code(), at_first};
        reopen();
        EXPECT_FALSE(process(1, Kind::Windsock).processed);
        const std::size_t block = set.translation(1).block.selecting_line + 1;
        EXPECT_EQ(set.model.line(block), ";     DRAW_TRI_BEGIN 3, 3") << "lines stay commented out";
        EXPECT_FALSE(process(1, Kind::Windsock).processed) << "and are not counted twice";
        const std::size_t second = process(1, kind).lines;
        EXPECT_EQ((Outcome{lines(set.model), new_code(), second}), expected);
    }
}

TEST_F(WindsockTest, TheNoteAtAFlatTriangleSaysWhatIsCommentedOut) {
    open_triangle("0,0,0", "1,10,5", "4,12,5", {"0, 1, 2", "1, 1, 2"});
    const std::size_t block = set.translation(1).block.selecting_line + 1;
    const ProcessResult result = process(1, Kind::Windsock);
    EXPECT_TRUE(result.change) << "so that it can be undone";
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_EQ(reporter.notes[0].path, base + "_0.asm");
    EXPECT_EQ(reporter.notes[0].line, block + 2);
    EXPECT_EQ(reporter.notes[0].text,
              "row 1 (MATERIAL 0): this triangle has no height, so lines " + std::to_string(block) +
                  " to " + std::to_string(block + 1) +
                  " stay commented out. Processed again, the material is taken as it was before.");
}

TEST_F(WindsockTest, TwoTrianglesGiveTwoCalls) {
    open_triangle("0,0,0", "1,10,5", "4,12,5", {"0, 1, 2", "0, 2, 1"});
    EXPECT_EQ(process(1, Kind::Windsock).lines, 2U);
    ASSERT_EQ(new_code().size(), 2U);
    EXPECT_EQ(new_code()[1], "    KZM_WINDSOCK 0.0, 0.0, 0.0, 12.0, 3.0, 0FFF0F010h, 0FFFF8000h,0");
}

TEST_F(WindsockTest, TheThirdVertexNumberIsReadInTheShapeOfAnExport) {
    open_triangle("0,0,0", "1,10,5", "4,12,5", {"   0,   1,   2"});
    EXPECT_EQ(process(1, Kind::Windsock).lines, 1U);
    EXPECT_EQ(new_code().front().rfind("    KZM_WINDSOCK 0.0, 0.0, 0.0, 10.0, 3.0, ", 0), 0U);
}

TEST_F(WindsockTest, ATriangleBeyondAllHeightsHasNoLowestVertex) {
    open_triangle("0,99999.999,0", "5,99999.999,0", "0,100000,0");
    EXPECT_FALSE(process(1, Kind::Windsock).processed);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_NE(reporter.boxes[0].text.find("9 "), std::string::npos) << reporter.boxes[0].text;
    EXPECT_TRUE(set.replacements.empty());
    open_triangle("0,99999.998,0", "5,100001,0", "0,100001,0");
    EXPECT_TRUE(process(1, Kind::Windsock).processed);
}

TEST_F(WindsockTest, AVertexThatIsNoNumberIsATypeMismatch) {
    open_triangle("0,0,0", "1,high,5", "4,12,5");
    const std::vector<std::string> before = lines(set.model);
    EXPECT_FALSE(process(1, Kind::Windsock).processed);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "Error : 13 :Type mismatch");
    EXPECT_EQ(lines(set.model), before);
}

} // namespace
} // namespace morvane::test
