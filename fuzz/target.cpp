// SPDX-License-Identifier: GPL-3.0-or-later
#include "target.h"

#include <cstdio>
#include <cstdlib>

namespace morvane::fuzz {

namespace {

constexpr std::string_view separator = "====\n";

} // namespace

void require(bool holds, std::string_view rule) {
    if (!holds) {
        std::fprintf(stderr, "A rule does not hold: %.*s\n", static_cast<int>(rule.size()),
                     rule.data());
        std::abort();
    }
}

std::vector<std::string> sections(const std::uint8_t* data, std::size_t size, std::size_t count) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> result;
    while (result.size() + 1 < count) {
        const std::size_t at = rest.find(separator);
        result.emplace_back(rest.substr(0, at));
        rest.remove_prefix(at == std::string_view::npos ? rest.size() : at + separator.size());
    }
    result.emplace_back(rest);
    return result;
}

std::vector<std::string> lines_of(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        lines.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        text.remove_prefix(end + (text.substr(end, 2) == "\r\n" ? 2 : 1));
    }
    return lines;
}

std::string text_of(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\r\n";
    }
    return text;
}

LinearTime::~LinearTime() {
    const double seconds =
        static_cast<double>(std::clock() - start_) / static_cast<double>(CLOCKS_PER_SEC);
    require(seconds < 0.5 + 50e-6 * static_cast<double>(size_), "time linear in the input");
}

} // namespace morvane::fuzz
