#include "tools/label_words.h"

#include <algorithm>
#include <cstring>

namespace morvane {

namespace {

constexpr std::size_t sieve_bits = std::size_t{1} << 17;

// Mixes the length and the last eight bytes, in which numbered labels differ. Far cheaper than a
// hash of the whole word, and nearly all words of a file are told apart by it.
std::size_t sieve_place(std::string_view word) {
    std::uint64_t tail = 0;
    const std::size_t taken = std::min<std::size_t>(word.size(), sizeof tail);
    std::memcpy(&tail, word.data() + word.size() - taken, taken);
    tail = (tail ^ word.size()) * 0x9E3779B97F4A7C15U;
    return static_cast<std::size_t>(tail >> 32) % sieve_bits;
}

std::string_view longest_word(std::string_view label) {
    std::string_view longest;
    for_each_label_word(label, [&](std::string_view word) {
        longest = word.size() > longest.size() ? word : longest;
    });
    return longest;
}

} // namespace

bool is_label_delimiter(char c) {
    return c == ' ' || c == ',' || c == ';';
}

LabelWords::LabelWords(const std::vector<std::string>& labels) : sieve_(sieve_bits / 64) {
    for (std::uint32_t number = 0; number < labels.size(); ++number) {
        const std::string_view word = longest_word(labels[number]);
        if (!word.empty()) {
            const std::size_t place = sieve_place(word);
            sieve_[place / 64] |= std::uint64_t{1} << (place % 64);
            by_word_[word].push_back(number);
        } else if (!labels[number].empty()) {
            wordless_.push_back(number);
        }
    }
}

bool LabelWords::may_be_known(std::string_view word) const {
    const std::size_t place = sieve_place(word);
    return (sieve_[place / 64] >> (place % 64) & 1) != 0;
}

void LabelWords::candidates(std::string_view line, std::vector<std::uint32_t>& numbers) const {
    numbers = wordless_;
    for_each_label_word(line, [&](std::string_view word) {
        if (may_be_known(word)) {
            if (const auto found = by_word_.find(word); found != by_word_.end()) {
                numbers.insert(numbers.end(), found->second.begin(), found->second.end());
            }
        }
    });
    if (numbers.size() > 1) {
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    }
}

} // namespace morvane
