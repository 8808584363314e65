// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

/// What a marked material is turned into.
enum class Kind { Lights, Effects, Library, LibraryNew, Windsock };

/// All kinds in the order of the list `typeOfObj`.
inline constexpr std::array<Kind, 5> all_kinds{Kind::Lights, Kind::Effects, Kind::Library,
                                               Kind::LibraryNew, Kind::Windsock};

/// "Lights", "Effects", "Library", "Library New" or "Windsock".
std::string_view kind_text(Kind kind);
std::optional<Kind> kind_from_text(std::string_view text);

/// The parameter controls of a kind, by their names, with the window's defaults. Texts are
/// Windows-1252 and go into the generated code as they stand.
struct LightParameters {
    std::string LightType = "LIGHT_STROBE";
    std::string LightInt = "100";
    std::string LightAttnL = "0.4";
    std::string LightAttS = "0.04";
    std::string FlashMask = "CCCC"; // hexadecimal; 0 means always on
    std::string LightVariable;      // none chosen
    bool DayFlag = false;
    bool AircraftFlag = false;

    bool operator==(const LightParameters&) const = default;
};

inline constexpr std::string_view default_time_constraints =
    "MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;";
inline constexpr std::size_t time_constraints_length = 40;
inline constexpr std::size_t mast_color_length = 6;

struct EffectParameters {
    std::string lstEffectType; // the first line of the effect list
    std::string fx_params{default_time_constraints};
    bool fx_OTG = false;
    std::string fx_Terrain_alt = "0"; // feet

    bool operator==(const EffectParameters&) const = default;
};

struct WindsockParameters {
    std::string ws_mastColor = "10F0F0"; // RRGGBB
    bool ws_lit = false;

    bool operator==(const WindsockParameters&) const = default;
};

struct LibraryParameters {
    std::string libGUID = "05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h";
    std::string libScale = "0.5";
    bool lib_OTG = false;
    std::string lib_Terrain_alt = "0"; // feet

    bool operator==(const LibraryParameters&) const = default;
};

/// The parameters of all kinds: one record for the open set. Those in force when a material is
/// processed are the ones used.
struct Parameters {
    LightParameters lights;
    EffectParameters effects;
    WindsockParameters windsock;
    LibraryParameters library;

    bool operator==(const Parameters&) const = default;
};

/// An entry of the light type list. `switch_bit` is tested in dict_g_lightStates.
struct LightTypeEntry {
    std::string_view text;
    int switch_bit;
};

/// The main window's light types, which are the ones written. The value 32 is skipped and the
/// tenth entry has bit 0, both on purpose.
inline constexpr std::array<LightTypeEntry, 10> light_types{{{"LIGHT_NAV", 1},
                                                             {"LIGHT_BEACON", 2},
                                                             {"LIGHT_LANDING", 4},
                                                             {"LIGHT_TAXI", 8},
                                                             {"LIGHT_STROBE", 16},
                                                             {"LIGHT_RECOGNITION", 64},
                                                             {"LIGHT_WING", 128},
                                                             {"LIGHT_LOGO", 256},
                                                             {"LIGHT_NONE", 0},
                                                             {"*LIGHT_PANEL*", 0}}};

/// The text of the tenth entry in the light dialog, where its value is 32; the choice is handed
/// over by list position, so neither is ever written.
inline constexpr LightTypeEntry dialog_panel_light_type{"PANEL*A/C ONLY*", 32};

/// An entry of the flash variable list, with the flash mask that choosing it sets. As with the
/// light types, the value 32 is skipped.
struct FlashVariableEntry {
    std::string_view text;
    int value;
    std::string_view mask;
};

inline constexpr std::array<FlashVariableEntry, 7> flash_variables{
    {{"six_second_beacon", 1, "0800"},
     {"second_flash", 2, "-1"},
     {"becon2", 4, "0100"},
     {"becon3", 8, "CCCC"},
     {"becon4", 16, "CCCC"},
     {"becon5", 64, "CCCC"},
     {"beacnt", 128, "2"}}};

/// The switch bit of a light type's text; 0 for a text that is not in the list.
int light_switch_bit(std::string_view light_type);

/// The parameter line that the main window shows for a kind; nothing for LibraryNew, whose line is
/// left as it was.
std::optional<std::string> parameter_line(Kind kind, const Parameters& parameters);

} // namespace morvane
