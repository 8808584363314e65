// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/windsock.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "source/materials.h"

#include <array>
#include <cmath>

namespace morvane {

namespace {

struct Corner {
    double x = 0; // east
    double y = 0; // up
    double z = 0; // north
};

using Corners = std::array<Corner, 3>;

std::string text(double value) {
    return format_decimal(value, 1, 6);
}

// Puts the lowest corner first, on ties the first of the lowest.
void lowest_first(Corners& corners) {
    double lowest = 99999.999;
    std::size_t index = corners.size();
    for (std::size_t i = 0; i < corners.size(); ++i) {
        if (corners[i].y < lowest) {
            lowest = corners[i].y;
            index = i;
        }
    }
    if (index == corners.size()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                           "a windsock's triangle is higher than 99999.999");
    }
    std::swap(corners[0], corners[index]);
}

} // namespace

bool Windsock::is_flat() const {
    return val(text(height)) < 0.1;
}

Windsock measure_windsock(const DrawBlock& block, const BlockTriangle& triangle) {
    Corners corners;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const FieldArray vertex = block.vertex(triangle.fields[i + 1]);
        corners[i] = {number_field(vertex[1]), number_field(vertex[2]), number_field(vertex[3])};
    }
    lowest_first(corners);
    const auto& [foot, second, third] = corners;
    const double dx = second.x - third.x;
    const double dz = second.z - third.z;
    return {foot.x, foot.y, foot.z, second.y - foot.y, std::sqrt(dx * dx + dz * dz)};
}

ObjectCode windsock_code(const Translation& material, const WindsockParameters& parameters) {
    const std::string end = ", 0FF" + swap_rgb(parameters.ws_mastColor) + "h, 0FF" +
                            material.color + "h," + (parameters.ws_lit ? "1" : "0");
    ObjectCode code;
    code.unusable = "The triangle used has zero height. It cannot be used for Windsock object.";
    code.triangle = [end](const DrawBlock& block,
                          const BlockTriangle& triangle) -> std::optional<ObjectCode::Lines> {
        const Windsock sock = measure_windsock(block, triangle);
        if (sock.is_flat()) {
            return std::nullopt;
        }
        return ObjectCode::Lines{"    KZM_WINDSOCK " + text(sock.x) + ", " + text(sock.y) + ", " +
                                 text(sock.z) + ", " + text(sock.height) + ", " + text(sock.size) +
                                 end};
    };
    return code;
}

} // namespace morvane
