// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/parameters.h"

#include "base/text.h"

namespace morvane {

std::string_view kind_text(Kind kind) {
    switch (kind) {
    case Kind::Lights:
        return "Lights";
    case Kind::Effects:
        return "Effects";
    case Kind::Library:
        return "Library";
    case Kind::LibraryNew:
        return "Library New";
    case Kind::Windsock:
        return "Windsock";
    }
    return {};
}

std::optional<Kind> kind_from_text(std::string_view text) {
    for (const Kind kind : all_kinds) {
        if (kind_text(kind) == text) {
            return kind;
        }
    }
    return std::nullopt;
}

int light_switch_bit(std::string_view light_type) {
    for (const LightTypeEntry& entry : light_types) {
        if (entry.text == light_type) {
            return entry.switch_bit;
        }
    }
    return 0;
}

std::optional<std::string> parameter_line(Kind kind, const Parameters& parameters) {
    const LightParameters& lights = parameters.lights;
    switch (kind) {
    case Kind::Lights:
        return lights.LightType + "/" + lights.LightInt + "/" + lights.FlashMask +
               (lights.AircraftFlag ? "-A/C" : "");
    case Kind::Effects:
        return upper_case(parameters.effects.lstEffectType) + "/" + parameters.effects.fx_params;
    case Kind::Windsock:
        return "";
    case Kind::Library:
        return parameters.library.libGUID;
    case Kind::LibraryNew:
        break;
    }
    return std::nullopt;
}

} // namespace morvane
