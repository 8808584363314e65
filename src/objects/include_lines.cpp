// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/include_lines.h"

#include "base/paths.h"
#include "base/text.h"

#include <cstddef>

namespace morvane {

namespace {

constexpr std::string_view blanks = " \t";

std::string_view strip(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

bool is_enclosed(std::string_view text, char open, char close) {
    return text.size() >= 2 && text.front() == open && text.back() == close;
}

} // namespace

std::string included_file(std::string_view line) {
    constexpr std::string_view keyword = "include";
    line = strip(line.substr(0, line.find(';')));
    if (line.size() <= keyword.size() ||
        !equal_ignoring_case(line.substr(0, keyword.size()), keyword) ||
        blanks.find(line[keyword.size()]) == std::string_view::npos) {
        return {};
    }
    std::string_view file = strip(line.substr(keyword.size()));
    if (is_enclosed(file, '<', '>') || is_enclosed(file, '"', '"')) {
        file = file.substr(1, file.size() - 2);
    }
    return std::string(file);
}

bool add_macro_include(LineStore& frame, std::string_view file) {
    const std::string name = file_name_part(file);
    std::size_t place = 1;
    for (std::size_t i = 1; i <= frame.count(); ++i) {
        const std::string included = included_file(frame.line(i));
        if (equal_ignoring_case(file_name_part(included), name)) {
            return false;
        }
        if (has_ending(included, ".inc")) {
            place = i + 1;
        }
    }
    frame.insert_lines(place, {"    include " + name});
    return true;
}

bool include_macros(OpenSet& set, std::string_view file) {
    const bool added = add_macro_include(set.frame, file);
    set.frame_changed = set.frame_changed || added;
    return added;
}

bool make_includes_bare(LineStore& store, const std::map<std::string, std::string>& names) {
    bool changed = false;
    for (std::size_t i = 1; i <= store.count(); ++i) {
        const std::string file = included_file(store.line(i));
        if (file.empty()) {
            continue;
        }
        const auto known = names.find(lower_case(file_name_part(file)));
        if (known != names.end() && known->second != file) {
            std::string line(store.line(i));
            store.set_line(i, line.replace(line.find(file), file.size(), known->second));
            changed = true;
        }
    }
    return changed;
}

} // namespace morvane
