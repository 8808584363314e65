// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/guid128.h"
#include "raster/picture.h"
#include "raster/vector.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace morvane::scene {

struct ShapeFace {
    std::array<std::uint32_t, 3> corners{}; // positions in Shape::points
    raster::Colour colour = 0xFFC8C2B8;     // without light and shade
};

/// What the drawing code of one library object draws, in the object's own units.
struct Shape {
    std::string name;
    Guid128 guid{};
    double metres_per_unit = 1; // as the object was designed
    double size = 0;            // metres, the record's size field; no bound of the geometry
    std::vector<raster::Vec3> points{};
    std::vector<ShapeFace> faces{};
    std::vector<std::array<std::uint32_t, 2>> lines{};
    std::vector<std::string> textures{}; // names, each once
    raster::Box box{};                   // of what is drawn; empty when nothing is
    std::string trouble{}; // why reading ended early, naming command and offset; empty: it did not
    std::size_t commands = 0; // understood
};

/// Objects of libraries by their identifiers, for the calls in a scene.
using Catalogue = std::map<Guid128, Shape>;

} // namespace morvane::scene
