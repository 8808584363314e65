// SPDX-License-Identifier: GPL-3.0-or-later

// The drawing code of a library object, and a library file around it, on any bytes.

#include "scene/draw_shape.h"
#include "scene/read_library.h"
#include "scene/read_object.h"
#include "target.h"

#include <cmath>

namespace {

using namespace morvane;
using namespace morvane::fuzz;

void require_sound(const scene::Shape& shape) {
    require(shape.faces.size() <= 200000, "the bound of facets");
    for (const scene::ShapeFace& face : shape.faces) {
        for (const std::uint32_t corner : face.corners) {
            require(corner < shape.points.size(), "corners are there");
        }
    }
    for (const raster::Vec3& point : shape.points) {
        require(is_finite(point), "places are finite");
    }
    require(shape.commands > 0 || !shape.trouble.empty() || shape.faces.empty(),
            "what is drawn comes from a command");
}

void draw(const scene::Shape& shape) {
    if (shape.faces.size() < 1000) {
        const raster::Picture picture = thumbnail(shape, {24, 20}, {});
        require(picture.pixels.size() == 24 * 20, "there is always a picture");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    scene::Shape shape;
    read_object(bytes, shape);
    require_sound(shape);
    draw(shape);
    World world;
    world.disk.files = {{"a.bgl", bytes}};
    const auto file = world.disk.open_for_reading("a.bgl");
    std::size_t left = 20; // objects drawn; index entries may all name one
    for (const scene::ObjectPlace& place : scene::list_object_places(*file)) {
        if (left-- == 0) {
            break;
        }
        require_sound(read_shape(*file, place));
    }
    return 0;
}
