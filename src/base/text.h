// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace morvane {

/// `text` without the blanks (code 32 only; a tab stays) at both ends.
std::string_view trim(std::string_view text);

/// Upper case of the letters a to z; all other bytes as they are, whatever the locale.
std::string upper_case(std::string_view text);
std::string lower_case(std::string_view text);
bool equal_ignoring_case(std::string_view a, std::string_view b);

/// Whether the byte is one of the digits 0 to 9.
constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

/// Trims the text and reduces every run of blanks inside it to one. Tabs are not blanks here.
std::string collapse_blanks(std::string_view text);

/// `number` in decimal.
std::string to_text(std::size_t number);

} // namespace morvane
