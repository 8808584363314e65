// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/masm.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace morvane::scene {

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

const char* skip_blanks(const char* at, const char* end) {
    while (at != end && is_blank(*at)) {
        ++at;
    }
    return at;
}

// Reads a number at the start; nullptr when there is none.
const char* read_real(const char* at, const char* end, double& value) {
    if (at != end && *at == '+') {
        ++at;
    }
    const auto [next, error] = std::from_chars(at, end, value);
    return error == std::errc() && std::isfinite(value) ? next : nullptr;
}

// Where the operand that begins at `from` ends: at a comma, at a comment or at the text's end.
std::size_t operand_end(std::string_view text, std::size_t from) {
    char closing = 0;
    for (std::size_t i = from; i < text.size(); ++i) {
        const char c = text[i];
        if (closing != 0) {
            closing = c == closing ? '\0' : closing;
        } else if (c == '"' || c == '\'' || c == '<') {
            closing = c == '<' ? '>' : c;
        } else if (c == ',' || c == ';') {
            return i;
        }
    }
    return text.size();
}

} // namespace

std::string_view stripped(std::string_view text) {
    while (!text.empty() && is_blank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && is_blank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

Statement statement_of(std::string_view line) {
    line = stripped(line);
    std::size_t end = 0;
    while (end < line.size() && !is_blank(line[end]) && line[end] != ';') {
        ++end;
    }
    return {line.substr(0, end), stripped(line.substr(end))};
}

std::vector<std::string_view> operands_of(std::string_view text) {
    std::vector<std::string_view> result;
    text = stripped(text);
    for (std::size_t from = 0; !text.empty();) {
        const std::size_t end = operand_end(text, from);
        result.push_back(stripped(text.substr(from, end - from)));
        if (end == text.size() || text[end] == ';') {
            break;
        }
        from = end + 1;
    }
    return result;
}

std::optional<std::string_view> quoted(std::string_view text) {
    const std::size_t open = text.find('"');
    const std::size_t close = open == text.npos ? open : text.find('"', open + 1);
    if (close == text.npos) {
        return std::nullopt;
    }
    return text.substr(open + 1, close - open - 1);
}

std::optional<double> real_number(std::string_view text) {
    text = stripped(text);
    const char* end = text.data() + text.size();
    double value = 0;
    if (read_real(text.data(), end, value) != end || text.empty()) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::int64_t> whole_number(std::string_view text) {
    text = stripped(text);
    const bool hex = !text.empty() && (text.back() == 'h' || text.back() == 'H');
    const std::string_view digits = text.substr(0, text.size() - (hex ? 1 : 0));
    std::int64_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto [next, error] = std::from_chars(digits.data(), end, value, hex ? 16 : 10);
    if (error != std::errc() || next != end || value > 0xFFFFFFFF || value < -0x80000000LL) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::int32_t> word_number(std::string_view text) {
    const auto value = whole_number(text);
    return value ? std::optional(static_cast<std::int32_t>(static_cast<std::uint32_t>(*value)))
                 : std::nullopt;
}

bool read_numbers(std::string_view text, std::span<double> result) {
    const char* at = text.data();
    const char* end = at + text.size();
    for (std::size_t i = 0; i < result.size(); ++i) {
        if (i > 0) {
            if (at == end || *at != ',') {
                return false;
            }
            ++at;
        }
        at = read_real(skip_blanks(at, end), end, result[i]);
        if (at == nullptr) {
            return false;
        }
        at = skip_blanks(at, end);
    }
    return true;
}

} // namespace morvane::scene
