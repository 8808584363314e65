// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

/// The value of a whole number as the assembler reads it: decimal digits, or hexadecimal ones that
/// begin with a digit and end in "h"; a sign before. Nothing for any other text, and for one beyond
/// 60 bits.
std::optional<std::int64_t> whole_number(std::string_view text);

/// Whether the assembler takes the text for a real number: digits, a point, digits or none, and
/// perhaps an exponent.
bool is_real_number(std::string_view text);

/// The value of such a text.
std::optional<double> real_number(std::string_view text);

/// What is wrong with a text that should be a hexadecimal number; empty when nothing is.
std::string hexadecimal_fault(std::string_view text);

} // namespace morvane
