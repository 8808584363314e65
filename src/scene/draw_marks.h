// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/camera.h"
#include "scene/draw_scene.h"

#include <vector>

namespace morvane::scene {

/// What a mark is drawn with.
struct MarkStyle {
    const raster::Projection& projection;
    const Theme& theme;
    const Catalogue* objects = nullptr;
    double size = 1; // metres that a mark without a size of its own takes
    int scale = 1;
    bool night = false;
    bool ghost = false;
    double reference_heading = 0; // degrees
};

/// Faces with points of their own, put together for one draw_faces.
struct Solids {
    std::vector<Vec3> points;
    std::vector<raster::Face> faces;
};

/// Adds what is solid of a mark: cones, socks, boxes, the objects of libraries.
void add_solids(Solids& solids, const Mark& mark, std::uint32_t id, const MarkStyle& style);

/// Draws what is lines and discs of a mark, after all solids.
void draw_mark(raster::Picture& picture, const Mark& mark, std::uint32_t id,
               const MarkStyle& style);

/// The name of an effect, an object, and the distance to the triangle that it came from.
void add_mark_labels(std::vector<Label>& labels, const Mark& mark, const MarkStyle& style);

} // namespace morvane::scene
