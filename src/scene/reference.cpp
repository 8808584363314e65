// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/reference.h"

#include "base/numbers.h"
#include "raster/vector.h"
#include "scene/masm.h"

#include <cmath>

namespace morvane::scene {

namespace {

using raster::Affine;
using raster::Vec3;

constexpr double meridian = 12734620 * pi; // metres once around the poles
constexpr double turn_units = 4294967296.0;

// High and low word of a place; std::nullopt unless both can be read.
std::optional<double> joined(std::string_view high, std::string_view low) {
    const auto whole = word_number(high);
    const auto fraction = whole_number(low);
    if (!whole || !fraction) {
        return std::nullopt;
    }
    return *whole + static_cast<double>(*fraction) / 65536;
}

double latitude_degrees(const GeoPlace& place) {
    return place.latitude / meridian * 360;
}

double metres_per_longitude_unit(const GeoPlace& place) {
    return raster::turn_of(latitude_degrees(place)).cosine * meridian / turn_units;
}

double wrapped(double longitude) {
    return longitude - std::floor(longitude / turn_units + 0.5) * turn_units;
}

// The INSTANCE_CALL that follows directly.
void read_instance(std::string_view line, Reference& reference) {
    const Statement statement = statement_of(line);
    if (!statement.word.starts_with("INSTANCE_CALL")) {
        return;
    }
    const auto operands = operands_of(statement.rest);
    if (!operands.empty()) {
        reference.entry = operands[0];
    }
    if (const auto heading = operands.size() > 3 ? whole_number(operands[3]) : std::nullopt) {
        reference.heading = static_cast<double>(*heading) * 360 / 65536;
    }
}

Reference read_last(const LineStore& frame, std::string_view keyword) {
    for (std::size_t i = frame.count(); i >= 1; --i) {
        if (statement_of(frame.line(i)).word != keyword) {
            continue;
        }
        Reference reference;
        reference.place = geo_place(frame.line(i));
        read_instance(frame.line(i + 1), reference);
        return reference;
    }
    return {};
}

} // namespace

std::optional<GeoPlace> geo_place(std::string_view line) {
    const Statement statement = statement_of(line);
    const auto operands = operands_of(statement.rest);
    if (operands.size() < 10) {
        return std::nullopt;
    }
    const auto scale = whole_number(operands[3]);
    const auto latitude = joined(operands[4], operands[5]);
    const auto longitude = joined(operands[6], operands[7]);
    const auto altitude = joined(operands[8], operands[9]);
    if (!scale || *scale == 0 || !latitude || !longitude || !altitude) {
        return std::nullopt;
    }
    return GeoPlace{*latitude,
                    *longitude,
                    *altitude,
                    statement.word == "SCALE_AGL",
                    65536 / static_cast<double>(*scale),
                    std::string(operands[0])};
}

Affine Reference::model_to_scene() const {
    if (!place) {
        return raster::rotation(heading);
    }
    Affine result = then(raster::scaling(place->metres_per_unit), raster::rotation(heading));
    result.offset.y = place->above_ground ? place->altitude : 0;
    return result;
}

Reference read_reference(const LineStore& frame) {
    Reference reference = read_last(frame, "SCALE_AGL");
    return reference.place ? reference : read_last(frame, "SCALE");
}

Affine geo_to_scene(const Reference& reference, const GeoPlace& place, double terrain) {
    Affine result = raster::scaling(place.metres_per_unit);
    if (reference.place) {
        result.offset = {wrapped(place.longitude - reference.place->longitude) *
                             metres_per_longitude_unit(*reference.place),
                         place.altitude - (place.above_ground ? 0 : terrain),
                         place.latitude - reference.place->latitude};
    }
    return result;
}

std::optional<LatitudeLongitude> degrees_at(const Reference& reference, const Vec3& point) {
    if (!reference.place) {
        return std::nullopt;
    }
    const double longitude =
        reference.place->longitude + point.x / metres_per_longitude_unit(*reference.place);
    return LatitudeLongitude{latitude_degrees(*reference.place) + point.z / meridian * 360,
                             wrapped(longitude) / turn_units * 360};
}

} // namespace morvane::scene
