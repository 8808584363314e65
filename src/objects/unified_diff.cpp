// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/unified_diff.h"

#include "base/text.h"
#include "objects/save.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace morvane {

namespace {

constexpr std::size_t context_lines = 3;

constexpr std::string_view new_line_end = "\r\n"; // of every line that is saved

// A line of a hunk. The text has its line end, unless it is the last of a file that has none there.
std::string hunk_line(char sign, std::string_view text) {
    const bool whole = text.ends_with('\n');
    return sign + std::string(text) + (whole ? "" : "\n\\ No newline at end of file\n");
}

// Takes the lines of both files, with their ends, in order and prints the hunks.
class DiffWriter {
  public:
    explicit DiffWriter(const std::string& path)
        : heading_("--- " + path + "\n+++ " + path + "\n") {}

    void same(std::string_view line) {
        close_change();
        ++old_line_;
        ++new_line_;
        context_.push_back(hunk_line(' ', line));
        if (in_hunk_ && context_.size() == 2 * context_lines + 1) {
            end_hunk();
        } else if (!in_hunk_ && context_.size() > context_lines) {
            context_.erase(context_.begin());
        }
    }

    void removed(std::string_view line) {
        open_hunk();
        ++old_line_;
        minus_.push_back(hunk_line('-', line));
    }

    void added(std::string_view line) {
        open_hunk();
        ++new_line_;
        plus_.push_back(hunk_line('+', line));
    }

    std::string finish() {
        close_change();
        if (in_hunk_) {
            end_hunk();
        }
        return result_;
    }

  private:
    void open_hunk() {
        if (!in_hunk_) {
            in_hunk_ = true;
            old_start_ = old_line_ - context_.size();
            new_start_ = new_line_ - context_.size();
        }
        append(context_);
    }

    // Removed lines come before the added ones of the same place.
    void close_change() {
        append(minus_);
        append(plus_);
    }

    void append(std::vector<std::string>& lines) {
        hunk_.insert(hunk_.end(), lines.begin(), lines.end());
        lines.clear();
    }

    void end_hunk() {
        const std::size_t trailing = std::min(context_.size(), context_lines);
        hunk_.insert(hunk_.end(), context_.begin(),
                     context_.begin() + static_cast<std::ptrdiff_t>(trailing));
        const auto count = [&](char sign) {
            return static_cast<std::size_t>(
                std::count_if(hunk_.begin(), hunk_.end(), [&](const std::string& line) {
                    return line.front() == ' ' || line.front() == sign;
                }));
        };
        result_ += heading_ + "@@ -" + range(old_start_, count('-')) + " +" +
                   range(new_start_, count('+')) + " @@\n";
        heading_.clear();
        for (const std::string& line : hunk_) {
            result_ += line;
        }
        hunk_.clear();
        in_hunk_ = false;
        context_.erase(context_.begin(), context_.end() - static_cast<std::ptrdiff_t>(std::min(
                                                              context_.size(), context_lines)));
    }

    static std::string range(std::size_t start, std::size_t count) {
        return to_text(count == 0 ? start : start + 1) + "," + to_text(count);
    }

    std::string heading_; // printed before the first hunk only
    std::string result_;
    bool in_hunk_ = false;
    std::size_t old_line_ = 0; // lines taken so far
    std::size_t new_line_ = 0;
    std::size_t old_start_ = 0;
    std::size_t new_start_ = 0;
    std::vector<std::string> context_; // unchanged lines not yet in a hunk
    std::vector<std::string> minus_;
    std::vector<std::string> plus_;
    std::vector<std::string> hunk_;
};

void add_saved(DiffWriter& diff, std::string_view text) {
    diff.added(std::string(text) + std::string(new_line_end));
}

// The lines of a file as `patch` counts them: up to each LF, whatever else ends lines for us.
class FileLines {
  public:
    explicit FileLines(std::string_view bytes) : bytes_(bytes) {}

    bool at_end() const { return at_ == bytes_.size(); }
    std::string_view next() {
        const std::size_t end = bytes_.find('\n', at_);
        const std::size_t after = end == std::string_view::npos ? bytes_.size() : end + 1;
        const std::string_view line = bytes_.substr(at_, after - at_);
        at_ = after;
        return line;
    }

  private:
    std::string_view bytes_;
    std::size_t at_ = 0;
};

// How many lines of a store a line of the file holds: lone CRs end some.
std::size_t store_lines(std::string_view file_line) {
    const std::string_view text =
        file_line.substr(0, file_line.size() - (file_line.ends_with("\r\n") ? 2
                                                : file_line.empty()         ? 0
                                                                            : 1));
    return 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r'));
}

// The stores' lines on their way into a diff of the model file.
class ModelLines {
  public:
    ModelLines(const OpenSet& set, DiffWriter& diff)
        : set_(set), diff_(diff), replacements_(ordered_replacements(set)) {}

    void add(std::string_view file_line) {
        const std::size_t count = store_lines(file_line);
        add_code();
        if (count == 1 && is_saved_as(file_line)) {
            diff_.same(file_line);
            ++line_;
            return;
        }
        diff_.removed(file_line);
        for (std::size_t i = 0; i < count; ++i) {
            add_line();
        }
    }

    // What is saved after the file's last line: the empty line that every save adds.
    void add_rest() {
        while (line_ <= set_.model.upper()) {
            add_line();
        }
    }

  private:
    bool is_saved_as(std::string_view file_line) const {
        return file_line.ends_with(new_line_end) &&
               file_line.substr(0, file_line.size() - 2) == set_.model.line(line_);
    }

    void add_code() {
        for (; next_ < replacements_.size() && replacements_[next_]->before_line == line_;
             ++next_) {
            for (const std::string& text : replacements_[next_]->code) {
                add_saved(diff_, text);
            }
        }
    }

    void add_line() {
        add_code();
        add_saved(diff_, set_.model.line(line_));
        ++line_;
    }

    const OpenSet& set_;
    DiffWriter& diff_;
    std::vector<const Replacement*> replacements_;
    std::size_t line_ = 1; // of the model store
    std::size_t next_ = 0; // of the replacements
};

using Lines = std::span<const std::string>;

std::vector<std::string> file_lines(std::string_view bytes) {
    std::vector<std::string> lines;
    for (FileLines file(bytes); !file.at_end();) {
        lines.emplace_back(file.next());
    }
    return lines;
}

std::vector<std::string> saved_lines(const LineStore& store) {
    std::vector<std::string> lines;
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        lines.push_back(std::string(store.line(i)) + std::string(new_line_end));
    }
    return lines;
}

std::size_t common_at_start(Lines a, Lines b) {
    const std::size_t most = std::min(a.size(), b.size());
    return static_cast<std::size_t>(
        std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(most), b.begin()).first -
        a.begin());
}

std::size_t common_at_end(Lines a, Lines b) {
    const std::size_t most = std::min(a.size(), b.size());
    return static_cast<std::size_t>(
        std::mismatch(a.rbegin(), a.rbegin() + static_cast<std::ptrdiff_t>(most), b.rbegin())
            .first -
        a.rbegin());
}

// lengths[i][j]: the longest common subsequence of a from i on and b from j on.
std::vector<std::vector<std::uint32_t>> common_lengths(Lines a, Lines b) {
    std::vector<std::vector<std::uint32_t>> lengths(a.size() + 1,
                                                    std::vector<std::uint32_t>(b.size() + 1));
    for (std::size_t i = a.size(); i-- > 0;) {
        for (std::size_t j = b.size(); j-- > 0;) {
            lengths[i][j] = a[i] == b[j] ? lengths[i + 1][j + 1] + 1
                                         : std::max(lengths[i + 1][j], lengths[i][j + 1]);
        }
    }
    return lengths;
}

// The lines where the two differ. Many are shown as taken out and put in whole.
void diff_middle(DiffWriter& diff, Lines a, Lines b) {
    constexpr std::size_t most_cells = 4'000'000;
    const bool whole = a.size() * b.size() > most_cells;
    const auto lengths = whole ? std::vector<std::vector<std::uint32_t>>() : common_lengths(a, b);
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() || j < b.size()) {
        if (!whole && i < a.size() && j < b.size() && a[i] == b[j]) {
            diff.same(a[i++]);
            ++j;
        } else if (j == b.size() ||
                   (i < a.size() && (whole || lengths[i + 1][j] >= lengths[i][j + 1]))) {
            diff.removed(a[i++]);
        } else {
            diff.added(b[j++]);
        }
    }
}

void all_same(DiffWriter& diff, Lines lines) {
    for (const std::string& line : lines) {
        diff.same(line);
    }
}

} // namespace

std::string model_diff(const OpenSet& set, const std::string& path) {
    require_code(set);
    DiffWriter diff(path);
    ModelLines lines(set, diff);
    for (FileLines file(set.model.loaded_bytes()); !file.at_end();) {
        lines.add(file.next());
    }
    lines.add_rest();
    return diff.finish();
}

std::string frame_diff(const OpenSet& set, const std::string& path) {
    if (!set.frame_changed) {
        return {};
    }
    const std::vector<std::string> old_lines = file_lines(set.frame.loaded_bytes());
    const std::vector<std::string> new_lines = saved_lines(set.frame);
    const std::size_t head = common_at_start(old_lines, new_lines);
    const Lines before = Lines(old_lines).subspan(head);
    const Lines after = Lines(new_lines).subspan(head);
    const std::size_t tail = common_at_end(before, after);
    DiffWriter diff(path);
    all_same(diff, Lines(old_lines).first(head));
    diff_middle(diff, before.first(before.size() - tail), after.first(after.size() - tail));
    all_same(diff, before.last(tail));
    return diff.finish();
}

} // namespace morvane
