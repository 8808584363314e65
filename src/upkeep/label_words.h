// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace morvane {

/// What separates the words of a line for the label rules.
inline bool is_label_delimiter(char c) {
    return c == ' ' || c == ',' || c == ';';
}

/// Calls `use(word)` for every run of characters between delimiters or the ends of the line.
template <typename Use>
void for_each_label_word(std::string_view line, Use use) {
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= line.size(); ++i) {
        if (i == line.size() || is_label_delimiter(line[i])) {
            if (i > begin) {
                use(line.substr(begin, i - begin));
            }
            begin = i + 1;
        }
    }
}

/// Finds the few labels that a line can use at all.
///
/// A label between delimiters (the only place where it is renamed) has each of its own words as a
/// whole word of the line. So each label is filed under its longest word, and a line can
/// use only labels that are filed under one of its words. A label of nothing but delimiters can be
/// in any line.
class LabelWords {
  public:
    /// `labels` must outlive this.
    explicit LabelWords(const std::vector<std::string>& labels);

    /// The numbers (from 0) of all labels that the line can use, ascending, each once. Others are
    /// certainly not used in it.
    void candidates(std::string_view line, std::vector<std::uint32_t>& numbers) const;

  private:
    std::unordered_map<std::string_view, std::vector<std::uint32_t>> by_word_;
    std::vector<std::uint32_t> wordless_;
};

} // namespace morvane
