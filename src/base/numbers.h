// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace morvane {

/// The circle number as the simulator's tools write it; used everywhere, so that computed
/// coordinates agree to the last digit.
inline constexpr double pi = 3.14159265358979;

/// The longest leading number of `text`: leading blanks, sign, digits, point, exponent; 0 when
/// there is none. Throws Overflow when the number is beyond a double.
double val(std::string_view text);

/// A field that is computed with: empty (or blank) text is 0, a number with blanks around it its
/// value. Throws TypeMismatch for any other text.
double number_field(std::string_view text);

/// Reads hexadecimal digits up to the first character that is none, as a signed 32-bit value; 0
/// when there is none. Throws Overflow for more than eight significant digits.
std::int32_t hex_value(std::string_view text);

/// Upper-case hexadecimal digits without leading zeros ("0" for 0).
std::string hex_text(std::uint32_t value);

/// Decimal text with at least `min_decimals` and at most `max_decimals` places. The value is taken
/// with 15 significant digits and rounded half away from zero; zero has no sign. The pattern
/// "0.0#####" is (1, 6), "0.0" is (1, 1).
std::string format_decimal(double value, int min_decimals, int max_decimals);

/// A number as the message log shows it: up to 15 significant digits, no exponent, no needless
/// zeros.
std::string plain_text(double value);

/// Rounds to the nearest whole number, halves to the even neighbour. Throws Overflow beyond 32
/// bits.
std::int32_t round_to_int32(double value);

/// Rounds an index like round_to_int32. Throws SubscriptOutOfRange when it is negative.
std::size_t to_index(double value);

} // namespace morvane
