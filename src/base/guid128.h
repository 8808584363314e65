// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

/// A library object's 128-bit identifier: four words.
using Guid128 = std::array<std::int32_t, 4>;

/// A word of an identifier with nine hexadecimal digits, as the assembler wants it but for the "h"
/// behind.
std::string guid_word(std::int32_t word);

/// Reads four hexadecimal words separated by commas. Blanks do not count, and a word is read up to
/// the first character that is no hexadecimal digit, so that one may end in "h". Nothing unless
/// there are exactly four parts of at most eight significant digits.
std::optional<Guid128> parse_identifier(std::string_view text);

/// The four words with nine hexadecimal digits each, separated by ", ": an operand list of the
/// assembler when each word ends in "h".
std::string identifier_text(const Guid128& guid, bool with_h);

} // namespace morvane
