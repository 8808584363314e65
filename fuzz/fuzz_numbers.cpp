// SPDX-License-Identifier: GPL-3.0-or-later

// Numbers against slow, exact versions. Sections: any text; the first eight bytes are a double too.

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"
#include "target.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>

namespace {

using namespace morvane;
using namespace morvane::fuzz;

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// The longest leading number, letter by letter.
std::string leading_number(const std::string& text) {
    std::size_t at = 0;
    while (at < text.size() && text[at] == ' ') {
        ++at;
    }
    std::string number;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
        number += text[at++];
    }
    std::size_t digits = 0;
    bool point = false;
    while (at < text.size() && (is_digit(text[at]) || (text[at] == '.' && !point))) {
        point = point || text[at] == '.';
        digits += is_digit(text[at]) ? 1U : 0U;
        number += text[at++];
    }
    if (digits == 0) {
        return "0";
    }
    std::string exponent;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        exponent += text[at++];
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
            exponent += text[at++];
        }
        std::size_t in_exponent = 0;
        while (at < text.size() && is_digit(text[at])) {
            exponent += text[at++];
            ++in_exponent;
        }
        number += in_exponent > 0 ? exponent : "";
    }
    return number;
}

template <typename Value, typename Compute>
std::optional<Value> value_or_error(Compute compute) {
    try {
        return compute();
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

void check_val(const std::string& text) {
    const double expected = std::strtod(leading_number(text).c_str(), nullptr);
    const auto got = value_or_error<double>([&] { return val(text); });
    require(got.has_value() == std::isfinite(expected), "Val overflows where a double does");
    require(!got || *got == expected, "Val is the leading number");
}

void check_hex(const std::string& text) {
    std::string digits;
    for (const char c : text) {
        if (std::strchr("0123456789abcdefABCDEF", c) == nullptr || c == 0) {
            break;
        }
        digits += c;
    }
    digits.erase(0, digits.find_first_not_of('0') == std::string::npos
                        ? digits.size()
                        : digits.find_first_not_of('0'));
    const auto got = value_or_error<std::int32_t>([&] { return hex_value(text); });
    require(got.has_value() == (digits.size() <= 8), "more than eight digits overflow");
    if (got) {
        const auto expected =
            static_cast<std::uint32_t>(std::strtoull(digits.c_str(), nullptr, 16));
        require(static_cast<std::uint32_t>(*got) == expected, "the hexadecimal value");
        require(hex_text(expected) == (digits.empty() ? "0" : upper_case(digits)),
                "hexadecimal text is the digits again");
    }
}

// Adds one at the end of a text of decimal digits.
void increase(std::string& digits) {
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.insert(0, "1");
}

// By hand: 15 significant digits (ties away from zero), then the places wanted, likewise.
std::string slow_format(double value, int least, int most) {
    char exact[1600];
    std::snprintf(exact, sizeof exact, "%.1100f", std::fabs(value)); // all digits that it has
    std::string text(exact);
    std::string digits = text.substr(0, text.find('.'));
    const std::size_t whole = digits.size();
    digits += text.substr(text.find('.') + 1);
    const auto cut = [&](std::size_t keep) {
        if (keep < digits.size()) {
            const bool up = digits[keep] >= '5';
            std::fill(digits.begin() + static_cast<std::ptrdiff_t>(keep), digits.end(), '0');
            std::string head = digits.substr(0, keep);
            const std::size_t before = head.size();
            if (up) {
                head.empty() ? head = "1" : (increase(head), head);
            }
            digits = head + digits.substr(keep);
            return head.size() - before;
        }
        return std::size_t{0};
    };
    const std::size_t first = digits.find_first_not_of('0');
    std::size_t point = whole;
    if (first != std::string::npos) {
        point += cut(first + 15);
        point += cut(point + static_cast<std::size_t>(most));
    }
    std::string decimals = digits.substr(point, static_cast<std::size_t>(most));
    while (decimals.size() > static_cast<std::size_t>(least) && decimals.back() == '0') {
        decimals.pop_back();
    }
    std::string result = digits.substr(0, point);
    result.erase(0, std::min(result.find_first_not_of('0'), result.size() - 1));
    result += "." + decimals;
    const bool zero = result.find_first_not_of("0.") == std::string::npos;
    return (value < 0 && !zero ? "-" : "") + result;
}

void check_format(double value) {
    if (!std::isfinite(value)) {
        return;
    }
    for (const auto& [least, most] :
         {std::pair(1, 6), std::pair(1, 1), std::pair(1, 4), std::pair(1, 3)}) {
        require(format_decimal(value, least, most) == slow_format(value, least, most),
                "the pattern, digit by digit");
    }
    const std::string plain = plain_text(value);
    require(plain.find_first_of("eE") == std::string::npos, "no exponent");
    // Fifteen digits of the largest numbers may be more than a double holds.
    require(value == 0 || std::fabs(value) > 1e308 ||
                std::fabs(val(plain) - value) <= std::fabs(value) * 1e-14,
            "plain text is the value");
}

void check_rounding(double value) {
    const auto got = value_or_error<std::int32_t>([&] { return round_to_int32(value); });
    const double expected = std::nearbyint(value); // halves to even, as the mode is by default
    const bool fits = expected >= std::numeric_limits<std::int32_t>::min() &&
                      expected <= std::numeric_limits<std::int32_t>::max();
    require(got.has_value() == fits, "beyond 32 bits is an overflow");
    require(!got || *got == expected, "rounding to a whole number");
    value_or_error<std::size_t>([&] { return to_index(value); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    check_val(text);
    check_hex(text);
    value_or_error<double>([&] { return number_field(text); });
    double value = 0;
    std::memcpy(&value, data, std::min(size, sizeof value));
    check_format(value);
    check_rounding(value);
    const double named = value_or_error<double>([&] { return val(text); }).value_or(0);
    check_format(named);
    check_rounding(named);
    return 0;
}
