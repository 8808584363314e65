// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/encodings.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace morvane {

namespace {

// The characters of the bytes 80 to 9F; all others stand for the character of their own number.
constexpr std::array<char32_t, 32> upper_controls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t character_of(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? upper_controls[byte - 0x80U] : byte;
}

std::optional<char> byte_of(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character < 0x100)) {
        return static_cast<char>(character);
    }
    const auto found = std::find(upper_controls.begin(), upper_controls.end(), character);
    if (found == upper_controls.end()) {
        return std::nullopt;
    }
    return static_cast<char>(0x80 + (found - upper_controls.begin()));
}

void append_utf8(std::string& text, char32_t character) {
    const auto tail = [&](unsigned shift) {
        text += static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0U | (character >> 6U));
        tail(0);
    } else {
        text += static_cast<char>(0xE0U | (character >> 12U));
        tail(6);
        tail(0);
    }
}

struct Decoded {
    char32_t character = 0;
    std::size_t length = 0; // 0: not well-formed
};

std::size_t sequence_length(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0) {
        return 2;
    }
    if (lead >= 0xE0 && lead < 0xF0) {
        return 3;
    }
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

// Longer forms than needed, surrogates and numbers beyond the last character are not well-formed.
bool is_proper(char32_t character, std::size_t length) {
    constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
    return character >= least[length] && character <= 0x10FFFF &&
           (character < 0xD800 || character > 0xDFFF);
}

// The character at the start of a text that is not empty.
Decoded decode(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = sequence_length(lead);
    if (length == 0 || length > text.size()) {
        return {};
    }
    char32_t character = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80U) {
            return {};
        }
        character = (character << 6U) | (byte & 0x3FU);
    }
    return is_proper(character, length) ? Decoded{character, length} : Decoded{};
}

} // namespace

std::string to_utf8(std::string_view windows1252) {
    std::string text;
    text.reserve(windows1252.size());
    for (const char byte : windows1252) {
        append_utf8(text, character_of(static_cast<unsigned char>(byte)));
    }
    return text;
}

std::optional<std::string> from_utf8(std::string_view utf8) {
    std::string text;
    while (!utf8.empty()) {
        const Decoded decoded = decode(utf8);
        const std::optional<char> byte =
            decoded.length == 0 ? std::nullopt : byte_of(decoded.character);
        if (!byte) {
            return std::nullopt;
        }
        text += *byte;
        utf8.remove_prefix(decoded.length);
    }
    return text;
}

std::optional<std::string> source_text(std::string_view text) {
    return valid_utf8_length(text) == text.size() ? from_utf8(text) : std::string(text);
}

std::string cannot_be_written(std::string_view what, std::string_view text) {
    return std::string(what) + " " + std::string(text) + " holds the character \"" +
           std::string(first_foreign_character(text)) +
           "\", which source files (Windows-1252) cannot hold.";
}

std::string readable_text(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t valid = valid_utf8_length(bytes);
        text += bytes.substr(0, valid);
        bytes.remove_prefix(valid);
        if (!bytes.empty()) {
            text += to_utf8(bytes.substr(0, 1));
            bytes.remove_prefix(1);
        }
    }
    return text;
}

std::size_t valid_utf8_length(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size()) {
        const std::size_t step = decode(text.substr(length)).length;
        if (step == 0) {
            break;
        }
        length += step;
    }
    return length;
}

std::string_view first_foreign_character(std::string_view utf8) {
    while (!utf8.empty()) {
        const Decoded decoded = decode(utf8);
        if (decoded.length == 0) {
            break;
        }
        if (!byte_of(decoded.character)) {
            return utf8.substr(0, decoded.length);
        }
        utf8.remove_prefix(decoded.length);
    }
    return {};
}

namespace {

constexpr std::uint32_t first_high = 0xD800;
constexpr std::uint32_t first_low = 0xDC00;
constexpr std::uint32_t behind_low = 0xE000;
constexpr std::uint32_t first_paired = 0x10000;
constexpr std::uint32_t behind_last = 0x110000;

// Of a sequence of so many bytes: what the first holds beside its mark, and the least character
// that needs it.
struct Length {
    std::uint32_t mark;
    std::uint32_t mask;
    std::uint32_t least;
};
constexpr std::array<Length, 5> lengths{
    {{}, {0x00, 0x7F, 0}, {0xC0, 0x1F, 0x80}, {0xE0, 0x0F, 0x800}, {0xF0, 0x07, first_paired}}};

std::size_t length_of(std::uint32_t first) {
    for (std::size_t length = 1; length < lengths.size(); ++length) {
        if ((first & ~lengths[length].mask) == lengths[length].mark) {
            return length;
        }
    }
    return 0;
}

// Takes one character off the front; nothing when it is malformed.
std::optional<std::uint32_t> take_character(std::string_view& text) {
    const std::uint32_t first = static_cast<unsigned char>(text.front());
    const std::size_t length = length_of(first);
    if (length == 0 || text.size() < length) {
        return std::nullopt;
    }
    std::uint32_t character = first & lengths[length].mask;
    for (std::size_t i = 1; i < length; ++i) {
        const std::uint32_t next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80U) {
            return std::nullopt;
        }
        character = character << 6U | (next & 0x3FU);
    }
    if (character < lengths[length].least || character >= behind_last) {
        return std::nullopt;
    }
    text.remove_prefix(length);
    return character;
}

std::optional<std::wstring> units_of_utf8(std::string_view text) {
    std::wstring units;
    while (!text.empty()) {
        const auto character = take_character(text);
        if (!character) {
            return std::nullopt;
        }
        if (*character < first_paired) {
            units += static_cast<wchar_t>(*character);
        } else {
            units += static_cast<wchar_t>(first_high + ((*character - first_paired) >> 10U));
            units += static_cast<wchar_t>(first_low + ((*character - first_paired) & 0x3FFU));
        }
    }
    return units;
}

void append(std::string& text, std::uint32_t character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
        return;
    }
    const std::size_t length = character < 0x800 ? 2 : character < first_paired ? 3 : 4;
    auto shift = static_cast<unsigned>(6 * (length - 1));
    text += static_cast<char>(lengths[length].mark | character >> shift);
    while (shift > 0) {
        shift -= 6;
        text += static_cast<char>(0x80U | (character >> shift & 0x3FU));
    }
}

} // namespace

std::wstring wide_text(std::string_view text) {
    const auto units = units_of_utf8(text);
    return units ? *units : *units_of_utf8(to_utf8(text));
}

std::string narrow_text(std::wstring_view units) {
    std::string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const std::uint32_t unit = static_cast<std::uint16_t>(units[i]);
        const std::uint32_t next =
            i + 1 < units.size() ? static_cast<std::uint16_t>(units[i + 1]) : 0;
        if (unit >= first_high && unit < first_low && next >= first_low && next < behind_low) {
            append(text, first_paired + ((unit - first_high) << 10U) + (next - first_low));
            ++i;
        } else {
            append(text, unit);
        }
    }
    return text;
}

} // namespace morvane
