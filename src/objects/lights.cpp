// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/lights.h"

#include "base/text.h"

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

} // namespace

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

} // namespace morvane
