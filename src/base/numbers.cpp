// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"

#include "base/errors.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

namespace morvane {

namespace {

constexpr std::size_t significant_digits = 15;

struct LeadingNumber {
    double value = 0;
    std::size_t length = 0; // characters taken, sign included; 0 when there is no number
};

// The power of ten of the first digit that counts, e.g. 2 for "150", -3 for "0.005e-1".
long decimal_magnitude(std::string_view digits) {
    const std::size_t e = digits.find_first_of("eE");
    const std::string_view mantissa = digits.substr(0, e);
    const auto point = static_cast<long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<long>(mantissa.find_first_not_of("0."));
    long exponent = 0;
    if (e != std::string_view::npos) {
        std::string_view text = digits.substr(e + 1);
        const bool negative = text.front() == '-';
        text.remove_prefix(negative || text.front() == '+' ? 1 : 0);
        if (std::from_chars(text.data(), text.data() + text.size(), exponent).ec != std::errc()) {
            exponent = std::numeric_limits<int>::max();
        }
        exponent = negative ? -exponent : exponent;
    }
    return exponent + (first < point ? point - first - 1 : point - first);
}

// A number too large and one too small for a double both come back as "out of range". Only the
// too large one is an error.
double out_of_range_value(std::string_view digits) {
    if (decimal_magnitude(digits) > 0) {
        throw RuntimeError(ErrorNumber::Overflow, "number " + std::string(digits));
    }
    return 0;
}

LeadingNumber leading_number(std::string_view text) {
    const std::size_t sign = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
    const std::string_view digits = text.substr(sign);
    const std::size_t first = !digits.empty() && digits[0] == '.' ? 1 : 0;
    if (digits.size() <= first || !is_digit(digits[first])) {
        return {}; // also keeps the words "inf" and "nan" out
    }
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const auto length = static_cast<std::size_t>(end - digits.data());
    if (error == std::errc::result_out_of_range) {
        value = out_of_range_value(digits.substr(0, length));
    }
    return {sign == 1 && text[0] == '-' ? -value : value, sign + length};
}

int hex_digit(char c) {
    if (is_digit(c)) {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return -1;
}

// A value as 15 significant decimal digits and the place of its point: 0.d1d2d3... * 10^exponent.
struct Decimal {
    bool negative = false;
    std::string digits;
    int exponent = 0;
};

// Keeps the first `kept` digits, rounding half away from zero; fills up with zeros when there are
// fewer.
void round_digits(Decimal& number, std::size_t kept) {
    const bool up = kept < number.digits.size() && number.digits[kept] >= '5';
    number.digits.resize(kept, '0');
    if (!up) {
        return;
    }
    std::size_t i = kept;
    while (i > 0 && number.digits[i - 1] == '9') {
        number.digits[--i] = '0';
    }
    if (i > 0) {
        ++number.digits[i - 1];
    } else {
        number.digits.insert(0, "1");
        ++number.exponent;
    }
}

Decimal to_decimal(double value) {
    if (!std::isfinite(value)) {
        throw RuntimeError(ErrorNumber::Overflow, "a computed number is too large");
    }
    // So many digits tell every double from the middle between two decimals of 15, which
    // the library's own rounding would take to the even one.
    constexpr int exact_enough = 60;
    std::array<char, exact_enough + 16> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                   std::chars_format::scientific, exact_enough - 1)
                         .ptr;
    const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    const std::size_t e = text.find('e');
    Decimal result;
    result.negative = std::signbit(value);
    result.digits = std::string(text.substr(0, 1)) + std::string(text.substr(2, e - 2));
    std::string_view exponent = text.substr(e + 1);
    if (exponent.front() == '+') {
        exponent.remove_prefix(1);
    }
    std::from_chars(exponent.data(), exponent.data() + exponent.size(), result.exponent);
    ++result.exponent;
    round_digits(result, significant_digits);
    result.digits.resize(significant_digits);
    return result;
}

// Rounds half away from zero to `places` decimals. Afterwards the digits reach exactly that far.
void round_decimal(Decimal& number, int places) {
    const int kept = number.exponent + places;
    if (kept < 0) {
        number.digits.assign(static_cast<std::size_t>(places) + 1, '0');
        number.exponent = 1;
        return;
    }
    round_digits(number, static_cast<std::size_t>(kept));
}

} // namespace

double val(std::string_view text) {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    return leading_number(text).value;
}

double number_field(std::string_view text) {
    text = trim(text);
    if (text.empty()) {
        return 0;
    }
    const LeadingNumber number = leading_number(text);
    if (number.length != text.size()) {
        throw RuntimeError(ErrorNumber::TypeMismatch, "'" + std::string(text) + "' is no number");
    }
    return number.value;
}

std::int32_t hex_value(std::string_view text) {
    std::uint32_t value = 0;
    for (const char c : text) {
        const int digit = hex_digit(c);
        if (digit < 0) {
            break;
        }
        if (value > 0x0FFFFFFFU) {
            throw RuntimeError(ErrorNumber::Overflow, "hexadecimal number " + std::string(text));
        }
        value = value * 16 + static_cast<std::uint32_t>(digit);
    }
    return static_cast<std::int32_t>(value);
}

std::string hex_text(std::uint32_t value) {
    std::array<char, 8> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, 16).ptr;
    return upper_case({buffer.data(), static_cast<std::size_t>(end - buffer.data())});
}

std::string format_decimal(double value, int min_decimals, int max_decimals) {
    Decimal number = to_decimal(value);
    round_decimal(number, max_decimals);
    const auto decimals = static_cast<std::size_t>(max_decimals);
    if (number.digits.size() <= decimals) {
        number.digits.insert(0, decimals + 1 - number.digits.size(), '0');
    }
    const std::size_t whole = number.digits.size() - decimals;
    std::string fraction = number.digits.substr(whole);
    while (fraction.size() > static_cast<std::size_t>(min_decimals) && fraction.back() == '0') {
        fraction.pop_back();
    }
    const bool zero = number.digits.find_first_not_of('0') == std::string::npos;
    std::string result = number.negative && !zero ? "-" : "";
    result += number.digits.substr(0, whole);
    return fraction.empty() ? result : result + "." + fraction;
}

std::string plain_text(double value) {
    const Decimal number = to_decimal(value);
    const int places = static_cast<int>(number.digits.size()) - number.exponent;
    return format_decimal(value, 0, places > 0 ? places : 0);
}

// For a message: without the many digits of a huge number.
static std::string number_about(double value) {
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::general, 15);
    return {text.data(), end.ptr};
}

std::int32_t round_to_int32(double value) {
    double whole = std::floor(value);
    const double rest = value - whole;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2.0) != 0.0)) {
        whole += 1;
    }
    if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) {
        throw RuntimeError(ErrorNumber::Overflow,
                           "the number " + number_about(value) + " does not fit into 32 bits");
    }
    return static_cast<std::int32_t>(whole);
}

std::size_t to_index(double value) {
    const std::int32_t index = round_to_int32(value);
    if (index < 0) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "line " + std::to_string(index));
    }
    return static_cast<std::size_t>(index);
}

} // namespace morvane
