// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/problems.h"

#include "base/text.h"

namespace morvane::scene {

namespace {

constexpr std::size_t max_troubles = 100;

} // namespace

void Problems::add(const std::string& text, std::size_t line) {
    for (Trouble& trouble : troubles_) {
        if (trouble.text == text) {
            ++trouble.count;
            return;
        }
    }
    if (troubles_.size() < max_troubles) {
        troubles_.push_back({text, line, 1});
    }
}

std::vector<Note> Problems::notes(const std::string& path) const {
    std::vector<Note> result;
    for (const Trouble& trouble : troubles_) {
        const std::string more =
            trouble.count > 1 ? " (and " + to_text(trouble.count - 1) + " more)" : "";
        result.push_back({trouble.text + more, path, trouble.line});
    }
    return result;
}

} // namespace morvane::scene
