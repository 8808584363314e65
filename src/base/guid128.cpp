// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/guid128.h"

#include "base/errors.h"
#include "base/numbers.h"

#include <algorithm>

namespace morvane {

std::string guid_word(std::int32_t word) {
    const std::string digits = "000000000" + hex_text(static_cast<std::uint32_t>(word));
    return digits.substr(digits.size() - 9);
}

std::optional<Guid128> parse_identifier(std::string_view text) {
    Guid128 guid{};
    if (std::count(text.begin(), text.end(), ',') != 3) {
        return std::nullopt;
    }
    for (std::int32_t& word : guid) {
        const std::size_t end = std::min(text.find(','), text.size());
        std::string part(text.substr(0, end));
        part.erase(std::remove(part.begin(), part.end(), ' '), part.end());
        try {
            word = hex_value(part);
        } catch (const RuntimeError&) {
            return std::nullopt;
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return guid;
}

std::string identifier_text(const Guid128& guid, bool with_h) {
    std::string text;
    for (const std::int32_t word : guid) {
        text += (text.empty() ? "" : ", ") + guid_word(word) + (with_h ? "h" : "");
    }
    return text;
}

} // namespace morvane
