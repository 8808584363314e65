// SPDX-License-Identifier: GPL-3.0-or-later

// Nothing is ever lost: from what Save wrote, the loaded file can be had back by taking the
// generated lines out and the comment marks off, and nothing else has changed.

#include "objects/block_checks.h"
#include "objects/process.h"
#include "objects/random_set.h"
#include "objects/save.h"
#include "source/open_set.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace morvane::test {
namespace {

constexpr unsigned sets = 100; // each is brought to the medium, which takes its time

Kind pick_kind(RandomSet& random, std::size_t row) {
    // A material without triangles gives windsocks and new-style library calls no code at all,
    // which Save refuses.
    const bool empty = random.triangles(row) == 0;
    const Kind kind = all_kinds.at(static_cast<std::size_t>(random.pick(0, 4)));
    return empty && (kind == Kind::Windsock || kind == Kind::LibraryNew) ? Kind::Lights : kind;
}

Parameters pick_parameters(RandomSet& random) {
    Parameters parameters;
    parameters.lights.DayFlag = random.chance(50);
    parameters.lights.AircraftFlag = random.chance(50);
    parameters.effects.lstEffectType = "fx_a";
    parameters.effects.fx_OTG = random.chance(50);
    parameters.library.lib_OTG = random.chance(50);
    return parameters;
}

RandomSet::Shape pick_shape(unsigned seed) {
    if (seed % 4 == 0) {
        return RandomSet::Shape::WithoutEnd;
    }
    return seed % 10 == 1 ? RandomSet::Shape::WithoutPlace : RandomSet::Shape::Whole;
}

bool begins(const std::string& line, const std::string& prefix) {
    return line.compare(std::min(line.find_first_not_of(' '), line.size()), prefix.size(),
                        prefix) == 0;
}

class Roundtrip {
  public:
    explicit Roundtrip(unsigned seed)
        : shape_(pick_shape(seed)), random_(seed, shape_), base_(folder_.file("set")) {
        folder_.write("set_0.asm", crlf(random_.model()));
        folder_.write("set.asm", crlf(random_.frame()));
    }

    // Not always the first row, so that some of the saved sets can be opened again.
    void process_and_save() {
        ASSERT_TRUE(open_source_set(services_, set_, base_));
        ASSERT_EQ(set_.translations.size(), random_.marked());
        expected_ = lines_of("set_0.asm");
        for (std::size_t row = 1; row <= random_.marked(); ++row) {
            if (row == random_.marked() || random_.chance(70)) {
                ASSERT_NO_FATAL_FAILURE(process(row, pick_kind(random_, row)));
            }
        }
        if (set_.replacements.empty()) { // all were refused
            ASSERT_NO_FATAL_FAILURE(process(random_.marked(), Kind::Lights));
        }
        ASSERT_TRUE(save_set(services_, set_, base_).saved);
        saved_ = LineStore(lines_of("set_0.asm"));
    }

    void expect_loaded_file_back() {
        std::size_t at = 1; // in the saved file
        for (std::size_t line = 1; line <= expected_.size(); ++line) {
            skip_generated(line, at);
            ASSERT_EQ(saved_.line(at), expected_[line - 1]) << "line " << line;
            ++at;
        }
        skip_generated(expected_.size() + 1, at);
        ASSERT_EQ(saved_.line(at), "") << "the empty line that every save adds";
        EXPECT_EQ(at, saved_.count());
    }

    // What is commented out is the block as the generator made it, and nothing else.
    void expect_blocks_commented_out() const {
        for (std::size_t line = 1; line <= random_.model().size(); ++line) {
            const std::string mark = is_rewritten(line) ? "; " : "";
            ASSERT_EQ(expected_[line - 1], mark + random_.model()[line - 1]) << "line " << line;
        }
    }

    // Opened again, the set shows exactly the rows that were processed as rewritten. Whether it can
    // be opened depends on the first row.
    void reopen() {
        OpenSet again;
        reopened_ = open_source_set(services_, again, base_);
        ASSERT_EQ(again.translations.size(), random_.marked());
        for (std::size_t row = 1; row <= random_.marked(); ++row) {
            EXPECT_EQ(check_block(again, again.translation(row)).state == BlockState::Rewritten,
                      !set_.translation(row).processed.empty())
                << "row " << row;
        }
        set_ = std::move(again);
    }

    // Rewritten rows are taken a second time, as the window does when it is told to: still no line
    // is lost.
    void process_all_again() {
        expected_ = lines_of("set_0.asm");
        for (std::size_t row = 1; row <= random_.marked(); ++row) {
            ASSERT_NO_FATAL_FAILURE(
                process(row, Kind::Lights)); // which gives code without triangles
        }
        ASSERT_TRUE(save_set(services_, set_, base_).saved);
        saved_ = LineStore(lines_of("set_0.asm"));
    }

    bool is_reopened() const { return reopened_; }

  private:
    std::vector<std::string> lines_of(const char* name) const {
        std::vector<std::string> lines;
        const std::string bytes = folder_.read(name);
        for (std::size_t at = 0; at < bytes.size();) {
            const std::size_t end = bytes.find("\r\n", at);
            lines.push_back(bytes.substr(at, end - at));
            at = end + 2;
        }
        return lines;
    }

    // The block's first line, the triangles after it, and the line that ends them.
    std::vector<std::string> with_block_commented_out(std::size_t row) const {
        std::vector<std::string> lines = expected_;
        std::size_t at = set_.translation(row).block.selecting_line; // of the first line, from 0
        lines.at(at) = "; " + lines.at(at);
        for (++at; at < lines.size() && begins(lines[at], "DRAW_TRI "); ++at) {
            lines[at] = "; " + lines[at];
        }
        if (at < lines.size()) {
            lines[at] = "; " + lines[at];
        }
        return lines;
    }

    // Processes a row, and sees that it is refused, without a change, exactly where it has to be.
    void process(std::size_t row, Kind kind) {
        const std::vector<std::string> lines = with_block_commented_out(row);
        const bool has_end = std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return begins(line, "BGL_END");
        });
        const bool is_placed = kind == Kind::Effects || kind == Kind::Library;
        const bool has_place =
            shape_ != RandomSet::Shape::WithoutPlace || random_.triangles(row) == 0;
        const LineStore before = set_.model;
        const std::size_t replacements = set_.replacements.size();
        const bool processed =
            process_material(services_, set_, row, kind, pick_parameters(random_)).processed;
        ASSERT_EQ(processed, !is_placed || (has_end && has_place)) << "row " << row;
        if (processed) {
            expected_ = lines;
            return;
        }
        ASSERT_EQ(set_.replacements.size(), replacements);
        for (std::size_t line = 1; line <= before.upper(); ++line) {
            ASSERT_EQ(set_.model.line(line), before.line(line));
        }
    }

    bool is_rewritten(std::size_t line) const {
        for (std::size_t row = 1; row <= random_.marked(); ++row) {
            if (!set_.translation(row).processed.empty() && random_.in_block(row, line)) {
                return true;
            }
        }
        return false;
    }

    void skip_generated(std::size_t line, std::size_t& at) const {
        for (const Replacement* replacement : ordered_replacements(set_)) {
            if (replacement->before_line == line) {
                for (const std::string& code : replacement->code) {
                    ASSERT_EQ(saved_.line(at), code);
                    ++at;
                }
            }
        }
    }

    TempFolder folder_;
    RandomSet::Shape shape_;
    RandomSet random_;
    std::string base_;
    std::unique_ptr<Disk> disk_ = make_system_disk();
    RecordingReporter reporter_;
    Services services_{*disk_, reporter_};
    OpenSet set_;
    std::vector<std::string> expected_; // the model's lines, without the generated ones
    LineStore saved_;
    bool reopened_ = false;
};

TEST(Roundtrip, SavedFileHoldsEveryLineOfTheLoadedOne) {
    std::size_t again = 0;
    for (unsigned seed = 1; seed <= sets; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Roundtrip roundtrip(seed);
        ASSERT_NO_FATAL_FAILURE(roundtrip.process_and_save());
        ASSERT_NO_FATAL_FAILURE(roundtrip.expect_blocks_commented_out());
        ASSERT_NO_FATAL_FAILURE(roundtrip.expect_loaded_file_back());
        ASSERT_NO_FATAL_FAILURE(roundtrip.reopen());
        if (roundtrip.is_reopened()) {
            ++again;
            ASSERT_NO_FATAL_FAILURE(roundtrip.process_all_again());
            ASSERT_NO_FATAL_FAILURE(roundtrip.expect_loaded_file_back());
        }
    }
    EXPECT_GE(again, sets / 10) << "sets that were rewritten already";
}

} // namespace
} // namespace morvane::test
