#include "source/fields.h"

#include "base/errors.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace morvane {

namespace {

// Code 7, not the tab: a tab is an ordinary character of a keyword.
bool is_separator(char c) {
    return c == ' ' || c == '\x07';
}

bool ends_operand(char c) {
    return c == ',' || c == ';';
}

constexpr std::size_t lanes = 16;

// All lanes added up, eight at a time: neighbours to four pairs, the pairs by one multiplication.
std::size_t sum(const std::array<unsigned char, lanes>& counts) {
    std::array<std::uint64_t, lanes / 8> words;
    std::memcpy(words.data(), counts.data(), counts.size());
    std::uint64_t pairs = 0;
    for (const std::uint64_t word : words) {
        pairs += (word & 0x00FF00FF00FF00FF) + ((word >> 8) & 0x00FF00FF00FF00FF);
    }
    return static_cast<std::size_t>((pairs * 0x0001000100010001) >> 48);
}

// Operand ends among the first 16 * `steps` characters. The count is made in 16 lanes at once: the
// compiler turns that into vector instructions.
std::size_t count_operand_ends(std::string_view line, std::size_t steps) {
    std::array<unsigned char, lanes> counts{};
    for (std::size_t step = 0; step < steps; ++step) {
        const char* const from = line.data() + step * lanes;
        for (std::size_t i = 0; i < lanes; ++i) {
            counts[i] = static_cast<unsigned char>(counts[i] + (ends_operand(from[i]) ? 1 : 0));
        }
    }
    return sum(counts);
}

// Whether a line plainly has too few operand ends for 41 operands: each takes one, or the lost last
// character. Nearly every line of a model is told so by its beginning: with fewer than eight ends
// there, even a rest of nothing but ends would not do. Lines so long that a lane could overflow are
// left to the exact answer.
bool has_few_operand_ends(std::string_view line) {
    constexpr std::size_t rest = FieldArray::max_operands - 8;
    if (line.size() <= FieldArray::max_operands || line.size() > lanes * 200) {
        return line.size() <= FieldArray::max_operands;
    }
    const std::size_t steps = (line.size() - rest + lanes - 1) / lanes;
    const std::size_t looked_at = steps * lanes;
    return count_operand_ends(line, steps) + (line.size() - looked_at) < FieldArray::max_operands;
}

} // namespace

std::string_view FieldArray::operator[](std::size_t index) const {
    if (index > max_operands) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "operand " + std::to_string(index));
    }
    return elements_[index];
}

void FieldArray::add_operand(std::string_view operand) {
    if (count_ == max_operands) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "a line of more than 40 operands");
    }
    elements_[++count_] = operand;
}

FieldArray split_fields(std::string_view line) {
    FieldArray fields;
    std::size_t p = 0;
    while (p < line.size() && is_separator(line[p])) {
        ++p;
    }
    if (p < line.size() && line[p] == ';') {
        fields.set_keyword("com");
        return fields;
    }
    std::size_t q = p;
    while (q < line.size() && !is_separator(line[q]) && line[q] != ';') {
        ++q;
    }
    fields.set_keyword(line.substr(p, q - p));
    if (q + 1 >= line.size()) {
        return fields;
    }
    std::string_view rest = trim(line.substr(q + 1));
    while (rest.size() > 1) {
        // The scan stops at the last character whatever it is: that character is lost on purpose.
        const auto end = std::find_if(rest.begin(), rest.end() - 1, ends_operand);
        const auto length = static_cast<std::size_t>(end - rest.begin());
        fields.add_operand(rest.substr(0, length));
        rest = trim(rest.substr(length + 1));
    }
    return fields;
}

std::string_view get_field(std::string_view line, std::size_t index) {
    return split_fields(line)[index];
}

bool has_too_many_operands(std::string_view line) {
    if (has_few_operand_ends(line)) {
        return false;
    }
    try {
        split_fields(line);
    } catch (const RuntimeError&) {
        return true;
    }
    return false;
}

} // namespace morvane
