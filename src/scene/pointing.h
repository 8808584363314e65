// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/camera.h"
#include "scene/ghost.h"
#include "scene/scene.h"
#include "source/open_set.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace morvane::scene {

/// What is under the pointer, for a window to act on.
struct Pointed {
    int material = -1;      // MATERIAL number; -1: none, as for a mark whose triangle is unknown
    std::uint32_t line = 0; // of the model file; 0: generated and not saved yet
    std::string text;       // as the status line says it
};

/// What was drawn with an id: a triangle of the model, a mark, or a mark of the ghost.
/// std::nullopt for ids of nothing.
std::optional<Pointed> pointed_at(const Scene& scene, const Ghost& ghost, std::uint32_t id);

/// "light LIGHT_NAV of airport_0.asm:371, MATERIAL 12, triangle 2, 1.2 m from it".
std::string mark_text(const Scene& scene, const Mark& mark);

/// "12.5 m east, 3.0 m south; 47.26012 N, 11.34551 E" for a place on the ground; without degrees in
/// a scene that is nowhere on the earth.
std::string place_text(const Scene& scene, const Vec3& place);

/// What a view from above says of the place under a pixel; empty in other views.
std::string plan_text(const Scene& scene, const raster::Camera& camera,
                      const raster::PictureSize& size, double x, double y);

/// The row of the list of marked materials, from 1, that has a MATERIAL number; 0: it is not
/// marked.
std::size_t row_of_material(const OpenSet& set, int material);

} // namespace morvane::scene
