// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/object_code.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"
#include "objects/geo_placement.h"
#include "source/materials.h"

#include <array>
#include <cmath>

namespace morvane {

namespace {

using Lines = ObjectCode::Lines;

// What the whole group depends on. With neither flag the first line is empty.
Lines condition(const std::string& label, const LightParameters& parameters) {
    if (parameters.DayFlag) {
        return {"    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL", "    IFIN1 " + label + "b, tod, 1,1",
                "    BGL_JUMP_32 " + label + "a"};
    }
    if (parameters.AircraftFlag) {
        const int bit = light_switch_bit(parameters.LightType);
        return {";   No globals needed !!!! ",
                "    IFMSK " + label + "a, dict_g_lightStates , " + std::to_string(bit), ";"};
    }
    return {"", ";", ";"};
}

Lines flash_mask(const std::string& label, const LightParameters& parameters) {
    const std::string mask = "," + parameters.LightVariable + ", 0" + parameters.FlashMask + "h";
    if (parameters.AircraftFlag) {
        return {"    IFMSK " + label + "a" + mask, ";"};
    }
    return {"    IFMSK " + label + mask, "    BGL_JUMP_32 " + label + "a"};
}

Lines opening(const std::string& label, const LightParameters& parameters) {
    Lines lines = condition(label, parameters);
    lines.push_back(label + "b label BGLCODE");
    lines.emplace_back("    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL");
    const Lines mask = flash_mask(label, parameters);
    lines.insert(lines.end(), mask.begin(), mask.end());
    lines.push_back(label + " label BGLCODE");
    return lines;
}

std::string light(const FieldArray& vertex, const std::string& color,
                  const LightParameters& parameters) {
    const auto field = [&](std::size_t i) { return std::string(vertex[i]); };
    // The blank before the comma after the intensity is intended.
    return "    BGL_LIGHT " + parameters.LightType + ", " + field(1) + ", " + field(2) + ", " +
           field(3) + ", " + parameters.LightInt + " ," + parameters.LightAttnL + ", " +
           parameters.LightAttS + ", 0FF" + color + "h, " + field(4) + ", " + field(5) + ", " +
           field(6);
}

// One light a triangle, in a group that can depend on the time of day or an aircraft's switches.
ObjectCode lights_code(const Translation& material, const LightParameters& parameters) {
    const std::string label = "LBL" + to_text(material.row);
    ObjectCode code;
    code.opening = opening(label, parameters);
    code.triangle = [color = material.color, parameters](const DrawBlock&,
                                                         const BlockTriangle& triangle) {
        return Lines{light(triangle.vertex, color, parameters)};
    };
    code.closing = {label + "a label BGLCODE"};
    code.closing_counts = true;
    return code;
}

// What effects and library objects have in common: a call that is skipped when the place is far
// away, with a label of its own for each triangle.
struct PlacedCall {
    std::string skip_label;
    Grounding grounding;
    std::string call;
    std::function<std::string(const FieldArray& reference)> scale; // of the placement line
};

// The closing label has no number: a second material writes the same label again, as required.
ObjectCode placed_code(const Placement& placement, const PlacedCall& call) {
    ObjectCode code;
    code.triangle = [&placement, call](const DrawBlock&, const BlockTriangle& triangle) {
        const FieldArray reference = split_fields(placement.scale_line);
        const std::string skip = call.skip_label + to_text(triangle.next_line);
        return Lines{std::string(scale_keyword(call.grounding)) + skip + ", " +
                         std::string(reference[2]) + ", " + std::string(reference[3]) + ", " +
                         call.scale(reference) +
                         geo_coordinates(placement, triangle.vertex, call.grounding),
                     call.call, skip + "  label BGLCODE"};
    };
    code.closing = {call.skip_label + "  label BGLCODE"};
    return code;
}

// One effect a triangle, placed on the globe at its first vertex.
ObjectCode effects_code(const Placement& placement, const EffectParameters& parameters) {
    return placed_code(
        placement,
        {"SKIP_FX",
         {parameters.fx_OTG, parameters.fx_Terrain_alt},
         "    KZM_FX1 \"" + parameters.lstEffectType + "\" , \"" + parameters.fx_params + "\"",
         [](const FieldArray& reference) { return std::string(reference[4]); }});
}

// One library object a triangle, placed in the same way.
ObjectCode library_code(const Placement& placement, const LibraryParameters& parameters) {
    return placed_code(placement, {"SKIP_LIB",
                                   {parameters.lib_OTG, parameters.lib_Terrain_alt},
                                   "    KZM_LIBRARY_CALL " + parameters.libGUID,
                                   [scale = parameters.libScale](const FieldArray&) {
                                       return plain_text(scale_word(scale));
                                   }});
}

// One library object a triangle, placed inside the model's own frame, so that neither its rotation
// nor the ground counts.
ObjectCode library_new_code(const LibraryParameters& parameters) {
    const std::string scale = format_decimal(val(parameters.libScale), 1, 1);
    ObjectCode code;
    code.triangle = [scale, call = "    KZM_LIBRARY_CALL " + parameters.libGUID](
                        const DrawBlock&, const BlockTriangle& triangle) {
        const auto field = [&](std::size_t i) { return std::string(triangle.vertex[i]); };
        return Lines{"    BGL_TRANSFORM_MAT " + field(1) + ", " + field(2) + ", " + field(3) +
                         ", " + scale + ", 0.0, 0.0, 0.0, " + scale + ", 0.0, 0.0, 0.0, " + scale,
                     call, "    BGL_TRANSFORM_END"};
    };
    return code;
}

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

// One windsock a triangle. A flat one cannot be used.
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

} // namespace

double scale_word(std::string_view scale) {
    const double number = val(scale);
    if (number == 0) {
        throw RuntimeError(ErrorNumber::DivisionByZero, "the library object's scale is 0");
    }
    return std::floor(65536 / number);
}

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

ObjectCode object_code(const OpenSet& set, const Translation& material, Kind kind,
                       const Parameters& parameters) {
    switch (kind) {
    case Kind::Lights:
        return lights_code(material, parameters.lights);
    case Kind::Effects:
        return effects_code(set.placement, parameters.effects);
    case Kind::Windsock:
        return windsock_code(material, parameters.windsock);
    case Kind::Library:
        return library_code(set.placement, parameters.library);
    case Kind::LibraryNew:
        break;
    }
    return library_new_code(parameters.library);
}

} // namespace morvane
