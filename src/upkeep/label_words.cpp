#include "upkeep/label_words.h"

#include <algorithm>
#include <cstring>

namespace morvane {

namespace {

constexpr std::size_t sieve_bits = std::size_t{1} << 17;

constexpr std::array<bool, 256> make_delimiters() {
    std::array<bool, 256> table{};
    for (const unsigned char c : {' ', ',', ';'}) {
        table[c] = true;
    }
    return table;
}

constexpr std::array<bool, 256> delimiters = make_delimiters();

std::size_t byte_of(char c) {
    return static_cast<unsigned char>(c);
}

// Mixes the length and the last bytes, in which numbered labels differ. Far cheaper than a hash of
// the whole word, and nearly all words of a file are told apart by it.
std::size_t sieve_place(std::string_view word) {
    std::uint64_t tail = word.size();
    if (word.size() >= 8) {
        std::uint64_t last = 0;
        std::memcpy(&last, word.data() + word.size() - 8, 8);
        tail ^= last;
    } else {
        for (const char c : word) {
            tail = tail << 8 ^ byte_of(c);
        }
    }
    return static_cast<std::size_t>(tail * 0x9E3779B97F4A7C15U >> 32) % sieve_bits;
}

std::string_view longest_word(std::string_view label) {
    std::string_view longest;
    for_each_label_word(label, [&](std::string_view word) {
        longest = word.size() > longest.size() ? word : longest;
    });
    return longest;
}

} // namespace

LabelWords::LabelWords(const std::vector<std::string>& labels) : sieve_(sieve_bits / 64) {
    for (std::uint32_t number = 0; number < labels.size(); ++number) {
        const std::string_view word = longest_word(labels[number]);
        if (!word.empty()) {
            const std::size_t place = sieve_place(word);
            sieve_[place / 64] |= std::uint64_t{1} << (place % 64);
            begins_[byte_of(word.front())] = true;
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

void LabelWords::add_labels_of(std::string_view word, std::vector<std::uint32_t>& numbers) const {
    if (const auto found = by_word_.find(word); found != by_word_.end()) {
        numbers.insert(numbers.end(), found->second.begin(), found->second.end());
    }
}

void LabelWords::candidates(std::string_view line, std::vector<std::uint32_t>& numbers) const {
    numbers = wordless_;
    const char* const end = line.data() + line.size();
    const char* at = line.data();
    while (at != end) {
        const char* const word = at;
        while (at != end && !delimiters[byte_of(*at)]) {
            ++at;
        }
        const std::string_view text(word, static_cast<std::size_t>(at - word));
        if (!text.empty() && begins_[byte_of(text.front())] && may_be_known(text)) {
            add_labels_of(text, numbers);
        }
        at += at == end ? 0 : 1;
    }
    if (numbers.size() > 1) {
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    }
}

} // namespace morvane
