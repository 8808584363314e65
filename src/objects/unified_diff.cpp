#include "objects/unified_diff.h"

#include "base/text.h"
#include "objects/save.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace morvane {

namespace {

constexpr std::size_t context_lines = 3;

// Takes the lines of both files in order and prints the hunks.
class DiffWriter {
  public:
    explicit DiffWriter(const std::string& path)
        : heading_("--- " + path + "\n+++ " + path + "\n") {}

    void same(std::string_view line) {
        close_change();
        ++old_line_;
        ++new_line_;
        context_.push_back(' ' + std::string(line) + '\n');
        if (in_hunk_ && context_.size() == 2 * context_lines + 1) {
            end_hunk();
        } else if (!in_hunk_ && context_.size() > context_lines) {
            context_.erase(context_.begin());
        }
    }

    void removed(std::string_view line) {
        open_hunk();
        ++old_line_;
        minus_.push_back('-' + std::string(line) + '\n');
    }

    void added(std::string_view line) {
        open_hunk();
        ++new_line_;
        plus_.push_back('+' + std::string(line) + '\n');
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

    // Removed lines stand before the added ones of the same place.
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

void add_generated(DiffWriter& diff, const OpenSet& set, std::size_t line, std::size_t& record) {
    while (record < set.records.size() && set.records[record].insertion_line == line) {
        for (const std::string& text : generated_lines(set, set.records[record])) {
            diff.added(text);
        }
        ++record;
    }
}

// Lines first .. first + count - 1 of a store.
struct Stretch {
    const LineStore& store;
    std::size_t first = 1;
    std::size_t count = 0;

    std::string_view operator[](std::size_t i) const { return store.line(first + i); }
};

std::size_t common_at_start(const Stretch& a, const Stretch& b) {
    const std::size_t most = std::min(a.count, b.count);
    std::size_t n = 0;
    while (n < most && a[n] == b[n]) {
        ++n;
    }
    return n;
}

std::size_t common_at_end(const Stretch& a, const Stretch& b) {
    const std::size_t most = std::min(a.count, b.count);
    std::size_t n = 0;
    while (n < most && a[a.count - 1 - n] == b[b.count - 1 - n]) {
        ++n;
    }
    return n;
}

// lengths[i][j]: the longest common subsequence of a from i on and b from j on.
std::vector<std::vector<std::uint32_t>> common_lengths(const Stretch& a, const Stretch& b) {
    std::vector<std::vector<std::uint32_t>> lengths(a.count + 1,
                                                    std::vector<std::uint32_t>(b.count + 1));
    for (std::size_t i = a.count; i-- > 0;) {
        for (std::size_t j = b.count; j-- > 0;) {
            lengths[i][j] = a[i] == b[j] ? lengths[i + 1][j + 1] + 1
                                         : std::max(lengths[i + 1][j], lengths[i][j + 1]);
        }
    }
    return lengths;
}

// The stretch where the two differ. A large one is shown as taken out and put in whole.
void diff_middle(DiffWriter& diff, const Stretch& a, const Stretch& b) {
    constexpr std::size_t most_cells = 4'000'000;
    const bool whole = a.count * b.count > most_cells;
    const auto lengths = whole ? std::vector<std::vector<std::uint32_t>>() : common_lengths(a, b);
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.count || j < b.count) {
        if (!whole && i < a.count && j < b.count && a[i] == b[j]) {
            diff.same(a[i++]);
            ++j;
        } else if (j == b.count ||
                   (i < a.count && (whole || lengths[i + 1][j] >= lengths[i][j + 1]))) {
            diff.removed(a[i++]);
        } else {
            diff.added(b[j++]);
        }
    }
}

} // namespace

std::string model_diff(const OpenSet& set, const LineStore& old, const std::string& path) {
    DiffWriter diff(path);
    std::size_t record = 0;
    for (std::size_t i = 1; i <= set.model.upper(); ++i) {
        add_generated(diff, set, i, record);
        if (i > old.count()) {
            diff.added(set.model.line(i)); // the empty line that every save adds
        } else if (old.line(i) == set.model.line(i)) {
            diff.same(old.line(i));
        } else {
            diff.removed(old.line(i));
            diff.added(set.model.line(i));
        }
    }
    return diff.finish();
}

std::string frame_diff(const OpenSet& set, const LineStore& old, const std::string& path) {
    if (!set.frame_changed) {
        return {};
    }
    const std::size_t head =
        common_at_start({old, 1, old.count()}, {set.frame, 1, set.frame.count()});
    Stretch before{old, head + 1, old.count() - head};
    Stretch after{set.frame, head + 1, set.frame.count() - head};
    const std::size_t tail = common_at_end(before, after);
    before.count -= tail;
    after.count -= tail;
    DiffWriter diff(path);
    for (std::size_t i = 1; i <= head; ++i) {
        diff.same(old.line(i));
    }
    diff_middle(diff, before, after);
    for (std::size_t i = old.count() - tail + 1; i <= old.count(); ++i) {
        diff.same(old.line(i));
    }
    diff.added(""); // the empty line that every save adds
    return diff.finish();
}

} // namespace morvane
