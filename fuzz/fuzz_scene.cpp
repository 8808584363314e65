// SPDX-License-Identifier: GPL-3.0-or-later

// The scene of any two files, and a picture of it. Sections: frame file, model file.

#include "base/errors.h"
#include "scene/draw_scene.h"
#include "scene/read_set.h"
#include "target.h"

namespace {

using namespace morvane;
using namespace morvane::fuzz;

void require_sound(const scene::Scene& scene) {
    for (const scene::SceneTriangle& triangle : scene.triangles) {
        require(triangle.block < scene.blocks.size(), "blocks are there");
        require(triangle.first_vertex < scene.vertices.size(), "vertices are there");
        for (const std::uint32_t corner : triangle.corners) {
            require(corner < scene.points.size() && is_finite(scene.points[corner]),
                    "corners are there and finite");
        }
    }
    for (const scene::SceneBlock& block : scene.blocks) {
        require(block.look < static_cast<int>(scene.materials.size()), "materials are there");
        require(block.texture < static_cast<int>(scene.textures.size()), "textures are there");
    }
    for (const scene::Mark& mark : scene.marks) {
        require(is_finite(mark.place), "marks are somewhere");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> input = sections(data, size, 2);
    World world;
    world.disk.files = {{"set.asm", input[0]}, {"set_0.asm", input[1]}};
    const scene::Scene scene = scene::read_set_files(world.disk, "set");
    require_sound(scene);
    if (scene.triangles.size() + scene.marks.size() > 2000) {
        return 0; // a call in a loop makes much of little; that it ends has been shown
    }
    raster::Camera camera;
    fit(camera, {32, 24}, scene);
    raster::Picture picture;
    scene::Painter().draw(picture, scene, camera, {32, 24}, {.normals = true});
    for (const std::uint32_t id : picture.ids) {
        require(id == raster::no_id || picked_triangle(scene, id) || picked_mark(scene, id),
                "every id is of something");
    }
    return 0;
}
