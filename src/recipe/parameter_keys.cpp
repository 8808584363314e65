// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/parameter_keys.h"

#include "base/text.h"
#include "toml/nearest_key.h"

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

// Where a parameter of a group is.
template <auto Group, auto Member>
auto& place(Parameters& parameters) {
    return parameters.*Group.*Member;
}

template <auto Member>
constexpr auto light = place<&Parameters::lights, Member>;
template <auto Member>
constexpr auto effect = place<&Parameters::effects, Member>;
template <auto Member>
constexpr auto sock = place<&Parameters::windsock, Member>;
template <auto Member>
constexpr auto call = place<&Parameters::library, Member>;

using Light = LightParameters;
using Effect = EffectParameters;
using Sock = WindsockParameters;
using Call = LibraryParameters;

const std::vector<ParameterKey> light_keys{
    {"LightType", light<&Light::LightType>, nullptr, light_type_problem},
    {"LightInt", light<&Light::LightInt>},
    {"LightAttnL", light<&Light::LightAttnL>},
    {"LightAttS", light<&Light::LightAttS>},
    {"LightVariable", light<&Light::LightVariable>, nullptr, light_variable_problem},
    {"FlashMask", light<&Light::FlashMask>},
    {"DayFlag", nullptr, light<&Light::DayFlag>},
    {"AircraftFlag", nullptr, light<&Light::AircraftFlag>}};

const std::vector<ParameterKey> effect_keys{
    {"lstEffectType", effect<&Effect::lstEffectType>},
    {"fx_params", effect<&Effect::fx_params>, nullptr, time_constraints_problem},
    {"fx_OTG", nullptr, effect<&Effect::fx_OTG>},
    {"fx_Terrain_alt", effect<&Effect::fx_Terrain_alt>}};

const std::vector<ParameterKey> windsock_keys{
    {"ws_mastColor", sock<&Sock::ws_mastColor>, nullptr, mast_color_problem},
    {"ws_lit", nullptr, sock<&Sock::ws_lit>}};

const std::vector<ParameterKey> library_keys{{"libGUID", call<&Call::libGUID>},
                                             {"libScale", call<&Call::libScale>},
                                             {"lib_OTG", nullptr, call<&Call::lib_OTG>},
                                             {"lib_Terrain_alt", call<&Call::lib_Terrain_alt>}};

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
