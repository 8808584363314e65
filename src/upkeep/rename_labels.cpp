// SPDX-License-Identifier: GPL-3.0-or-later
#include "upkeep/rename_labels.h"

#include "base/encodings.h"
#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "source/source_set.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace morvane {

namespace {

// What separates the words of a line for the label rules.
bool is_label_delimiter(char c) {
    return c == ' ' || c == ',' || c == ';';
}

// Calls `use(word)` for every run of characters between delimiters or the ends of the line.
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

// Finds the few labels that a line can use at all.
//
// A label between delimiters (the only place where it is renamed) has each of its own words as a
// whole word of the line. So each label is filed under its longest word, and a line can
// use only labels that are filed under one of its words. A label of nothing but delimiters can be
// in any line.
class LabelWords {
  public:
    // `labels` must outlive this.
    explicit LabelWords(const std::vector<std::string>& labels);

    // The numbers (from 0) of all labels that the line can use, ascending, each once. Others are
    // certainly not used in it.
    void candidates(std::string_view line, std::vector<std::uint32_t>& numbers) const;

  private:
    std::unordered_map<std::string_view, std::vector<std::uint32_t>> by_word_;
    std::vector<std::uint32_t> wordless_;
};

std::string_view longest_word(std::string_view label) {
    std::string_view longest;
    for_each_label_word(label, [&](std::string_view word) {
        longest = word.size() > longest.size() ? word : longest;
    });
    return longest;
}

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

// Only the first occurrence of the label is tested; when it is inside a longer word, the line is
// left as it is although the label may follow later. True when the suffix was put in.
bool append_in_line(std::string& line, const std::string& label, std::string_view suffix) {
    const std::size_t begin = line.find(label);
    if (begin == std::string::npos) {
        return false;
    }
    const std::size_t end = begin + label.size();
    const bool whole = (begin == 0 || is_label_delimiter(line[begin - 1])) &&
                       (end == line.size() || is_label_delimiter(line[end]));
    if (whole) {
        line.insert(end, suffix);
    }
    return whole;
}

/// Rewrites lines one at a time; holds what is reused from line to line.
class LineRewriter {
  public:
    LineRewriter(const std::vector<std::string>& labels, std::string_view suffix)
        : labels_(labels), words_(labels), suffix_(suffix) {}

    /// The line with all suffixes in `text()`; false when it has none and stays as it is.
    bool rewrite(std::string_view line) {
        words_.candidates(line, candidates_);
        if (candidates_.empty()) {
            return false;
        }
        text_ = line;
        bool changed = false;
        for (std::size_t i = 0; i < candidates_.size(); ++i) {
            const std::uint32_t label = candidates_[i];
            if (append_in_line(text_, labels_[label], suffix_)) {
                changed = true;
                i = continue_behind(label);
            }
        }
        return changed;
    }
    const std::string& text() const { return text_; }

  private:
    // The new word may be another label, so candidates are collected again. Returns the index in
    // front of the first candidate after `label`.
    std::size_t continue_behind(std::uint32_t label) {
        words_.candidates(text_, candidates_);
        const auto next = std::upper_bound(candidates_.begin(), candidates_.end(), label);
        candidates_.insert(candidates_.erase(candidates_.begin(), next), label);
        return 0;
    }

    const std::vector<std::string>& labels_;
    LabelWords words_;
    std::string_view suffix_;
    std::vector<std::uint32_t> candidates_;
    std::string text_;
};

} // namespace

std::vector<std::string> collect_labels(const LineStore& store) {
    std::vector<std::string> labels;
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        const std::string_view line = store.line(i);
        const std::size_t at = line.find("label");
        if (at == std::string_view::npos) {
            continue;
        }
        if (labels.size() == max_labels) {
            throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                               "line " + to_text(i) + " holds more than the " +
                                   to_text(max_labels) + " labels that a file may have");
        }
        labels.emplace_back(trim(line.substr(0, at)));
    }
    return labels;
}

void append_suffix_to_labels(LineStore& store, const std::vector<std::string>& labels,
                             std::string_view suffix) {
    if (labels.empty() || suffix.empty()) {
        return;
    }
    LineRewriter rewriter(labels, suffix);
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        if (rewriter.rewrite(store.line(i))) {
            store.set_line(i, rewriter.text());
        }
    }
}

std::size_t append_label_suffix(LineStore& store, std::string_view suffix) {
    const std::vector<std::string> labels = collect_labels(store);
    append_suffix_to_labels(store, labels, suffix);
    return labels.size();
}

namespace {

// Whether the text can be the end of a name in assembler source.
bool can_end_a_name(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
               c == '_' || c == '@' || c == '$' || c == '?';
    });
}

void note_suffix(const Services& services, const std::string& path, std::string_view suffix) {
    if (suffix.empty()) {
        services.reporter.note({"the suffix is empty, so that no label changes.", path});
    } else if (!can_end_a_name(suffix)) {
        services.reporter.note({"with the suffix \"" + to_utf8(suffix) +
                                    "\" the labels are not names: an assembler takes letters, "
                                    "digits, _ @ $ and ? only.",
                                path});
    }
}

Outcome rename_and_save(const Services& services, const std::string& path,
                        std::string_view suffix) {
    Reporter& reporter = services.reporter;
    LineStore store;
    if (load_file2array(services, path, store) == 0 || store.count() == 0) {
        reporter.message_box("File returns no lines.", Icon::Critical);
        return Outcome::Failed;
    }
    reporter.add_message("Open file returned " + store.element0() + " lines of code");
    note_suffix(services, path, suffix);
    const std::size_t labels = append_label_suffix(store, suffix);
    reporter.add_message("Labels mofilied : " + to_text(labels));
    if (!reporter.ask("Do you want to save the changes ? ", Icon::None, "File replace")) {
        return Outcome::Declined;
    }
    save_array2file(services.disk, path, store);
    reporter.add_message("File saved");
    return Outcome::Done;
}

} // namespace

Outcome rename_labels(const Services& services, const std::string& path, std::string_view suffix) {
    const std::optional<std::string> bytes = source_text(suffix);
    if (!bytes) {
        services.reporter.message_box(cannot_be_written("The suffix", suffix), Icon::Critical);
        return Outcome::Failed;
    }
    try {
        return rename_and_save(services, path, *bytes);
    } catch (const RuntimeError& error) {
        // The odd blank before the second colon is part of the text.
        report_error(services.reporter, error, "Error : ", " :");
        return Outcome::Failed;
    }
}

} // namespace morvane
