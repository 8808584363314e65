// SPDX-License-Identifier: GPL-3.0-or-later
#include "upkeep/label_words.h"

#include <algorithm>

namespace morvane {

namespace {

std::string_view longest_word(std::string_view label) {
    std::string_view longest;
    for_each_label_word(label, [&](std::string_view word) {
        longest = word.size() > longest.size() ? word : longest;
    });
    return longest;
}

} // namespace

LabelWords::LabelWords(const std::vector<std::string>& labels) {
    for (std::uint32_t number = 0; number < labels.size(); ++number) {
        const std::string_view word = longest_word(labels[number]);
        if (!word.empty()) {
            by_word_[word].push_back(number);
        } else if (!labels[number].empty()) {
            wordless_.push_back(number);
        }
    }
}

void LabelWords::candidates(std::string_view line, std::vector<std::uint32_t>& numbers) const {
    numbers = wordless_;
    for_each_label_word(line, [&](std::string_view word) {
        if (const auto found = by_word_.find(word); found != by_word_.end()) {
            numbers.insert(numbers.end(), found->second.begin(), found->second.end());
        }
    });
    if (numbers.size() > 1) {
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    }
}

} // namespace morvane
