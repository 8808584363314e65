// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/parameter_checks.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"
#include "objects/object_code.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace morvane {

namespace {

constexpr std::string_view decimal_digits = "0123456789";
constexpr std::string_view hex_digits = "0123456789ABCDEFabcdef";

class Problems {
  public:
    void add(std::string_view code, Severity severity, std::string_view key,
             const std::string& text) {
        found_.push_back(
            {std::string(code), severity, std::string(key), std::string(key) + " " + text});
    }
    std::vector<ParameterProblem> take() { return std::move(found_); }

  private:
    std::vector<ParameterProblem> found_;
};

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

bool only(std::string_view text, std::string_view characters) {
    return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

// The number that the code is made with; nothing for one too large to be held.
std::optional<double> value_of(std::string_view text) {
    try {
        return val(text);
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

std::string value_text(const std::optional<double>& value) {
    return value ? plain_text(*value) : "a number that is too large";
}

std::string_view without_sign(std::string_view text) {
    return text.substr(text.starts_with('-') || text.starts_with('+') ? 1 : 0);
}

std::string_view without_leading_zeros(std::string_view digits) {
    return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
}

// As the assembler reads a real number: digits, a point, and perhaps digits and an exponent.
bool is_real(std::string_view text) {
    std::string_view number = without_sign(text);
    const std::size_t exponent = number.find_first_of("eE");
    if (exponent != std::string_view::npos) {
        if (!only(without_sign(number.substr(exponent + 1)), decimal_digits)) {
            return false;
        }
        number = number.substr(0, exponent);
    }
    const std::size_t point = number.find('.');
    return point != std::string_view::npos && only(number.substr(0, point), decimal_digits) &&
           (point + 1 == number.size() || only(number.substr(point + 1), decimal_digits));
}

bool is_whole_32_bits(std::string_view text) {
    const std::string_view digits = without_leading_zeros(without_sign(text));
    return only(without_sign(text), decimal_digits) &&
           (digits.size() < 10 || (digits.size() == 10 && digits <= "4294967295"));
}

// Whether the text is one number of at most `bits`, in MASM's hexadecimal form.
bool is_masm_hex(std::string_view text, std::size_t most_digits) {
    if (text.empty() || (text.back() != 'h' && text.back() != 'H') ||
        decimal_digits.find(text.front()) == std::string_view::npos) {
        return false;
    }
    const std::string_view digits = text.substr(0, text.size() - 1);
    return only(digits, hex_digits) && without_leading_zeros(digits).size() <= most_digits;
}

// The code is "0" & mask & "h". "-1", which "second_flash" brings, thereby reads as 0 - 1h.
bool is_flash_mask(std::string_view mask) {
    if (mask.starts_with('-')) {
        return is_masm_hex(std::string(mask.substr(1)) + "h", 4);
    }
    return is_masm_hex("0" + std::string(mask) + "h", 4);
}

void check_attenuation(std::string_view key, const std::string& value, Problems& problems) {
    if (!is_real(value)) {
        problems.add("light-attenuation", Severity::Error, key,
                     quoted(value) + " is not a decimal number with a point, as in 0.4");
    }
}

void check_lights(const LightParameters& lights, Problems& problems) {
    if (lights.LightType == "*LIGHT_PANEL*") {
        problems.add("light-type", Severity::Error, "LightType",
                     "*LIGHT_PANEL* is not a light type that the simulator defines");
    }
    if (!is_whole_32_bits(lights.LightInt)) {
        problems.add("light-intensity", Severity::Error, "LightInt",
                     quoted(lights.LightInt) + " is not a whole number, as in 100");
    }
    check_attenuation("LightAttnL", lights.LightAttnL, problems);
    check_attenuation("LightAttS", lights.LightAttS, problems);
    if (trim(lights.LightVariable).empty()) {
        problems.add("light-variable", Severity::Error, "LightVariable",
                     "is not chosen, so the lights test no variable; beacnt with a mask of 0 "
                     "is always on");
    }
    if (!is_flash_mask(lights.FlashMask)) {
        problems.add("flash-mask", Severity::Error, "FlashMask",
                     quoted(lights.FlashMask) +
                         " is not a mask of at most four hexadecimal digits without an h");
    }
    if (lights.DayFlag && lights.AircraftFlag) {
        problems.add("light-flags", Severity::Warning, "DayFlag",
                     "and AircraftFlag are both set, which mixes the two forms of the code; set "
                     "one of them");
    }
}

void check_terrain(std::string_view key, const std::string& feet, bool on_the_ground,
                   Problems& problems) {
    const std::string_view number = without_sign(trim(feet));
    const bool plain = only(number, "0123456789.") &&
                       std::count(number.begin(), number.end(), '.') <= 1 && number != ".";
    if (!on_the_ground && !plain) {
        problems.add("terrain-elevation", Severity::Warning, key,
                     quoted(feet) + " is not a plain number of feet; it counts as " +
                         value_text(value_of(feet)));
    }
}

std::optional<int> two_digits(std::string_view text) {
    return text.size() == 2 && only(text, decimal_digits)
               ? std::optional((text[0] - '0') * 10 + (text[1] - '0'))
               : std::nullopt;
}

struct TimeRange {
    std::string_view key;
    int least;
    int most;
};

// "MOY=01,12;" and so on: four parts of ten characters.
std::string time_problem(std::string_view text) {
    static constexpr std::array<TimeRange, 4> ranges{
        {{"MOY=", 1, 12}, {"DOM=", 1, 31}, {"HOD=", 0, 23}, {"MOH=", 0, 59}}};
    if (text.size() != time_constraints_length) {
        return "is not 40 characters long";
    }
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        const TimeRange& range = ranges[i];
        const std::string_view part = text.substr(10 * i, 10);
        if (!part.starts_with(range.key) || part[6] != ',' || part[9] != ';') {
            return "has " + quoted(part) + " where " + std::string(range.key) +
                   "nn,nn; is expected";
        }
        for (const std::size_t at : {4, 7}) {
            const std::optional<int> number = two_digits(part.substr(at, 2));
            if (!number || *number < range.least || *number > range.most) {
                return "has " + quoted(part) + ", where the numbers go from " +
                       std::to_string(range.least) + " to " + std::to_string(range.most);
            }
        }
    }
    return {};
}

void check_effects(const EffectParameters& effects, Problems& problems) {
    constexpr std::size_t longest_name = 79;
    if (effects.lstEffectType.empty()) {
        problems.add("effect-name", Severity::Error, "lstEffectType", "is empty");
    } else if (effects.lstEffectType.find('"') != std::string::npos) {
        problems.add("effect-name", Severity::Error, "lstEffectType",
                     effects.lstEffectType + " has a quotation mark in it");
    } else if (effects.lstEffectType.size() > longest_name) {
        problems.add("effect-name", Severity::Error, "lstEffectType",
                     "has " + to_text(effects.lstEffectType.size()) +
                         " characters; the simulator takes 79");
    }
    const std::string& times = effects.fx_params;
    if (times.find_first_of("\"<>") != std::string::npos) {
        problems.add("effect-time", Severity::Error, "fx_params",
                     "has a quotation mark, \"<\" or \">\" in it");
    } else if (const std::string problem = time_problem(times); !problem.empty()) {
        problems.add("effect-time", Severity::Warning, "fx_params", problem);
    }
    check_terrain("fx_Terrain_alt", effects.fx_Terrain_alt, effects.fx_OTG, problems);
}

void check_windsock(const WindsockParameters& windsock, Problems& problems) {
    if (windsock.ws_mastColor.size() != mast_color_length ||
        !only(windsock.ws_mastColor, hex_digits)) {
        problems.add("mast-color", Severity::Error, "ws_mastColor",
                     quoted(windsock.ws_mastColor) + " is not six hexadecimal digits RRGGBB");
    }
}

void check_identifier(std::string_view guid, Problems& problems) {
    constexpr std::size_t words_wanted = 4;
    std::size_t words = 0;
    bool good = true;
    std::string_view rest = guid;
    for (bool more = true; more; ++words) {
        const std::size_t comma = rest.find(',');
        more = comma != std::string_view::npos;
        good = good && is_masm_hex(trim(rest.substr(0, comma)), 8);
        rest = more ? rest.substr(comma + 1) : std::string_view();
    }
    if (!good || words != words_wanted) {
        problems.add("library-guid", Severity::Error, "libGUID",
                     quoted(guid) + " is not four hexadecimal numbers such as 05ADE0809h, "
                                    "separated by commas");
    }
}

// The number that was typed, when the whole text is one.
std::optional<double> typed_number(std::string_view text) {
    try {
        const std::string_view trimmed = trim(text);
        return trimmed.empty() || trimmed.find(' ') != std::string_view::npos
                   ? std::nullopt
                   : std::optional(number_field(trimmed));
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

void check_scale_word(const std::string& scale, Problems& problems) {
    constexpr double most = 4294967295.0;
    const std::optional<double> number = value_of(scale);
    const double word = number && *number != 0 ? scale_word(scale) : 0;
    if (!(word >= 1 && word <= most)) {
        problems.add("library-scale", Severity::Error, "libScale",
                     quoted(scale) + " is out of range: it must be from 0.00002 to 65536");
    } else if (typed_number(scale) != number) {
        problems.add("library-scale", Severity::Warning, "libScale",
                     quoted(scale) + " is read as " + value_text(number));
    }
}

void check_scale_matrix(const std::string& scale, Problems& problems) {
    const std::optional<double> number = value_of(scale);
    const std::string written = number ? format_decimal(*number, 1, 1) : "a number too large";
    if (value_of(written) <= 0.0) {
        problems.add("library-scale", Severity::Error, "libScale",
                     quoted(scale) + " is written as " + written + ", a size of nothing");
    } else if (typed_number(scale) != value_of(written)) {
        problems.add("library-scale", Severity::Warning, "libScale",
                     quoted(scale) + " is written as " + written);
    }
}

void check_library(const LibraryParameters& library, bool placed, Problems& problems) {
    check_identifier(library.libGUID, problems);
    if (!placed) {
        check_scale_matrix(library.libScale, problems);
        return;
    }
    check_scale_word(library.libScale, problems);
    check_terrain("lib_Terrain_alt", library.lib_Terrain_alt, library.lib_OTG, problems);
}

} // namespace

std::vector<ParameterProblem> check_parameters(Kind kind, const Parameters& parameters) {
    Problems problems;
    switch (kind) {
    case Kind::Lights:
        check_lights(parameters.lights, problems);
        break;
    case Kind::Effects:
        check_effects(parameters.effects, problems);
        break;
    case Kind::Windsock:
        check_windsock(parameters.windsock, problems);
        break;
    case Kind::Library:
    case Kind::LibraryNew:
        check_library(parameters.library, kind == Kind::Library, problems);
        break;
    }
    return problems.take();
}

std::vector<Note> parameter_notes(Kind kind, const Parameters& parameters, const std::string& path,
                                  std::size_t line) {
    std::vector<Note> notes;
    for (const ParameterProblem& problem : check_parameters(kind, parameters)) {
        notes.push_back({problem.text + ".", path, line, problem.severity, problem.code});
    }
    return notes;
}

} // namespace morvane
