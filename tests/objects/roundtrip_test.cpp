// SPDX-License-Identifier: GPL-3.0-or-later

// Nothing is ever lost: from what Save wrote, the loaded file can be had back by taking the
// generated lines out and the comment marks off, and nothing else has changed.

#include "objects/block_checks.h"
#include "objects/process.h"
#include "objects/random_set.h"
#include "objects/save.h"
#include "source/open_source_set.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gtest/gtest.h>

#include <string>
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

class Roundtrip {
  public:
    explicit Roundtrip(unsigned seed) : random_(seed), base_(folder_.file("set")) {
        folder_.write("set_0.asm", crlf(random_.model()));
        folder_.write("set.asm", crlf(random_.frame()));
    }

    void process_and_save() {
        ASSERT_TRUE(open_source_set(services_, set_, base_));
        ASSERT_EQ(set_.translations.size(), random_.marked());
        for (std::size_t row = 1; row <= random_.marked(); ++row) {
            if (row == 1 || random_.chance(70)) {
                const Kind kind = pick_kind(random_, row);
                ASSERT_TRUE(process_material(services_, set_, row, kind, pick_parameters(random_))
                                .processed);
            }
        }
        ASSERT_TRUE(save_set(services_, set_, base_).saved);
        saved_ = LineStore(lines_of("set_0.asm"));
    }

    void expect_loaded_file_back() {
        std::size_t at = 1; // in the saved file
        for (std::size_t line = 1; line <= random_.model().size(); ++line) {
            skip_generated(line, at);
            const std::string mark = is_rewritten(line) ? "; " : "";
            ASSERT_EQ(saved_.line(at), mark + random_.model()[line - 1]) << "line " << line;
            ++at;
        }
        skip_generated(random_.model().size() + 1, at);
        ASSERT_EQ(saved_.line(at), "") << "the empty line that every save adds";
        EXPECT_EQ(at, saved_.count());
    }

    // Opened again, the set shows exactly the rows that were processed as rewritten.
    void expect_rewritten_rows() {
        OpenSet again;
        open_source_set(services_, again, base_); // may refuse it, but reads it first
        ASSERT_EQ(again.translations.size(), random_.marked());
        for (std::size_t row = 1; row <= random_.marked(); ++row) {
            EXPECT_EQ(check_block(again, again.translation(row)).state == BlockState::Rewritten,
                      !set_.translation(row).processed.empty())
                << "row " << row;
        }
    }

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
    RandomSet random_;
    std::string base_;
    std::unique_ptr<Disk> disk_ = make_system_disk();
    RecordingReporter reporter_;
    Services services_{*disk_, reporter_};
    OpenSet set_;
    LineStore saved_;
};

TEST(Roundtrip, SavedFileHoldsEveryLineOfTheLoadedOne) {
    for (unsigned seed = 1; seed <= sets; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Roundtrip roundtrip(seed);
        ASSERT_NO_FATAL_FAILURE(roundtrip.process_and_save());
        ASSERT_NO_FATAL_FAILURE(roundtrip.expect_loaded_file_back());
        ASSERT_NO_FATAL_FAILURE(roundtrip.expect_rewritten_rows());
    }
}

} // namespace
} // namespace morvane::test
