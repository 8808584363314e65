// SPDX-License-Identifier: GPL-3.0-or-later

// Diffs of random files, judged by what a diff is: it can be applied, it is as short as can be, and
// each change stands in the middle of three unchanged lines.

#include "objects/unified_diff.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

using Lines = std::vector<std::string>;

struct Hunk {
    std::size_t old_start = 0;
    std::size_t old_count = 0;
    std::size_t new_start = 0;
    std::size_t new_count = 0;
    Lines lines; // with their marks
};

std::vector<Hunk> hunks_of(const std::string& diff) {
    std::istringstream text(diff);
    std::string line;
    EXPECT_TRUE(std::getline(text, line) && line == "--- set.asm") << diff;
    EXPECT_TRUE(std::getline(text, line) && line == "+++ set.asm") << diff;
    std::vector<Hunk> hunks;
    while (std::getline(text, line)) {
        Hunk next;
        if (std::sscanf(line.c_str(), "@@ -%zu,%zu +%zu,%zu @@", &next.old_start, &next.old_count,
                        &next.new_start, &next.new_count) == 4) {
            hunks.push_back(next);
        } else if (!hunks.empty()) {
            EXPECT_EQ(line.back(), '\r') << "the files' line ends are kept";
            line.pop_back();
            hunks.back().lines.push_back(line);
        }
    }
    return hunks;
}

// The lines of a hunk that the old file has ('-') or the new one ('+').
Lines side(const Hunk& hunk, char mark) {
    Lines lines;
    for (const std::string& line : hunk.lines) {
        if (line[0] == ' ' || line[0] == mark) {
            lines.push_back(line.substr(1));
        }
    }
    return lines;
}

// Where a hunk's lines begin, counted from 0: an empty stretch is named by the line before it.
std::size_t begin_of(std::size_t start, std::size_t count) {
    return count == 0 ? start : start - 1;
}

Lines part(const Lines& lines, std::size_t begin, std::size_t end) {
    return {lines.begin() + static_cast<std::ptrdiff_t>(begin),
            lines.begin() + static_cast<std::ptrdiff_t>(end)};
}

// What a program that applies diffs makes of the old file.
Lines applied(const Lines& old, const std::vector<Hunk>& hunks) {
    Lines result;
    std::size_t next = 0;
    for (const Hunk& hunk : hunks) {
        const std::size_t begin = begin_of(hunk.old_start, hunk.old_count);
        EXPECT_LE(next, begin);
        const Lines before = part(old, next, begin);
        result.insert(result.end(), before.begin(), before.end());
        EXPECT_EQ(begin_of(hunk.new_start, hunk.new_count), result.size());
        EXPECT_EQ(side(hunk, '-'), part(old, begin, begin + hunk.old_count));
        const Lines lines = side(hunk, '+');
        EXPECT_EQ(lines.size(), hunk.new_count);
        result.insert(result.end(), lines.begin(), lines.end());
        next = begin + hunk.old_count;
    }
    const Lines rest = part(old, next, old.size());
    result.insert(result.end(), rest.begin(), rest.end());
    return result;
}

std::size_t changed_lines(const std::vector<Hunk>& hunks) {
    std::size_t changed = 0;
    for (const Hunk& hunk : hunks) {
        changed += static_cast<std::size_t>(
            std::count_if(hunk.lines.begin(), hunk.lines.end(),
                          [](const std::string& line) { return line[0] != ' '; }));
    }
    return changed;
}

// Three unchanged lines before the first change and behind the last, where the file has them; no
// more than six between two changes, since with seven these are two hunks.
void expect_context(const Hunk& hunk, std::size_t behind) {
    std::size_t run = 0;
    bool changed = false;
    for (const std::string& line : hunk.lines) {
        if (line[0] == ' ') {
            ++run;
            continue;
        }
        if (changed) {
            EXPECT_LE(run, 6U);
        } else {
            EXPECT_EQ(run,
                      std::min<std::size_t>(3, begin_of(hunk.old_start, hunk.old_count) + run));
        }
        changed = true;
        run = 0;
    }
    EXPECT_TRUE(changed);
    EXPECT_EQ(run, std::min<std::size_t>(3, behind + run));
}

// How many lines two files have in common, in order, at most.
std::size_t common(const Lines& a, const Lines& b, std::size_t i = 0, std::size_t j = 0) {
    if (i == a.size() || j == b.size()) {
        return 0;
    }
    if (a[i] == b[j]) {
        return 1 + common(a, b, i + 1, j + 1);
    }
    return std::max(common(a, b, i + 1, j), common(a, b, i, j + 1));
}

void expect_diff(const Lines& old, Lines now, const std::string& diff, bool shortest) {
    now.emplace_back(); // that every save adds
    const std::vector<Hunk> hunks = hunks_of(diff);
    EXPECT_EQ(applied(old, hunks), now);
    for (std::size_t i = 0; i < hunks.size(); ++i) {
        const std::size_t end =
            begin_of(hunks[i].old_start, hunks[i].old_count) + hunks[i].old_count;
        expect_context(hunks[i], old.size() - end);
        if (i > 0) {
            EXPECT_GE(begin_of(hunks[i].old_start, hunks[i].old_count),
                      hunks[i - 1].old_start + hunks[i - 1].old_count);
        }
    }
    if (shortest) {
        // The empty line at the end is always new.
        now.pop_back();
        EXPECT_EQ(changed_lines(hunks), old.size() + now.size() + 1 - 2 * common(old, now));
    }
    if (::testing::Test::HasFailure()) {
        ADD_FAILURE() << diff;
    }
}

LineStore store_of(std::string_view text) {
    FileBytes bytes{std::make_unique<char[]>(text.size()), text.size()};
    std::copy(text.begin(), text.end(), bytes.data.get());
    return LineStore(std::move(bytes));
}

// A file of such lines, as it is read.
LineStore loaded(const Lines& lines) {
    return store_of(crlf(lines));
}

void replace_lines(LineStore& store, const Lines& now) {
    store.insert_lines(1, now);
    if (store.count() > now.size()) {
        store.erase_lines(now.size() + 1, store.count());
    }
}

void expect_frame_diff(const Lines& old, const Lines& now, bool shortest) {
    OpenSet set;
    set.frame = loaded(old);
    replace_lines(set.frame, now);
    set.frame_changed = true;
    expect_diff(old, now, frame_diff(set, "set.asm"), shortest);
}

Lines random_lines(std::mt19937& random, std::size_t most, int kinds) {
    Lines lines(random() % (most + 1));
    for (std::string& line : lines) {
        line = std::string(1, static_cast<char>('a' + static_cast<int>(random() % 26) % kinds));
    }
    return lines;
}

TEST(UnifiedDiff, OfAnyTwoFramesIsTheShortest) {
    std::mt19937 random(11);
    for (int i = 0; i < 3000 && !::testing::Test::HasFailure(); ++i) {
        const int kinds = 2 + i % 5;
        expect_frame_diff(random_lines(random, 8, kinds), random_lines(random, 8, kinds), true);
    }
}

TEST(UnifiedDiff, KeepsChangesThatLieApartInHunksOfTheirOwn) {
    std::mt19937 random(12);
    for (int i = 0; i < 1000 && !::testing::Test::HasFailure(); ++i) {
        Lines old(random() % 60);
        for (std::size_t line = 0; line < old.size(); ++line) {
            old[line] = std::to_string(line);
        }
        Lines now = old;
        for (int change = 0; change < i % 6 && !now.empty(); ++change) {
            const auto at = now.begin() + static_cast<std::ptrdiff_t>(random() % now.size());
            if (random() % 2 == 0) {
                now.erase(at);
            } else {
                now.insert(at, "new " + std::to_string(change));
            }
        }
        expect_frame_diff(old, now, false);
    }
}

TEST(UnifiedDiff, OfFarTooManyChangesTakesAllOutAndPutsAllIn) {
    // More than four million pairs of lines are not compared.
    const Lines old(2001, "a");
    Lines now(2000, "b");
    now.insert(now.begin() + 1000, "a");
    OpenSet set;
    set.frame = loaded(old);
    replace_lines(set.frame, now);
    set.frame_changed = true;
    const std::vector<Hunk> hunks = hunks_of(frame_diff(set, "set.asm"));
    EXPECT_EQ(applied(old, hunks).size(), 2002U);
    EXPECT_EQ(changed_lines(hunks), 4003U) << "the line that both have is not looked for";
    Lines shorter = part(now, 0, 1998);
    EXPECT_EQ(shorter[1000], "a");
    expect_frame_diff(part(old, 0, 2000), shorter, false);
    replace_lines(set.frame, shorter);
    const std::vector<Hunk> compared = hunks_of(frame_diff(set, "set.asm"));
    EXPECT_EQ(changed_lines(compared), 2001U + 1998 + 1 - 2);
}

TEST(UnifiedDiff, OfTheModelShowsCommentsAndGeneratedLines) {
    std::mt19937 random(13);
    for (int i = 0; i < 500 && !::testing::Test::HasFailure(); ++i) {
        Lines old(1 + random() % 40);
        for (std::size_t line = 0; line < old.size(); ++line) {
            old[line] = std::to_string(line);
        }
        OpenSet set;
        set.model = loaded(old);
        Lines now;
        for (std::size_t line = 1; line <= old.size(); ++line) {
            if (random() % 10 == 0) {
                set.replacements.push_back({line, {"new " + std::to_string(line), "more"}});
                now.insert(now.end(), {"new " + std::to_string(line), "more"});
            }
            if (random() % 10 == 0) {
                set.model.comment_out(line);
                now.push_back("; " + old[line - 1]);
            } else {
                now.push_back(old[line - 1]);
            }
        }
        expect_diff(old, now, model_diff(set, "set.asm"), false);
    }
}

// The bytes that `patch --binary` makes of the old ones: a line is what ends with LF.
std::string patched(const std::string& old, const std::string& diff) {
    std::istringstream old_lines(old);
    std::istringstream lines(diff);
    std::string result;
    std::string line;
    const auto copy_old = [&](std::size_t count) {
        for (std::string text; count > 0 && std::getline(old_lines, text); --count) {
            result += text + (old_lines.eof() ? "" : "\n");
        }
    };
    std::size_t taken = 0; // of the old lines
    while (std::getline(lines, line)) {
        Hunk hunk;
        if (line.starts_with("--- ") || line.starts_with("+++ ")) {
            continue;
        }
        if (std::sscanf(line.c_str(), "@@ -%zu,%zu +%zu,%zu @@", &hunk.old_start, &hunk.old_count,
                        &hunk.new_start, &hunk.new_count) == 4) {
            const std::size_t begin = begin_of(hunk.old_start, hunk.old_count);
            copy_old(begin - taken);
            taken = begin;
        } else if (line[0] == '\\') {
            EXPECT_EQ(line, "\\ No newline at end of file");
        } else if (line[0] == '+') {
            result += line.substr(1) + "\n";
        } else {
            std::string text;
            EXPECT_TRUE(std::getline(old_lines, text));
            EXPECT_EQ(text, line.substr(1));
            result += line[0] == ' ' ? text + "\n" : "";
            ++taken;
        }
    }
    copy_old(old.size());
    return result;
}

std::string random_bytes(std::mt19937& random) {
    static constexpr std::array<const char*, 5> pieces{"a", "b", "\r\n", "\n", "\r"};
    std::string bytes;
    for (std::size_t i = random() % 30; i > 0; --i) {
        bytes += pieces.at(random() % (random() % 2 == 0 ? 3 : 5));
    }
    return bytes;
}

TEST(UnifiedDiff, OfFilesWithAnyLineEndsMakesTheSavedFile) {
    std::mt19937 random(14);
    for (int i = 0; i < 3000 && !::testing::Test::HasFailure(); ++i) {
        const std::string old = random_bytes(random);
        OpenSet set;
        set.model = store_of(old);
        set.frame = store_of(old);
        set.frame_changed = true;
        std::string saved_model;
        std::string saved_frame;
        for (std::size_t line = 1; line <= set.model.upper(); ++line) {
            if (random() % 8 == 0) {
                set.replacements.push_back({line, {"new"}});
                saved_model += "new\r\n";
            }
            if (line <= set.model.count() && random() % 8 == 0) {
                set.model.comment_out(line);
                set.frame.set_line(line, "other");
            }
            saved_model += std::string(set.model.line(line)) + "\r\n";
            saved_frame += std::string(set.frame.line(line)) + "\r\n";
        }
        const std::string model = model_diff(set, "set.asm");
        EXPECT_EQ(patched(old, model), saved_model) << model;
        const std::string frame = frame_diff(set, "set.asm");
        EXPECT_EQ(patched(old, frame), saved_frame) << frame;
    }
}

} // namespace
} // namespace morvane::test
