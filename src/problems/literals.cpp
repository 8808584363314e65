// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/literals.h"

#include "base/text.h"

#include <charconv>

namespace morvane {

namespace {

bool is_hexadecimal_digit(char c) {
    return is_digit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool ends_in_h(std::string_view text) {
    return !text.empty() && (text.back() == 'h' || text.back() == 'H');
}

std::string_view without_sign(std::string_view text) {
    return !text.empty() && (text.front() == '-' || text.front() == '+') ? text.substr(1) : text;
}

// Digits from `at` on; `at` ends up after them.
bool skip_digits(std::string_view text, std::size_t& at) {
    const std::size_t begin = at;
    while (at < text.size() && is_digit(text[at])) {
        ++at;
    }
    return at > begin;
}

bool skip_exponent(std::string_view text, std::size_t& at) {
    if (at == text.size()) {
        return true;
    }
    if ((text[at] != 'e' && text[at] != 'E') || at + 1 == text.size() ||
        (text[at + 1] != '+' && text[at + 1] != '-')) {
        return false;
    }
    at += 2;
    return skip_digits(text, at);
}

} // namespace

std::optional<std::int64_t> whole_number(std::string_view text) {
    const bool negative = text.starts_with('-');
    std::string_view digits = without_sign(text);
    const int base = ends_in_h(digits) ? 16 : 10;
    if (base == 16) {
        digits.remove_suffix(1);
    }
    if (digits.empty() || !is_digit(digits.front())) {
        return std::nullopt;
    }
    std::int64_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    if (error != std::errc() || stop != end || value >= std::int64_t{1} << 60) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

bool is_real_number(std::string_view text) {
    text = without_sign(text);
    std::size_t at = 0;
    if (!skip_digits(text, at) || at == text.size() || text[at] != '.') {
        return false;
    }
    ++at;
    skip_digits(text, at);
    return skip_exponent(text, at) && at == text.size();
}

std::optional<double> real_number(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

std::string hexadecimal_fault(std::string_view text) {
    if (!ends_in_h(text)) {
        return "has no \"h\" at its end";
    }
    std::string_view digits = text.substr(0, text.size() - 1);
    if (ends_in_h(digits)) {
        return "ends in two \"h\"";
    }
    if (digits.empty() || !is_digit(digits.front())) {
        return "does not begin with a digit, so write a 0 before it";
    }
    for (const char c : digits) {
        if (!is_hexadecimal_digit(c)) {
            return std::string("has a \"") + c + "\", which is not a hexadecimal digit";
        }
    }
    return {};
}

} // namespace morvane
