// SPDX-License-Identifier: GPL-3.0-or-later
#include "upkeep/label_suffix.h"

#include "base/errors.h"
#include "base/text.h"
#include "upkeep/label_words.h"

#include <algorithm>

namespace morvane {

namespace {

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

} // namespace morvane
