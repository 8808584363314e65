// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/find_line.h"

#include "base/text.h"

#include <algorithm>

namespace morvane {

namespace {

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Compares without making the collapsed copy of the line, since nearly every line differs in its
// first character.
bool collapsed_begins_with(std::string_view line, std::string_view key) {
    line = trim(line);
    std::size_t at = 0;
    for (const char expected : key) {
        if (at == line.size() || upper(line[at]) != expected) {
            return false;
        }
        ++at;
        while (expected == ' ' && at < line.size() && line[at] == ' ') {
            ++at;
        }
    }
    return true;
}

// Fast rejection: most lines differ in their first character.
bool may_begin_with(std::string_view line, std::string_view prefix) {
    const std::size_t first = std::min(line.find_first_not_of(' '), line.size());
    return prefix.empty() || (first < line.size() && line[first] == prefix.front());
}

} // namespace

std::size_t find_line(std::string_view key, const LineStore& store, std::size_t start,
                      bool backward) {
    const std::string wanted = upper_case(collapse_blanks(key));
    if (backward) {
        for (std::size_t i = start; i >= 1; --i) {
            if (collapsed_begins_with(store.line(i), wanted)) {
                return i;
            }
        }
        return 0;
    }
    // A search that starts at element 0 compares that too; found there is not found.
    if (start == 0 && collapsed_begins_with(store.element0(), wanted)) {
        return 0;
    }
    for (std::size_t i = std::max<std::size_t>(start, 1); i <= store.upper(); ++i) {
        if (collapsed_begins_with(store.line(i), wanted)) {
            return i;
        }
    }
    return 0;
}

std::size_t find_trimmed_prefix(std::string_view prefix, const LineStore& store,
                                std::size_t start) {
    for (std::size_t i = start; i <= store.upper(); ++i) {
        if (may_begin_with(store.line(i), prefix) && trim(store.line(i)).starts_with(prefix)) {
            return i;
        }
    }
    return 0;
}

} // namespace morvane
