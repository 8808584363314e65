// SPDX-License-Identifier: GPL-3.0-or-later
#include "toml/toml_edit.h"

#include "base/errors.h"
#include "toml/document_errors.h"

#include <toml++/toml.h>

#include <algorithm>

namespace morvane {

namespace {

constexpr std::string_view byte_mark = "\xEF\xBB\xBF"; // that some editors put before UTF-8

[[noreturn]] void refuse(const std::string& why) {
    throw RuntimeError(ErrorNumber::InvalidProcedureCall, why);
}

toml::table parsed(const std::string& text) {
    try {
        return toml::parse(std::string_view(text));
    } catch (const toml::parse_error& error) {
        refuse("the text is no TOML: " + std::string(error.description()));
    }
}

/// Bytes of a text, the end not counted.
struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
};

std::size_t byte_at(const std::string& text, const toml::source_position& position) {
    return byte_of(text, {position.line, position.column});
}

std::size_t line_begin(const std::string& text, std::size_t at) {
    return at == 0 ? 0 : text.rfind('\n', at - 1) + 1; // 0 on the first line
}

// Where the line after that of a byte begins; the text's size on the last.
std::size_t next_line(const std::string& text, std::size_t at) {
    const std::size_t end = text.find('\n', at);
    return end == std::string::npos ? text.size() : end + 1;
}

std::string line_end_of(const std::string& text) {
    const std::size_t end = text.find('\n');
    return end != std::string::npos && end > 0 && text[end - 1] == '\r' ? "\r\n" : "\n";
}

std::string_view line_at(const std::string& text, std::size_t begin) {
    return std::string_view(text).substr(begin, next_line(text, begin) - begin);
}

bool begins_with(std::string_view line, char c) {
    const std::size_t first = line.find_first_not_of(" \t");
    return first != std::string_view::npos && line[first] == c;
}

bool is_blank(std::string_view line) {
    return line.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// A key of a table and its value in the text.
struct Entry {
    std::string_view name;
    Span key;
    Span value;
};

// Whether a value is written under a header of its own.
bool has_header(const toml::node& node) {
    if (const toml::table* table = node.as_table()) {
        return !table->is_inline();
    }
    const toml::array* array = node.as_array();
    return array != nullptr && array->is_array_of_tables() &&
           !array->get(0)->as_table()->is_inline();
}

// The keys of a table that are written in it, in the order of the text.
std::vector<Entry> entries_in(const std::string& text, const toml::table& table) {
    std::vector<Entry> entries;
    for (auto&& [key, value] : table) {
        if (!has_header(value)) {
            entries.push_back(
                {key.str(),
                 {byte_at(text, key.source().begin), byte_at(text, key.source().end)},
                 {byte_at(text, value.source().begin), byte_at(text, value.source().end)}});
        }
    }
    std::sort(entries.begin(), entries.end(),
              [](const Entry& a, const Entry& b) { return a.key.begin < b.key.begin; });
    return entries;
}

const toml::table* find_table(const toml::table& root, const TomlTable& path) {
    const toml::node* node = &root;
    for (const std::string& name : path.names) {
        const toml::table* table = node->as_table();
        node = table == nullptr ? nullptr : table->get(name);
        if (node == nullptr) {
            return nullptr;
        }
    }
    if (path.element) {
        const toml::array* array = node->as_array();
        node = array == nullptr ? nullptr : array->get(*path.element);
    }
    return node == nullptr ? nullptr : node->as_table();
}

// Puts whole lines before the byte, which begins a line or ends the text.
std::string with_lines(std::string text, std::size_t at, const std::vector<std::string>& lines) {
    const std::string end = line_end_of(text);
    std::string inserted;
    const bool begins = at == 0 || (at == byte_mark.size() && text.starts_with(byte_mark));
    if (!begins && text[at - 1] != '\n') {
        inserted += end;
    }
    for (const std::string& line : lines) {
        inserted += line + end;
    }
    return text.insert(at, inserted);
}

// A new line of a key, lined up with the line of another.
std::string lined_up(const std::string& text, const Entry& other, std::string_view key,
                     std::string_view value) {
    const std::size_t begin = line_begin(text, other.key.begin);
    const std::size_t equals = text.find('=', other.key.end);
    std::string line = text.substr(begin, other.key.begin - begin) + std::string(key);
    const std::size_t width = equals - begin;
    line.resize(std::max(width, line.size() + 1), ' ');
    return line + "= " + std::string(value);
}

// Where a first key of the top is put: before everything but a comment about the whole file.
std::size_t top_place(const std::string& text) {
    const std::size_t first = text.starts_with(byte_mark) ? byte_mark.size() : 0;
    std::size_t at = first;
    while (at < text.size() && begins_with(line_at(text, at), '#')) {
        at = next_line(text, at);
    }
    return at < text.size() && at > first && is_blank(line_at(text, at)) ? next_line(text, at)
                                                                         : first;
}

std::string with_new_key(const std::string& text, const toml::table& table, bool top,
                         std::string_view key, std::string_view value) {
    const std::vector<Entry> entries = entries_in(text, table);
    const std::string plain = std::string(key) + " = " + std::string(value);
    if (table.is_inline()) {
        const std::size_t end = byte_at(text, table.source().end) - 1; // the brace
        std::string changed = text;
        const std::size_t at = entries.empty() ? end : entries.back().value.end;
        return changed.insert(at, entries.empty() ? " " + plain + " " : ", " + plain);
    }
    if (!entries.empty()) {
        const Entry& last = entries.back();
        return with_lines(text, next_line(text, last.value.end),
                          {lined_up(text, last, key, value)});
    }
    if (top) {
        return with_lines(text, top_place(text), {plain, ""});
    }
    return with_lines(text, next_line(text, byte_at(text, table.source().begin)), {plain});
}

const toml::array* element_list(const toml::table& root, const std::string& name) {
    const toml::node* node = root.get(name);
    if (node == nullptr) {
        return nullptr;
    }
    if (!has_header(*node)) {
        refuse("\"" + name + "\" is not written as [[" + name + "]]");
    }
    return node->as_array();
}

// An element with the comment directly above its header, up to the end of its last key's line.
Span element_span(const std::string& text, const toml::array& elements, std::size_t position) {
    const toml::table& table = *elements.get(position)->as_table();
    Span span;
    const std::size_t header = byte_at(text, table.source().begin);
    span.begin = line_begin(text, header);
    while (span.begin > 0) {
        const std::size_t above = line_begin(text, span.begin - 1);
        if (!begins_with(line_at(text, above), '#')) {
            break;
        }
        span.begin = above;
    }
    const std::vector<Entry> entries = entries_in(text, table);
    span.end = next_line(text, entries.empty() ? header : entries.back().value.end);
    return span;
}

// Where the first table `[[...]]` begins, with its comment; the end of the text when there is none.
std::size_t first_element_place(const std::string& text, const toml::table& root) {
    std::size_t first = text.size();
    for (auto&& [key, value] : root) {
        if (value.is_array_of_tables() && has_header(value)) {
            first = std::min(first, element_span(text, *value.as_array(), 0).begin);
        }
    }
    return first;
}

std::string quoted_if_needed(const std::string& name) {
    const bool bare = !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '-' || c == '_';
    });
    return bare ? name : "\"" + name + "\"";
}

std::string with_new_table(const std::string& text, const toml::table& root, const TomlTable& table,
                           const std::string& line) {
    std::string header;
    for (const std::string& name : table.names) {
        header += (header.empty() ? "[" : ".") + quoted_if_needed(name);
    }
    const std::size_t at = first_element_place(text, root);
    std::vector<std::string> lines{header + "]", line};
    if (at < text.size()) {
        lines.emplace_back();
    } else if (!text.empty()) {
        lines.insert(lines.begin(), std::string());
    }
    return with_lines(text, at, lines);
}

} // namespace

std::string with_toml_value(const std::string& text, const TomlTable& table, std::string_view key,
                            std::string_view value) {
    const toml::table root = parsed(text);
    const toml::table* found = find_table(root, table);
    if (found == nullptr) {
        if (table.element || table.names.empty()) {
            refuse("there is no such table");
        }
        return with_new_table(text, root, table, std::string(key) + " = " + std::string(value));
    }
    for (const Entry& entry : entries_in(text, *found)) {
        if (entry.name == key) {
            std::string changed = text;
            return changed.replace(entry.value.begin, entry.value.end - entry.value.begin, value);
        }
    }
    return with_new_key(text, *found, found == &root, key, value);
}

std::string without_toml_key(const std::string& text, const TomlTable& table,
                             std::string_view key) {
    const toml::table root = parsed(text);
    const toml::table* found = find_table(root, table);
    if (found == nullptr) {
        return text;
    }
    const std::vector<Entry> entries = entries_in(text, *found);
    const auto entry =
        std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.name == key; });
    if (entry == entries.end()) {
        return text;
    }
    Span span{line_begin(text, entry->key.begin), next_line(text, entry->value.end)};
    if (found->is_inline()) {
        const bool last = entry + 1 == entries.end();
        span.begin = last && entry != entries.begin() ? (entry - 1)->value.end : entry->key.begin;
        span.end = last ? entry->value.end : (entry + 1)->key.begin;
    }
    std::string changed = text;
    return changed.erase(span.begin, span.end - span.begin);
}

std::string with_toml_element(const std::string& text, const std::string& name,
                              std::size_t position, const std::vector<std::string>& lines) {
    const toml::table root = parsed(text);
    const toml::array* elements = element_list(root, name);
    const std::size_t count = elements == nullptr ? 0 : elements->size();
    std::vector<std::string> block{"[[" + name + "]]"};
    block.insert(block.end(), lines.begin(), lines.end());
    if (position < count) {
        block.emplace_back();
        return with_lines(text, element_span(text, *elements, position).begin, block);
    }
    const std::size_t at = count == 0 ? text.size() : element_span(text, *elements, count - 1).end;
    if (at > 0) {
        block.insert(block.begin(), std::string());
    }
    return with_lines(text, at, block);
}

std::string without_toml_element(const std::string& text, const std::string& name,
                                 std::size_t position) {
    const toml::table root = parsed(text);
    const toml::array* elements = element_list(root, name);
    if (elements == nullptr || position >= elements->size()) {
        refuse("there is no such table");
    }
    Span span = element_span(text, *elements, position);
    while (span.end < text.size() && is_blank(line_at(text, span.end))) {
        span.end = next_line(text, span.end);
    }
    std::string changed = text;
    return changed.erase(span.begin, span.end - span.begin);
}

} // namespace morvane
