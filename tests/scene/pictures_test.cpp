// SPDX-License-Identifier: GPL-3.0-or-later

// Whole pictures, compared to the byte with those under golden/: they are the same on every machine
// and in every build. Look at each one that changes. With MORVANE_PICTURES=FOLDER in the
// environment the pictures are written there.

#include "drawing_code.h"
#include "raster/picture.h"
#include "scene/draw_scene.h"
#include "scene/draw_shape.h"
#include "scene/read_object.h"
#include "scene/read_set.h"
#include "small_set.h"
#include "source/open_set.h"
#include "support/source_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace morvane::scene {
namespace {

using test::DrawingCode;
using test::SetOnDisk;
using test::SmallSet;

constexpr raster::PictureSize picture_size{200, 150};

raster::Camera camera_of(raster::View view) {
    raster::Camera camera;
    camera.view = view;
    return camera;
}

void expect_golden(const raster::Picture& picture, const std::string& name) {
    const std::string bytes = png_bytes(picture);
    if (const char* folder = std::getenv("MORVANE_PICTURES")) {
        test::write_file(std::string(folder) + "/" + name + ".png", bytes);
    }
    const std::string golden = test::source_folder() + "/tests/scene/golden/" + name + ".png";
    EXPECT_TRUE(bytes == test::read_file(golden))
        << name << " is not the picture in tests/scene/golden";
}

// A light that turns with the model, a cone, and a box with walls of three directions.
SmallSet village() {
    SmallSet set;
    set.rotation = "01000h";
    set.corners = {{10, 2, 20}, {11, 5, 20}, {10, 2, 22}, {-15, 0, 5}, {-14, 6, 5}, {-15, 0, 9}};
    return set;
}

Parameters some_parameters() {
    Parameters parameters;
    parameters.lights.LightType = "LIGHT_LANDING";
    parameters.effects.lstEffectType = "fx_smoke";
    parameters.effects.fx_OTG = true;
    parameters.library.lib_OTG = true;
    parameters.library.libScale = "1";
    return parameters;
}

raster::Picture picture_of(const SmallSet& set, Kind kind, raster::View view,
                           const DrawOptions& options = {}) {
    SetOnDisk disk(set);
    return render_picture(read_set(disk.processed(kind, some_parameters())), camera_of(view),
                          picture_size, options);
}

TEST(Pictures, Lights) {
    expect_golden(picture_of(village(), Kind::Lights, raster::View::Orbit), "lights");
}

TEST(Pictures, LightsAtNight) {
    expect_golden(picture_of(village(), Kind::Lights, raster::View::Orbit, {.night = true}),
                  "lights-at-night");
}

TEST(Pictures, EffectsFromAbove) {
    expect_golden(picture_of(village(), Kind::Effects, raster::View::Plan), "effects-plan");
}

TEST(Pictures, WindsocksFromTheFront) {
    expect_golden(picture_of(village(), Kind::Windsock, raster::View::Front), "windsocks-front");
}

TEST(Pictures, LibraryCallsOfUnknownObjects) {
    expect_golden(picture_of(village(), Kind::Library, raster::View::Orbit), "library-unknown");
}

TEST(Pictures, LibraryCallsFromTheSideOnADarkBackground) {
    expect_golden(picture_of(village(), Kind::LibraryNew, raster::View::Side, {.dark = true}),
                  "library-new-side");
}

TEST(Pictures, CodeThatIsNeverReached) {
    SmallSet set = village();
    set.after_triangles = "    BGL_RETURN\r\n";
    expect_golden(picture_of(set, Kind::Effects, raster::View::Orbit), "never-reached");
}

TEST(Pictures, AGhostWithARefusedTriangle) {
    SmallSet small = village();
    small.corners[4] = {-14, 0, 9}; // flat
    SetOnDisk disk(small);
    OpenSet set;
    ASSERT_TRUE(open_source_set(disk.services(), set, disk.base()));
    const Scene scene = read_set(set);
    const Ghost ghost = ghost_of(disk.disk(), set, scene, 1, Kind::Windsock, {});
    DrawOptions options;
    options.ghost = &ghost;
    options.selected = {1};
    expect_golden(render_picture(scene, camera_of(raster::View::Orbit), picture_size, options),
                  "ghost");
}

// A house of one box with a roof, and a pane before it.
Shape house() {
    DrawingCode code;
    code.materials({{{0.8F, 0.7F, 0.5F, 1}, {0.8F, 0.7F, 0.5F}},
                    {{0.6F, 0.2F, 0.1F, 1}, {0.6F, 0.2F, 0.1F}},
                    {{0.3F, 0.6F, 0.9F, 0.4F}, {0, 0, 0}}});
    code.material(0).box(8, 4, 6);
    code.vertices({{-4.5F, 4, -3.5F},
                   {4.5F, 4, -3.5F},
                   {4.5F, 4, 3.5F},
                   {-4.5F, 4, 3.5F},
                   {-4.5F, 7, 0},
                   {4.5F, 7, 0}});
    code.material(1).triangles({0, 1, 5, 0, 5, 4, 3, 2, 5, 3, 5, 4, 0, 3, 4, 1, 2, 5});
    code.material(2).box(5, 3, 0.1F, 0, 0, -6).end();
    Shape shape;
    read_object(code.bytes(), shape);
    shape.name = "House";
    EXPECT_EQ(shape.trouble, "");
    return shape;
}

TEST(Pictures, AnObjectOfALibrary) {
    expect_golden(thumbnail(house(), picture_size, {}), "object");
}

TEST(Pictures, ASheetOfObjects) {
    std::vector<Shape> shapes(5, house());
    shapes[1].name = "House at twice the scale";
    shapes[1].metres_per_unit = 2;
    shapes[2] = Shape{.name = "Not understood", .size = 20, .trouble = "command 7777h at offset 0"};
    expect_golden(sheet(shapes, {300, 220}, {}, {}), "sheet");
}

TEST(Pictures, ALibraryCallOfAKnownObject) {
    SetOnDisk disk(village());
    const Scene scene = read_set(disk.processed(Kind::LibraryNew, some_parameters()));
    Catalogue catalogue;
    catalogue[scene.marks.at(0).guid] = house();
    expect_golden(render_picture(scene, {}, picture_size, {.objects = &catalogue}),
                  "library-known");
}

TEST(Pictures, ATunnelAroundTheViewer) {
    // Walls that pass the viewer on all sides are cut off behind.
    Scene scene;
    scene.points = {{-3, -2, -500}, {3, -2, -500}, {3, 4, -500}, {-3, 4, -500},
                    {-3, -2, 500},  {3, -2, 500},  {3, 4, 500},  {-3, 4, 500}};
    scene.normals.resize(8);
    scene.blocks.resize(1);
    for (std::uint32_t i = 0; i < 4; ++i) {
        const std::uint32_t next = (i + 1) % 4;
        for (const auto& corners :
             {std::array{i, next, next + 4}, std::array{i, next + 4, i + 4}}) {
            SceneTriangle triangle;
            triangle.corners = corners;
            triangle.light = raster::light_on(scene.points[corners[0]], scene.points[corners[1]],
                                              scene.points[corners[2]]);
            scene.triangles.push_back(triangle);
        }
    }
    raster::Camera camera;
    camera.heading = 8;
    camera.pitch = 4;
    camera.height = 3;
    raster::Picture picture;
    Painter().draw(picture, scene, camera, picture_size, {.compass = false});
    expect_golden(picture, "tunnel");
}

TEST(Pictures, ADesignOfTheExamples) {
    const auto disk = make_system_disk();
    const Scene scene =
        read_set_files(*disk, test::source_folder() + "/examples/library/fuel_tank");
    expect_golden(render_picture(scene, {}, picture_size, {}), "fuel-tank");
}

} // namespace
} // namespace morvane::scene
