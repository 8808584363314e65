// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/wide_text.h"

#include "base/windows1252.h"

#include <array>
#include <cstdint>
#include <optional>

namespace morvane {

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
