// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/read_set.h"
#include "small_set.h"
#include "support/source_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace morvane::scene {
namespace {

using test::SetOnDisk;
using test::SmallSet;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> texts(const Scene& scene) {
    std::vector<std::string> result;
    for (const Note& note : scene.notes) {
        result.push_back(note.text);
    }
    return result;
}

Scene scene_of(const SmallSet& set) {
    return SetOnDisk(set).scene();
}

// A square of four vertices with lines before its block.
std::string square(const std::string& before, const std::string& after = {}) {
    return before +
           "    MATERIAL 0,-1 ; grey\r\n    DRAW_TRI_BEGIN 0, 4\r\n    DRAW_TRI 0, 1, 2 ; 0\r\n"
           "    DRAW_TRI_END\r\n" +
           after;
}

TEST(ReadSet, TakesEveryTriangleOfTheExample) {
    const auto disk = make_system_disk();
    const Scene scene = read_set_files(*disk, test::source_folder() + "/examples/airport/airport");
    EXPECT_EQ(scene.triangles.size(), 76U);
    EXPECT_EQ(scene.materials.size(), 17U);
    EXPECT_THAT(scene.notes, IsEmpty());
    // The first triangle of the runway begins with its vertex 2, at (15, 0.05, 300).
    const SceneTriangle& first = scene.triangles.front();
    EXPECT_EQ(scene.vertices[first.first_vertex].place, (Vec3{15, 0.05, 300}));
    EXPECT_EQ(scene.blocks[first.block].material, 1);
}

TEST(ReadSet, NamesThePlaceOfATriangle) {
    const Scene scene = scene_of({});
    const auto picked = picked_triangle(scene, 2);
    ASSERT_TRUE(picked);
    // Lines 1 to 7 are head and lists' beginnings, 8 to 14 vertices, 15 ends them.
    EXPECT_EQ(picked_text(scene, *picked),
              "set_0.asm:19, MATERIAL 0, triangle 2 of 2, first vertex (-30.0 0.0 -30.0)");
    EXPECT_FALSE(picked_triangle(scene, raster::no_id));
    EXPECT_FALSE(picked_triangle(scene, 99));
    EXPECT_FALSE(picked_mark(scene, mark_bit));
}

TEST(ReadSet, AppliesTransformationsInnerFirst) {
    SmallSet set;
    set.before_triangles =
        square("    BGL_TRANSFORM_MAT 0.0,0.0,0.0, 2.0,0.0,0.0, 0.0,2.0,0.0, 0.0,0.0,2.0\r\n"
               "    BGL_TRANSFORM_MAT 100.0,0.0,0.0, 1.0,0.0,0.0, 0.0,1.0,0.0, 0.0,0.0,1.0\r\n",
               "    BGL_TRANSFORM_END\r\n    BGL_TRANSFORM_END\r\n");
    const Scene scene = scene_of(set);
    ASSERT_THAT(scene.triangles, SizeIs(4));
    EXPECT_EQ(scene.points[scene.triangles[2].corners[0]], (Vec3{140, 0, -60}));
    EXPECT_EQ(scene.points[scene.triangles[3].corners[0]], (Vec3{10, 2, 20}));
}

TEST(ReadSet, AnAnimationIsAtRest) {
    SmallSet set;
    set.before_triangles =
        square("    BGL_ANIMATE 0,0,0,0, 0.0,7.0,0.0\r\n", "    BGL_TRANSFORM_END\r\n");
    const Scene scene = scene_of(set);
    EXPECT_EQ(scene.points[scene.triangles.at(2).corners[0]].y, 7);
}

TEST(ReadSet, DrawsASubroutineAsOftenAsItIsCalled) {
    SmallSet set;
    set.before_triangles = "    BGL_CALL_32 part\r\n    INSTANCE_CALL part,0,0,04000h\r\n";
    set.end = "    BGL_RETURN\r\npart label BGLCODE\r\n" + square("") + "    BGL_RETURN\r\n";
    const Scene scene = scene_of(set);
    ASSERT_THAT(scene.triangles, SizeIs(2 + 1 + 2));
    EXPECT_EQ(scene.points[scene.triangles[2].corners[0]], (Vec3{-30, 0, -30}));
    // A quarter to the right: south-west becomes north-west.
    EXPECT_NEAR(scene.points[scene.triangles[3].corners[0]].z, 30, 1e-9);
    EXPECT_THAT(scene.notes, IsEmpty());
}

TEST(ReadSet, BothSidesOfAConditionAreDrawn) {
    SmallSet set;
    set.before_triangles = "    IFIN1 other, tod, 1, 1\r\n" + square("") +
                           "    BGL_JUMP_32 both\r\nother label BGLCODE\r\n" + square("") +
                           "both label BGLCODE\r\n";
    EXPECT_THAT(scene_of(set).triangles, SizeIs(2 + 2 + 1));
}

TEST(ReadSet, OnlyTheFinestDetailIsDrawnAndTheOthersCountAsReached) {
    SmallSet set;
    set.before_triangles = "    IFSIZEV coarse, 100, 200\r\n" + square("") +
                           "    BGL_JUMP_32 both\r\ncoarse label BGLCODE\r\n" + square("") +
                           "both label BGLCODE\r\n";
    const Scene scene = scene_of(set);
    EXPECT_THAT(scene.triangles, SizeIs(2 + 1 + 1));
    EXPECT_THAT(scene.notes, IsEmpty());
}

TEST(ReadSet, CodeAfterAReturnIsDrawnAsNeverReachedAndReported) {
    SmallSet set;
    set.after_triangles = "    BGL_RETURN\r\n"; // before BGL_END
    SetOnDisk disk(set);
    Parameters parameters;
    parameters.effects.lstEffectType = "fx";
    const Scene scene = read_set(disk.processed(Kind::Effects, parameters));
    ASSERT_THAT(scene.marks, SizeIs(1));
    EXPECT_FALSE(scene.marks[0].reached);
    ASSERT_THAT(scene.notes, SizeIs(1));
    EXPECT_THAT(scene.notes[0].text, HasSubstr("never reached"));
    EXPECT_EQ(scene.notes[0].line, 25U); // the BGL_RETURN
    EXPECT_EQ(scene.notes[0].path, disk.base() + "_0.asm");
    EXPECT_TRUE(scene.blocks[0].reached);
}

TEST(ReadSet, LinesAreDrawnToo) {
    SmallSet set;
    set.before_triangles =
        "    DRAW_LINE_BEGIN 0, 4\r\n    DRAW_LINE 0, 1\r\n    DRAW_LINE_END\r\n";
    EXPECT_THAT(scene_of(set).lines, SizeIs(1));
}

TEST(ReadSet, MaterialsHaveTheirColoursAndTranslucence) {
    const Scene scene = scene_of({});
    EXPECT_EQ(scene.materials.at(1).diffuse, 0xFFFF8000);
}

TEST(ReadSet, DrawsASetThatOpenRefuses) {
    const auto disk = make_system_disk();
    test::TempFolder folder;
    SmallSet set;
    const std::string model = set.model();
    folder.write("set_0.asm", model);
    const Scene scene = read_set_files(*disk, folder.file("set"));
    EXPECT_THAT(scene.triangles, SizeIs(3));
    EXPECT_THAT(texts(scene), ElementsAre(HasSubstr("no frame file")));
}

TEST(ReadSet, AModelOfNothingIsAnEmptyScene) {
    const auto disk = make_system_disk();
    test::TempFolder folder;
    folder.write("set_0.asm", "");
    folder.write("set.asm", "");
    const Scene scene = read_set_files(*disk, folder.file("set"));
    EXPECT_THAT(scene.triangles, IsEmpty());
    EXPECT_TRUE(scene.box.empty());
}

TEST(ReadSetBadInput, OneBadTriangleLeavesTheOthers) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"    DRAW_TRI 0, 1, 4 ; 0\r\n", "a vertex that is not there"},
        {"    DRAW_TRI 0, 1 ; 0\r\n", "a triangle cannot be read"},
        {"    DRAW_TRI a, b, c ; 0\r\n", "a triangle cannot be read"},
        {"    DRAW_TRI 0, 1, 4294967295 ; 0\r\n", "a vertex that is not there"},
        {"    DRAW_TRI 0, 1, 99999999999 ; 0\r\n", "a triangle cannot be read"},
    };
    for (const auto& [line, text] : cases) {
        SmallSet set;
        set.before_triangles = "    DRAW_TRI_BEGIN 0, 4\r\n" + line +
                               "    DRAW_TRI 0, 1, 2 ; 1\r\n    DRAW_TRI_END\r\n";
        const Scene scene = scene_of(set);
        EXPECT_THAT(scene.triangles, SizeIs(4)) << line;
        EXPECT_THAT(texts(scene), ElementsAre(HasSubstr(text))) << line;
        EXPECT_EQ(scene.triangles[2].index, 1U) << line; // still the second of its block
    }
}

TEST(ReadSetBadInput, CornersThatAreNoPlacesAreLeftOut) {
    for (const char* number : {"nan", "inf", "1e999", "1e30", "x", "", "1000001.0"}) {
        SmallSet set;
        std::string model = set.model();
        const std::string good = "30.000000,0.000000,30.000000";
        model.replace(model.find("VERTEX_DEF " + good) + 11, 9, number);
        SetOnDisk disk(set);
        disk.folder().write("set_0.asm", model);
        const Scene scene = disk.scene();
        EXPECT_THAT(scene.triangles, SizeIs(1)) << number; // the marked one
        EXPECT_FALSE(scene.notes.empty()) << number;
        EXPECT_LT(scene.box.high.x, 100) << number;
    }
}

TEST(ReadSetBadInput, TheSameTroubleInManyPlacesIsOneNote) {
    SmallSet set;
    for (int i = 0; i < 500; ++i) {
        set.before_triangles +=
            "    DRAW_TRI_BEGIN 0, 4\r\n    DRAW_TRI 0, 1, 9 ; 0\r\n    DRAW_TRI_END\r\n";
    }
    EXPECT_THAT(texts(scene_of(set)), ElementsAre(HasSubstr("(and 499 more)")));
}

TEST(ReadSetBadInput, EveryLoopEnds) {
    for (const char* loop :
         {"again label BGLCODE\r\n    BGL_JUMP_32 again\r\n",
          "again label BGLCODE\r\n    BGL_CALL_32 again\r\n    BGL_CALL again\r\n",
          "again label BGLCODE\r\n    IFMSK again, x, 1\r\n    BGL_JUMP again\r\n",
          "again label BGLCODE\r\n    INSTANCE_CALL set_MASTER,0,0,1\r\n"}) {
        SmallSet set;
        set.before_triangles = loop;
        const Scene scene = scene_of(set);
        EXPECT_GE(scene.triangles.size(), 2U) << loop;
    }
}

TEST(ReadSetBadInput, CallsThatMultiplyAreCutOff) {
    // Each of 40 subroutines calls the next twice: a million million squares.
    SmallSet set;
    set.before_triangles = "    BGL_CALL_32 s0\r\n";
    for (int i = 0; i < 40; ++i) {
        const std::string next = "    BGL_CALL_32 s" + std::to_string(i + 1) + "\r\n";
        set.end +=
            "s" + std::to_string(i) + " label BGLCODE\r\n" + next + next + "    BGL_RETURN\r\n";
    }
    set.end += "s40 label BGLCODE\r\n" + square("") + "    BGL_RETURN\r\n";
    const Scene scene = scene_of(set);
    EXPECT_THAT(texts(scene), testing::Contains(HasSubstr("repeated too often")));
}

TEST(ReadSetBadInput, AMillionTrianglesAreRead) {
    SmallSet set;
    std::string block = "    DRAW_TRI_BEGIN 0, 4\r\n";
    for (int i = 0; i < 1000; ++i) {
        block += "    DRAW_TRI 0, 1, 2\r\n";
    }
    block += "    DRAW_TRI_END\r\n";
    for (int i = 0; i < 1000; ++i) {
        set.before_triangles += block;
    }
    EXPECT_THAT(scene_of(set).triangles, SizeIs(1000003));
}

TEST(ReadSetBadInput, ListsThatAreMissingOrCutShort) {
    SmallSet set;
    const std::string model = set.model();
    SetOnDisk disk(set);
    for (std::size_t size = 0; size < model.size(); size += 7) {
        disk.folder().write("set_0.asm", model.substr(0, size));
        const Scene scene = disk.scene();
        EXPECT_LE(scene.triangles.size(), 3U);
    }
}

TEST(Textures, AreLookedForWithoutRegardToCase) {
    test::TempFolder folder;
    folder.write("export/Wall.bmp", "x");
    folder.write("Texture/ROOF.BMP", "x");
    folder.write("more/door.BMP", "x");
    Scene scene;
    scene.model_path = folder.file("export/set_0.asm");
    scene.textures = {{"WALL.BMP", {}}, {"roof.bmp", {}}, {"DOOR.BMP", {}}, {"GLASS.BMP", {}}};
    const auto disk = make_system_disk();
    locate_textures(*disk, scene);
    EXPECT_EQ(limits_text(scene), "textures: 2 of 4 found; animation at rest; finest detail");
    EXPECT_THAT(scene.textures[0].path, testing::EndsWith("Wall.bmp"));
    EXPECT_THAT(scene.textures[1].path, testing::EndsWith("ROOF.BMP"));
    locate_textures(*disk, scene, folder.file("more"));
    EXPECT_THAT(scene.textures[2].path, testing::EndsWith("door.BMP"));
    EXPECT_THAT(scene.textures[3].path, IsEmpty());
}

} // namespace
} // namespace morvane::scene
