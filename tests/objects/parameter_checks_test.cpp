// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/parameter_checks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;

// Parameters that compile.
Parameters good() {
    Parameters parameters;
    parameters.lights.LightVariable = "beacnt";
    parameters.effects.lstEffectType = "fx_beacon";
    return parameters;
}

std::vector<std::string> codes(Kind kind, const std::function<void(Parameters&)>& change) {
    Parameters parameters = good();
    change(parameters);
    std::vector<std::string> result;
    for (const ParameterProblem& problem : check_parameters(kind, parameters)) {
        EXPECT_EQ(problem.text.rfind(problem.key, 0), 0U) << problem.text;
        result.push_back(problem.code);
    }
    return result;
}

// Every text of the list must have the problem, or none when it is empty.
void expect_all(Kind kind, std::string& (*place)(Parameters&), const std::string& code,
                const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        const auto found = codes(kind, [&](Parameters& p) { place(p) = text; });
        EXPECT_EQ(found, code.empty() ? std::vector<std::string>() : std::vector{code}) << text;
    }
}

std::string& intensity(Parameters& p) {
    return p.lights.LightInt;
}
std::string& linear(Parameters& p) {
    return p.lights.LightAttnL;
}
std::string& square(Parameters& p) {
    return p.lights.LightAttS;
}
std::string& mask(Parameters& p) {
    return p.lights.FlashMask;
}
std::string& effect(Parameters& p) {
    return p.effects.lstEffectType;
}
std::string& times(Parameters& p) {
    return p.effects.fx_params;
}
std::string& effect_ground(Parameters& p) {
    return p.effects.fx_Terrain_alt;
}
std::string& mast(Parameters& p) {
    return p.windsock.ws_mastColor;
}
std::string& guid(Parameters& p) {
    return p.library.libGUID;
}
std::string& scale(Parameters& p) {
    return p.library.libScale;
}

TEST(ParameterChecks, ParametersThatCompileAreSilent) {
    for (const Kind kind : all_kinds) {
        EXPECT_THAT(codes(kind, [](Parameters&) {}), IsEmpty()) << kind_text(kind);
    }
}

TEST(ParameterChecks, LightsWithoutAVariableWhichIsTheDefault) {
    EXPECT_THAT(codes(Kind::Lights, [](Parameters& p) { p.lights = {}; }),
                ElementsAre("light-variable"));
}

TEST(ParameterChecks, ThePanelLight) {
    EXPECT_THAT(codes(Kind::Lights, [](Parameters& p) { p.lights.LightType = "*LIGHT_PANEL*"; }),
                ElementsAre("light-type"));
}

TEST(ParameterChecks, BothFlagsOfLights) {
    EXPECT_THAT(
        codes(Kind::Lights, [](Parameters& p) { p.lights.DayFlag = p.lights.AircraftFlag = true; }),
        ElementsAre("light-flags"));
}

TEST(ParameterChecks, Intensity) {
    expect_all(Kind::Lights, intensity, "light-intensity",
               {"", "1e3", "12.5", "4294967296", "bright"});
    expect_all(Kind::Lights, intensity, "", {"0", "100", "4294967295", "00000000000100"});
}

TEST(ParameterChecks, Attenuations) {
    const std::vector<std::string> bad{"", "0", "1", ".4", "1e-3", "0,4", "1.0e", "x"};
    const std::vector<std::string> fine{"0.4", "1.", "-0.04", "+2.5", "1.5e-3"};
    for (auto* place : {linear, square}) {
        expect_all(Kind::Lights, place, "light-attenuation", bad);
        expect_all(Kind::Lights, place, "", fine);
    }
}

TEST(ParameterChecks, FlashMasks) {
    expect_all(Kind::Lights, mask, "flash-mask", {"zz", "0x80", "8000h", "1FFFF", "-x", "-CCCC"});
    expect_all(Kind::Lights, mask, "", {"", "0", "CCCC", "FFFF", "0FFFF", "0800", "2", "-1"});
}

TEST(ParameterChecks, EveryFlashVariableBringsAMaskThatCompiles) {
    for (const FlashVariableEntry& entry : flash_variables) {
        expect_all(Kind::Lights, mask, "", {std::string(entry.mask)});
    }
}

TEST(ParameterChecks, EffectNames) {
    expect_all(Kind::Effects, effect, "effect-name", {"", "fx\"a", std::string(80, 'a')});
    expect_all(Kind::Effects, effect, "", {std::string(79, 'a')});
}

TEST(ParameterChecks, TimeConstraints) {
    expect_all(
        Kind::Effects, times, "effect-time",
        {"MOY=01,13;DOM=01,31;HOD=00,23;MOH=00,59;", "MOY=00,12;DOM=01,31;HOD=00,23;MOH=00,59;",
         "MOY=01,12;DOM=01,32;HOD=00,23;MOH=00,59;", "MOY=01,12;DOM=01,31;HOD=00,24;MOH=00,59;",
         "MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,60;", "MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,5\";",
         "MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,<9;", "MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,9>;",
         "DOM=01,31;MOY=01,12;HOD=00,23;MOH=00,59;", "MOY=01,12"});
    expect_all(Kind::Effects, times, "", {"MOY=12,12;DOM=31,31;HOD=23,23;MOH=59,59;"});
}

TEST(ParameterChecks, TerrainElevations) {
    expect_all(Kind::Effects, effect_ground, "terrain-elevation",
               {"", "0,5", "12ft", "1e999", "."});
    expect_all(Kind::Effects, effect_ground, "", {"0", "-12.5", "1234"});
    EXPECT_THAT(codes(Kind::Effects,
                      [](Parameters& p) {
                          p.effects.fx_OTG = true;
                          p.effects.fx_Terrain_alt = "x";
                      }),
                IsEmpty())
        << "on the ground it is not read";
}

TEST(ParameterChecks, MastColours) {
    expect_all(Kind::Windsock, mast, "mast-color", {"", "10F0F", "10F0FG", "#10F0F0", "10F0F0h"});
    expect_all(Kind::Windsock, mast, "", {"10f0F0"});
}

TEST(ParameterChecks, Identifiers) {
    const std::vector<std::string> bad{"",
                                       "05ADE0809, 042E14DCF, 073AEB9A1, 089EC6060",
                                       "F5ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h",
                                       "05ADE0809h,042E14DCFh,073AEB9A1h",
                                       "05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h,0h",
                                       "{05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h}",
                                       "0123456789h,042E14DCFh,073AEB9A1h,089EC6060h"};
    for (const Kind kind : {Kind::Library, Kind::LibraryNew}) {
        expect_all(kind, guid, "library-guid", bad);
        expect_all(kind, guid, "", {"05ADE0809h, 042E14DCFH, 0h, 0089EC6060h"});
    }
}

TEST(ParameterChecks, ScalesOfLibraryObjects) {
    expect_all(Kind::Library, scale, "library-scale",
               {"", "0", "0,5", "1e-9", "-1", "100000", "1e999", "1x", "1 2"});
    expect_all(Kind::Library, scale, "", {"0.5", "0.25", "3", " 2 ", "0.00002"});
}

TEST(ParameterChecks, ScalesOfNewLibraryObjectsAreWrittenWithOneDecimal) {
    expect_all(Kind::LibraryNew, scale, "library-scale",
               {"", "0", "0.04", "0.25", "0,5", "1x", "-1", "1e999"});
    expect_all(Kind::LibraryNew, scale, "", {"0.5", "1", "12.50", "3"});
    Parameters parameters = good();
    parameters.library.libScale = "0.25";
    EXPECT_THAT(check_parameters(Kind::LibraryNew, parameters)[0].text,
                HasSubstr("\"0.25\" is written as 0.3"));
}

TEST(ParameterChecks, NotesCarryPlaceCodeAndSeverity) {
    Parameters parameters = good();
    parameters.lights.FlashMask = "zz";
    EXPECT_THAT(
        parameter_notes(Kind::Lights, parameters, "a.toml", 7),
        ElementsAre(Note{"FlashMask \"zz\" is not a mask of at most four hexadecimal digits "
                         "without an h.",
                         "a.toml", 7, Severity::Error, "flash-mask"}));
}

TEST(ParameterLists, ItemDataOfTheFlashVariables) {
    std::vector<std::pair<std::string_view, int>> entries;
    for (const FlashVariableEntry& entry : flash_variables) {
        entries.emplace_back(entry.text, entry.value);
    }
    EXPECT_THAT(entries, ElementsAre(Pair("six_second_beacon", 1), Pair("second_flash", 2),
                                     Pair("becon2", 4), Pair("becon3", 8), Pair("becon4", 16),
                                     Pair("becon5", 64), Pair("beacnt", 128)));
}

} // namespace
} // namespace morvane::test
