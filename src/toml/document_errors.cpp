// SPDX-License-Identifier: GPL-3.0-or-later
#include "toml/document_errors.h"

#include "base/text.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr std::size_t most_errors = 50;
constexpr std::size_t widest_excerpt = 120;  // characters
constexpr std::size_t before_caret = 60;     // characters kept in front of a far place
constexpr std::size_t longest_message = 500; // characters

bool follows_up(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// The byte at which character `index` (from 0) of a line begins.
std::size_t byte_at(std::string_view line, std::size_t index) {
    std::size_t at = 0;
    while (at < line.size() && index > 0) {
        ++at;
        while (at < line.size() && follows_up(line[at])) {
            ++at;
        }
        --index;
    }
    return at;
}

// A line and a caret under one of its characters. Tabs stay tabs in both, so that the caret
// is right whatever their width; a long line is cut around the place.
std::string excerpt(std::string_view line, std::size_t column) {
    std::size_t index = column - 1;
    if (index > widest_excerpt - before_caret) {
        line.remove_prefix(byte_at(line, index - before_caret));
        index = before_caret;
    }
    line = line.substr(0, byte_at(line, widest_excerpt));
    std::string under;
    for (std::size_t i = 0; i < index; ++i) {
        const std::size_t at = byte_at(line, i);
        under += at < line.size() && line[at] == '\t' ? '\t' : ' ';
    }
    std::string shown(line);
    std::replace_if(shown.begin(), shown.end(), is_control, '?');
    return shown + "\n" + under + "^";
}

} // namespace

bool is_control(char byte) {
    return (static_cast<unsigned char>(byte) < ' ' && byte != '\t') || byte == '\x7F';
}

std::vector<std::string_view> document_lines(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        std::string_view line = text.substr(begin, end - begin);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        lines.push_back(line);
        begin = end + 1;
    }
    return lines;
}

Place place_of(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, offset);
    const auto line_begin = before.rfind('\n') + 1; // 0 on the first line
    const std::string_view line = before.substr(line_begin);
    return {static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1,
            static_cast<std::size_t>(
                std::count_if(line.begin(), line.end(), [](char c) { return !follows_up(c); })) +
                1};
}

std::size_t byte_of(std::string_view text, Place place) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    std::size_t begin = place.line == 1 && text.starts_with(mark) ? mark.size() : 0;
    for (std::size_t line = 1; line < place.line; ++line) {
        begin = std::min(text.find('\n', begin), text.size() - 1) + 1;
    }
    return begin + byte_at(text.substr(begin), place.column - 1);
}

DocumentErrors::DocumentErrors(std::string file, std::string_view text)
    : file_(std::move(file)), lines_(document_lines(text)) {}

// A message quotes what the document says, which may be long and hold what would confuse a
// terminal.
void DocumentErrors::add(Place place, std::string message) {
    place.column = std::max<std::size_t>(place.column, 1);
    if (const std::size_t end = byte_at(message, longest_message); end < message.size()) {
        message.resize(end);
        message += " ...";
    }
    std::replace_if(message.begin(), message.end(), is_control, '?');
    found_.push_back({place, std::move(message)});
}

std::string DocumentErrors::render(const Found& found) const {
    std::string text = file_ + ":" + to_text(found.place.line) + ":" + to_text(found.place.column) +
                       ": " + found.message;
    if (found.place.line >= 1 && found.place.line <= lines_.size()) {
        text += "\n" + excerpt(lines_[found.place.line - 1], found.place.column);
    }
    return text;
}

std::vector<DocumentErrors::Found> DocumentErrors::in_order() const {
    std::vector<Found> sorted = found_;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Found& a, const Found& b) {
        return std::pair(a.place.line, a.place.column) < std::pair(b.place.line, b.place.column);
    });
    return sorted;
}

std::vector<Note> DocumentErrors::problems() const {
    std::vector<Note> problems;
    for (const Found& found : in_order()) {
        problems.push_back(
            {found.message, file_, found.place.line, Severity::Error, {}, found.place.column});
    }
    return problems;
}

std::vector<std::string> DocumentErrors::texts() const {
    const std::vector<Found> sorted = in_order();
    std::vector<std::string> texts;
    for (const Found& found : sorted) {
        if (texts.size() == most_errors) {
            texts.push_back(file_ + ": " + to_text(sorted.size() - most_errors) +
                            " more errors are not shown.");
            break;
        }
        texts.push_back(render(found));
    }
    return texts;
}

} // namespace morvane
