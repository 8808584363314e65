// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/vector.h"
#include "source/line_store.h"

#include <optional>
#include <string>
#include <string_view>

namespace morvane::scene {

/// A place on the earth and a scale, as a SCALE or SCALE_AGL line gives them. Each pair of a high
/// and a low word is read as the simulator reads it: the low one counts 1/65536 of the high one.
struct GeoPlace {
    double latitude = 0;  // metres north of the equator, on a circle of 40,007 km
    double longitude = 0; // 2^32 to a turn
    double altitude = 0;  // metres
    bool above_ground = false;
    double metres_per_unit = 1;
    std::string skip_label{}; // where the code goes on when the place is too far away
};

/// std::nullopt when the line's numbers cannot be read, or its scale is 0.
std::optional<GeoPlace> geo_place(std::string_view line);

/// Where the frame file puts the model.
struct Reference {
    std::optional<GeoPlace> place; // std::nullopt: nowhere on the earth, as for an aircraft
    double heading = 0;            // degrees to the right
    std::string entry;             // label of the model where drawing begins; may be empty

    /// From the model file's numbers to the scene.
    raster::Affine model_to_scene() const;
};

/// Reads the last SCALE_AGL line (or SCALE line, where there is none of the first) and the
/// INSTANCE_CALL line after it.
Reference read_reference(const LineStore& frame);

/// Where a place is in the scene of a reference, and how its units are turned to metres: north is
/// up, whatever the model's rotation. Heights above sea level are shown over `terrain` metres.
raster::Affine geo_to_scene(const Reference& reference, const GeoPlace& place, double terrain);

struct LatitudeLongitude {
    double latitude = 0;  // degrees north
    double longitude = 0; // degrees east, -180 .. 180
};
/// std::nullopt for a scene that is nowhere on the earth.
std::optional<LatitudeLongitude> degrees_at(const Reference& reference, const raster::Vec3& point);

} // namespace morvane::scene
