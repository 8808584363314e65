#include "recipe/parameter_keys.h"

#include "core/text.h"
#include "recipe/nearest_key.h"

#include <algorithm>

namespace morvane {

namespace {

template <typename Entries>
std::string not_in_list(std::string_view text, const Entries& entries) {
    std::vector<std::string_view> names;
    for (const auto& entry : entries) {
        if (entry.text == text) {
            return {};
        }
        names.push_back(entry.text);
    }
    return "is not in its list" + suggestion(text, names);
}

std::string light_type_problem(std::string_view text) {
    return not_in_list(text, light_types);
}

std::string light_variable_problem(std::string_view text) {
    return not_in_list(text, flash_variables);
}

std::string wrong_length(std::string_view text, std::size_t length) {
    return text.size() == length
               ? std::string()
               : "must be " + to_text(length) + " characters long, not " + to_text(text.size());
}

std::string time_constraints_problem(std::string_view text) {
    return wrong_length(text, time_constraints_length);
}

std::string mast_color_problem(std::string_view text) {
    return wrong_length(text, mast_color_length);
}

// clang-format off
#define MORVANE_PLACE(group, name) [](Parameters& p) -> auto& { return p.group.name; }
// clang-format on

const std::vector<ParameterKey> light_keys{
    {"LightType", MORVANE_PLACE(lights, LightType), nullptr, light_type_problem},
    {"LightInt", MORVANE_PLACE(lights, LightInt)},
    {"LightAttnL", MORVANE_PLACE(lights, LightAttnL)},
    {"LightAttS", MORVANE_PLACE(lights, LightAttS)},
    {"LightVariable", MORVANE_PLACE(lights, LightVariable), nullptr, light_variable_problem},
    {"FlashMask", MORVANE_PLACE(lights, FlashMask)},
    {"DayFlag", nullptr, MORVANE_PLACE(lights, DayFlag)},
    {"AircraftFlag", nullptr, MORVANE_PLACE(lights, AircraftFlag)}};

const std::vector<ParameterKey> effect_keys{
    {"lstEffectType", MORVANE_PLACE(effects, lstEffectType)},
    {"fx_params", MORVANE_PLACE(effects, fx_params), nullptr, time_constraints_problem},
    {"fx_OTG", nullptr, MORVANE_PLACE(effects, fx_OTG)},
    {"fx_Terrain_alt", MORVANE_PLACE(effects, fx_Terrain_alt)}};

const std::vector<ParameterKey> windsock_keys{
    {"ws_mastColor", MORVANE_PLACE(windsock, ws_mastColor), nullptr, mast_color_problem},
    {"ws_lit", nullptr, MORVANE_PLACE(windsock, ws_lit)}};

const std::vector<ParameterKey> library_keys{
    {"libGUID", MORVANE_PLACE(library, libGUID)},
    {"libScale", MORVANE_PLACE(library, libScale)},
    {"lib_OTG", nullptr, MORVANE_PLACE(library, lib_OTG)},
    {"lib_Terrain_alt", MORVANE_PLACE(library, lib_Terrain_alt)}};

#undef MORVANE_PLACE

} // namespace

const std::vector<ParameterKey>& parameter_keys(Kind kind) {
    switch (kind) {
    case Kind::Lights:
        return light_keys;
    case Kind::Effects:
        return effect_keys;
    case Kind::Windsock:
        return windsock_keys;
    case Kind::Library:
    case Kind::LibraryNew:
        break;
    }
    return library_keys;
}

const ParameterKey* find_parameter_key(Kind kind, std::string_view name) {
    const std::vector<ParameterKey>& keys = parameter_keys(kind);
    const auto found = std::find_if(keys.begin(), keys.end(),
                                    [&](const ParameterKey& key) { return key.name == name; });
    return found == keys.end() ? nullptr : &*found;
}

std::string flash_mask_of(std::string_view light_variable) {
    for (const FlashVariableEntry& entry : flash_variables) {
        if (entry.text == light_variable) {
            return std::string(entry.mask);
        }
    }
    return LightParameters().FlashMask;
}

} // namespace morvane
