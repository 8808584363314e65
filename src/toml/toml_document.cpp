// SPDX-License-Identifier: GPL-3.0-or-later
#include "toml/toml_document.h"

#include "base/encodings.h"
#include "base/errors.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "toml/nearest_key.h"

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

constexpr std::uint64_t most_bytes = std::uint64_t{1024} * 1024;
constexpr std::ptrdiff_t most_dots = 500;

Place from_toml(const toml::source_position& position) {
    return {position.line, position.column};
}

TomlReading refused(const std::string& path, const std::string& problem) {
    return {std::nullopt, {path + ": " + problem}, {{problem, path, 0, Severity::Error}}};
}

// A text saved with another encoding. What follows the first wrong byte is shown as what it most
// likely is.
TomlReading not_utf8(const std::string& path, std::string_view text, std::size_t valid) {
    const std::string shown = std::string(text.substr(0, valid)) + to_utf8(text.substr(valid));
    DocumentErrors errors(path, shown);
    errors.add(place_of(shown, valid),
               "this is not UTF-8 text; save the file with the encoding UTF-8");
    return {std::nullopt, errors.texts(), errors.problems()};
}

// Every dot between two keys is one more table inside a table, and the parser goes one call deeper
// for each when it takes them down.
std::optional<std::size_t> too_deep_line(std::string_view text) {
    const std::vector<std::string_view> lines = document_lines(text);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (std::count(lines[i].begin(), lines[i].end(), '.') > most_dots) {
            return i + 1;
        }
    }
    return std::nullopt;
}

// What most likely happened, for those who have never heard of the types of TOML.
std::string parse_problem(std::string_view description) {
    std::string problem(description);
    if (description.find("could not determine value type") != std::string_view::npos) {
        problem += " (text must be between double quotes, as in \"Red\")";
    } else if (description.find("escape sequence") != std::string_view::npos) {
        problem += " (in double quotes a backslash is written twice; between single quotes it "
                   "stays as it is, as in 'C:\\scenery')";
    }
    return problem;
}

TomlReading read_checked(Disk& disk, const std::string& path, std::string_view what) {
    if (disk.is_folder(path)) {
        return refused(path, "this is a folder, not a " + std::string(what) + ".");
    }
    if (disk.is_file(path) && disk.stamp(path).size > most_bytes) {
        return refused(path, "the file is too large for a " + std::string(what) + " (over 1 MiB).");
    }
    const FileBytes bytes = read_bytes(disk, path);
    return parse_toml(path, std::string(bytes.view()));
}

} // namespace

TomlReading parse_toml(const std::string& path, std::string text) {
    const std::size_t valid = valid_utf8_length(text);
    if (valid < text.size()) {
        return not_utf8(path, text, valid);
    }
    DocumentErrors errors(path, text);
    if (const auto line = too_deep_line(text)) {
        errors.add({*line, 1}, "tables nested too deeply");
        return {std::nullopt, errors.texts(), errors.problems()};
    }
    try {
        toml::table table = toml::parse(std::string_view(text), path);
        return {TomlDocument{path, std::move(text), std::move(table)}, {}, {}};
    } catch (const toml::parse_error& error) {
        errors.add(from_toml(error.source().begin), parse_problem(error.description()));
        return {std::nullopt, errors.texts(), errors.problems()};
    }
}

TomlReading read_toml(Disk& disk, const std::string& path, std::string_view what) {
    try {
        return read_checked(disk, path, what);
    } catch (const RuntimeError& error) {
        return refused(path, std::string(error.description()) + ".");
    }
}

std::vector<TomlEntry> entries_of(const toml::table& table) {
    std::vector<TomlEntry> entries;
    for (auto&& [key, value] : table) {
        entries.push_back(
            {key.str(), value, from_toml(key.source().begin), from_toml(value.source().begin)});
    }
    return entries;
}

namespace {

std::string header_text(std::string_view name) {
    return "[[" + std::string(name) + "]]";
}

} // namespace

std::vector<TomlElement> elements_of(const TomlEntry& entry, DocumentErrors& errors) {
    std::vector<TomlElement> elements;
    const toml::array* array = entry.value.as_array();
    if (array == nullptr || (!array->empty() && !array->is_array_of_tables())) {
        errors.add(entry.key_place,
                   "\"" + std::string(entry.key) +
                       "\" must be written with two brackets: " + header_text(entry.key));
        return elements;
    }
    for (const toml::node& node : *array) {
        elements.push_back({*node.as_table(), from_toml(node.source().begin)});
    }
    return elements;
}

std::vector<TomlEntry> table_entries(const TomlEntry& entry, DocumentErrors& errors) {
    const toml::table* table = entry.value.as_table();
    if (table == nullptr) {
        errors.add(entry.key_place, "\"" + std::string(entry.key) +
                                        "\" must be a table, written with one bracket: [" +
                                        std::string(entry.key) + "]");
        return {};
    }
    return entries_of(*table);
}

std::vector<TomlEntry> values_of(const TomlEntry& entry, DocumentErrors& errors) {
    const toml::array* array = entry.value.as_array();
    if (array == nullptr) {
        return {entry};
    }
    if (array->empty()) {
        errors.add(entry.value_place, "\"" + std::string(entry.key) + "\" is an empty list");
    }
    std::vector<TomlEntry> values;
    for (const toml::node& node : *array) {
        values.push_back({entry.key, node, entry.key_place, from_toml(node.source().begin)});
    }
    return values;
}

const TomlEntry* find_entry(const std::vector<TomlEntry>& entries, std::string_view key) {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const TomlEntry& entry) { return entry.key == key; });
    return found == entries.end() ? nullptr : &*found;
}

std::vector<TomlElement> elements_of(const TomlDocument& document, std::string_view name,
                                     DocumentErrors& errors) {
    std::vector<TomlElement> elements;
    for (const TomlEntry& entry : entries_of(document.table)) {
        if (entry.key == name) {
            elements = elements_of(entry, errors);
            continue;
        }
        errors.add(entry.key_place, "unknown key \"" + std::string(entry.key) + "\" outside of " +
                                        header_text(name) + suggestion(entry.key, {name}));
    }
    if (elements.empty() && errors.empty()) {
        errors.add({}, "there is no " + header_text(name) + " in this file");
    }
    return elements;
}

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
