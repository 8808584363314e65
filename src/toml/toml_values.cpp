// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/windows1252.h"
#include "toml/toml_document.h"

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

void add(const TomlEntry& entry, const std::string& problem, DocumentErrors& errors) {
    errors.add(entry.value_place, "\"" + std::string(entry.key) + "\" " + problem);
}

} // namespace

std::optional<std::string> utf8_value(const TomlEntry& entry, DocumentErrors& errors) {
    std::optional<std::string> utf8 = entry.value.value_exact<std::string>();
    if (!utf8) {
        add(entry, "must be text between quotes", errors);
        return std::nullopt;
    }
    if (std::any_of(utf8->begin(), utf8->end(), is_control)) {
        add(entry, "must be text on one line, without control characters", errors);
        return std::nullopt;
    }
    return utf8;
}

std::optional<std::string> text_value(const TomlEntry& entry, DocumentErrors& errors) {
    const std::optional<std::string> utf8 = utf8_value(entry, errors);
    if (!utf8) {
        return std::nullopt;
    }
    std::optional<std::string> text = from_utf8(*utf8);
    if (!text) {
        add(entry,
            "holds the character \"" + std::string(first_foreign_character(*utf8)) +
                "\", which source files (Windows-1252) cannot hold",
            errors);
    }
    return text;
}

std::optional<bool> flag_value(const TomlEntry& entry, DocumentErrors& errors) {
    const std::optional<bool> flag = entry.value.value_exact<bool>();
    if (!flag) {
        add(entry, "must be true or false, without quotes", errors);
    }
    return flag;
}

std::optional<long long> whole_value(const TomlEntry& entry, long long least, long long most,
                                     DocumentErrors& errors) {
    const std::optional<int64_t> number = entry.value.value_exact<int64_t>();
    if (!number || *number < least || *number > most) {
        add(entry,
            "must be a whole number from " + std::to_string(least) + " to " + std::to_string(most) +
                ", without quotes",
            errors);
        return std::nullopt;
    }
    return *number;
}

std::optional<double> number_value(const TomlEntry& entry, DocumentErrors& errors) {
    if (const std::optional<int64_t> whole = entry.value.value_exact<int64_t>()) {
        return static_cast<double>(*whole);
    }
    const std::optional<double> number = entry.value.value_exact<double>();
    if (!number || !std::isfinite(*number)) {
        add(entry, "must be a number, without quotes", errors);
        return std::nullopt;
    }
    return number;
}

std::string toml_quoted(std::string_view windows1252) {
    return toml_quoted_utf8(to_utf8(windows1252));
}

std::string toml_quoted_utf8(std::string_view utf8) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string quoted = "\"";
    for (const char c : utf8) {
        if (c == '"' || c == '\\') {
            quoted += {'\\', c};
        } else if (is_control(c)) {
            const auto byte = static_cast<unsigned char>(c);
            quoted += "\\u00";
            quoted += digits[byte >> 4U];
            quoted += digits[byte & 15U];
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

std::string toml_list(const std::vector<std::string>& values) {
    std::string list;
    for (const std::string& value : values) {
        list += (list.empty() ? "" : ", ") + value;
    }
    return "[" + list + "]";
}

} // namespace morvane
