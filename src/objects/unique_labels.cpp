// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/unique_labels.h"

#include "base/text.h"

#include <algorithm>
#include <string_view>

namespace morvane {

namespace {

constexpr std::string_view rest_of_line = "  label BGLCODE";

bool is_closing_label(std::string_view line) {
    return line == "SKIP_FX  label BGLCODE" || line == "SKIP_LIB  label BGLCODE";
}

} // namespace

void number_repeated_label(OpenSet& set, std::size_t row) {
    if (set.replacements.empty() || set.replacements.back().code.empty() ||
        !is_closing_label(set.replacements.back().code.back())) {
        return;
    }
    std::string& last = set.replacements.back().code.back();
    const bool repeated = std::any_of(
        set.replacements.begin(), set.replacements.end() - 1, [&](const Replacement& other) {
            return std::find(other.code.begin(), other.code.end(), last) != other.code.end();
        });
    if (repeated) {
        last.insert(last.size() - rest_of_line.size(), to_text(row));
    }
}

} // namespace morvane
