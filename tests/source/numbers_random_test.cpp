// SPDX-License-Identifier: GPL-3.0-or-later

// The numbers against a slow and plainly exact version, and all of them again where the locale
// writes a decimal comma.

#include "base/numbers.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <locale>
#include <random>
#include <string>

namespace morvane {
namespace {

/// A number without sign as all its decimal digits, `places` of them behind the point.
struct Exact {
    std::string digits; // most significant first
    int places = 0;
};

void multiply(std::string& digits, int factor) {
    int carry = 0;
    for (std::size_t i = digits.size(); i-- > 0;) {
        const int product = (digits[i] - '0') * factor + carry;
        digits[i] = static_cast<char>('0' + product % 10);
        carry = product / 10;
    }
    if (carry > 0) {
        digits.insert(0, std::to_string(carry));
    }
}

/// Every finite double is a whole number times a power of two, so it has an end in decimals.
Exact exact_value(double value) {
    int exponent = 0;
    const double fraction = std::frexp(std::fabs(value), &exponent);
    Exact result{std::to_string(static_cast<std::uint64_t>(std::ldexp(fraction, 53))), 0};
    for (exponent -= 53; exponent > 0; --exponent) {
        multiply(result.digits, 2);
    }
    for (; exponent < 0; ++exponent) {
        multiply(result.digits, 5); // a half is five tenths
        ++result.places;
    }
    return result;
}

/// Keeps all but the last `dropped` digits, rounding half away from zero.
void drop_digits(Exact& number, std::size_t dropped) {
    number.digits.insert(0, dropped + 1, '0');
    const std::size_t kept = number.digits.size() - dropped;
    const bool up = dropped > 0 && number.digits[kept] >= '5';
    number.digits.resize(kept);
    number.places -= static_cast<int>(dropped);
    for (std::size_t i = kept; up && i-- > 0;) {
        if (number.digits[i] != '9') {
            ++number.digits[i];
            break;
        }
        number.digits[i] = '0';
    }
}

void to_significant(Exact& number, std::size_t count) {
    const std::size_t first = number.digits.find_first_not_of('0');
    if (first != std::string::npos && number.digits.size() - first > count) {
        drop_digits(number, number.digits.size() - first - count);
    }
}

void to_places(Exact& number, int places) {
    if (number.places > places) {
        drop_digits(number, static_cast<std::size_t>(number.places - places));
    }
    number.digits.append(static_cast<std::size_t>(places - number.places), '0');
    number.places = places;
}

std::string format_plainly(double value, int min_decimals, int max_decimals) {
    Exact number = exact_value(value);
    to_significant(number, 15);
    to_places(number, max_decimals);
    const auto behind = static_cast<std::size_t>(max_decimals);
    std::string digits = std::string(behind + 1, '0') + number.digits;
    std::string fraction = digits.substr(digits.size() - behind);
    std::string whole = digits.substr(0, digits.size() - behind);
    whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size() - 1));
    while (fraction.size() > static_cast<std::size_t>(min_decimals) && fraction.back() == '0') {
        fraction.erase(fraction.size() - 1);
    }
    const bool zero = digits.find_first_not_of('0') == std::string::npos;
    const std::string sign = value < 0 && !zero ? "-" : "";
    return sign + whole + (fraction.empty() ? "" : "." + fraction);
}

/// Numbers of every size, those with few decimals (which end in a half often) among them.
double random_double(std::mt19937_64& random) {
    switch (random() % 4) {
    case 0:
        return static_cast<double>(static_cast<std::int64_t>(random() % 20'000'001) - 10'000'000) /
               std::pow(10.0, static_cast<double>(random() % 9));
    case 1: // halves, quarters, ... of whole numbers: exactly in the middle
        return std::ldexp(static_cast<double>(static_cast<std::int64_t>(random() % (1U << 30))),
                          -static_cast<int>(random() % 24));
    case 2:
        return std::ldexp(static_cast<double>(random() >> 11),
                          static_cast<int>(random() % 80) - 90);
    default: {
        const double value = std::bit_cast<double>(random());
        return std::isfinite(value) && std::fabs(value) < 1e40 ? value : 0.0;
    }
    }
}

std::string show(double value) {
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%a", value);
    return buffer.data();
}

void compare_formats(int count) {
    constexpr std::array<std::array<int, 2>, 6> patterns{
        {{1, 6}, {1, 1}, {1, 4}, {1, 3}, {0, 0}, {0, 9}}};
    std::mt19937_64 random(1);
    for (int i = 0; i < count; ++i) {
        const double value = random_double(random);
        for (const auto& [least, most] : patterns) {
            ASSERT_EQ(format_decimal(value, least, most), format_plainly(value, least, most))
                << show(value) << " with " << least << ".." << most << " places";
        }
    }
}

TEST(NumbersAtRandom, FormatAgreesWithExactDecimals) {
    compare_formats(4'000);
}

TEST(NumbersAtRandom, ExactDecimalsAreExact) {
    EXPECT_EQ(format_plainly(0.15625, 0, 5), "0.15625");
    EXPECT_EQ(format_plainly(-1234.5, 1, 3), "-1234.5");
    EXPECT_EQ(format_plainly(std::ldexp(1, 60), 1, 1), "1152921504606850000.0");
    EXPECT_EQ(format_plainly(1e-20, 1, 6), "0.0");
}

/// The rule for a leading number, character by character; strtod then reads exactly that much.
double val_plainly(const std::string& text) {
    std::size_t i = text.find_first_not_of(' ');
    const std::size_t begin = std::min(i, text.size());
    const auto digits_from = [&](std::size_t at) {
        std::size_t count = 0;
        while (at + count < text.size() && text[at + count] >= '0' && text[at + count] <= '9') {
            ++count;
        }
        return count;
    };
    const auto is_one_of = [&](std::size_t at, std::string_view set) {
        return at < text.size() && set.find(text[at]) != std::string_view::npos;
    };
    i = begin + (is_one_of(begin, "+-") ? 1 : 0);
    const std::size_t whole = digits_from(i);
    i += whole;
    std::size_t fraction = 0;
    if (is_one_of(i, ".")) {
        fraction = digits_from(i + 1);
        i += 1 + fraction;
    }
    if (whole + fraction == 0) {
        return 0;
    }
    if (is_one_of(i, "eE")) {
        const std::size_t exponent = i + (is_one_of(i + 1, "+-") ? 2 : 1);
        const std::size_t count = digits_from(exponent);
        i = count > 0 ? exponent + count : i;
    }
    return std::strtod(text.substr(begin, i - begin).c_str(), nullptr);
}

TEST(NumbersAtRandom, ValAgreesWithThePlainRule) {
    std::mt19937_64 random(2);
    constexpr std::string_view alphabet = "0123456789..+-eE x,";
    for (int i = 0; i < 200'000; ++i) {
        std::string text(random() % 12, ' ');
        for (char& c : text) {
            c = alphabet[random() % alphabet.size()];
        }
        const double expected = val_plainly(text);
        if (std::isfinite(expected)) {
            ASSERT_EQ(val(text), expected) << "'" << text << "'";
        }
    }
}

TEST(NumbersAtRandom, ValReadsEveryDoubleBack) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 20'000; ++i) {
        const double value = random_double(random);
        std::array<char, 64> buffer{};
        std::snprintf(buffer.data(), buffer.size(), "%.17g", value);
        ASSERT_EQ(val(buffer.data()), value) << buffer.data();
        ASSERT_EQ(number_field(buffer.data()), value) << buffer.data();
    }
}

TEST(NumbersAtRandom, RoundingAgreesWithTheProcessor) {
    std::mt19937_64 random(4);
    for (int i = 0; i < 100'000; ++i) {
        const double value =
            static_cast<double>(static_cast<std::int64_t>(random() % 8'000'000'000U) -
                                4'000'000'000) /
            4; // quarters: many halves among them
        ASSERT_EQ(round_to_int32(value), std::nearbyint(value)) << value;
    }
}

TEST(NumbersAtRandom, HexadecimalThereAndBack) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 100'000; ++i) {
        const auto value = static_cast<std::uint32_t>(random() >> (32 + random() % 32));
        std::array<char, 16> buffer{};
        std::snprintf(buffer.data(), buffer.size(), "%X", value);
        ASSERT_EQ(hex_text(value), buffer.data());
        ASSERT_EQ(static_cast<std::uint32_t>(hex_value("0" + hex_text(value) + "h")), value);
    }
}

class DecimalComma : public std::numpunct<char> {
  protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// A test under a locale that writes 1.234,5. Where the system has such a one, the C library
/// gets it too.
class NumbersWithDecimalComma : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"}) {
            if (std::setlocale(LC_ALL, name) != nullptr) {
                break;
            }
        }
        old_ = std::locale::global(std::locale(std::locale(), new DecimalComma));
    }
    void TearDown() override {
        std::locale::global(old_);
        std::setlocale(LC_ALL, "C");
    }

  private:
    std::locale old_;
};

TEST_F(NumbersWithDecimalComma, AreReadAndWrittenTheSame) {
    EXPECT_EQ(val("1.5"), 1.5);
    EXPECT_EQ(val("1,5"), 1);
    EXPECT_EQ(number_field("1234.25"), 1234.25);
    EXPECT_EQ(format_decimal(1234567.25, 1, 6), "1234567.25");
    EXPECT_EQ(plain_text(-1234567.5), "-1234567.5");
    EXPECT_EQ(hex_text(0x123456), "123456");
    compare_formats(300);
}

} // namespace
} // namespace morvane
