// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"
#include "source/open_set.h"
#include "system/services.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// The frame store and the dictionary as they were before they were changed.
class FrameChange {
  public:
    explicit FrameChange(const OpenSet& set);
    /// Exchanges what the set holds for what was remembered, like Change.
    void exchange(OpenSet& set);
    /// Memory that is held, in bytes; an estimate.
    std::size_t bytes() const;

  private:
    LineStore lines_;
    std::vector<DictionaryRow> dictionary_;
    bool frame_changed_;
};

/// What one Process changed in a set, kept so that it can be undone and redone. It takes the memory
/// of what was changed, not of the set.
class Change {
  public:
    /// Remembers a material and `lines` lines of its block before they are changed.
    Change(const OpenSet& set, const Translation& material, std::size_t lines);
    /// Remembers the frame store and the dictionary before they are changed. The frame's lines
    /// change at most once in a set, with its first aircraft lights.
    void keep_frame(const OpenSet& set);

    /// Exchanges what the set holds for what was remembered: undoes the change, and redoes it when
    /// called again. Several changes of a set must be undone from the last to the first.
    void exchange(OpenSet& set);

    std::size_t row() const { return row_; }
    /// How many lines of the block were changed, from its opening line on.
    std::size_t lines() const { return block_.count(); }
    /// Memory that is held beside the set, in bytes; an estimate.
    std::size_t bytes() const;

  private:
    std::size_t row_;
    LineStore::KeptLines block_;
    std::string processed_;
    std::size_t given_up_;
    std::size_t bgl_end_;
    std::size_t replacements_;               // how many the set had before
    std::optional<Replacement> replacement_; // while the change is undone
    std::optional<FrameChange> frame_;
    bool frame_changed_;
};

struct ProcessResult {
    bool processed = false;
    std::size_t lines = 0; // what the log calls "Lines of new code"
    /// What was changed. There is one too when a flat triangle ended the material's Process after
    /// lines had been commented out.
    std::optional<Change> change{};
};

/// The Process command: turns one marked material (row 1 .. n of the list; 0 when none is
/// selected) into objects of a kind, files the code for Save, and keeps the light-states entry of
/// the dictionary for aircraft lights. What will not compile or not work in the code is noted.
///
/// Not processed, after a message box: no selection, processed before, no BGL_END line for effects
/// and library calls, or a run-time error; the set is then exactly as it was. Nor after a flat
/// windsock triangle: the lines before it stay commented out, and the next Process of the material
/// takes them as they were.
///
/// `trace_folder`: where the trace files are written; none when it is empty.
ProcessResult process_material(const Services& services, OpenSet& set, std::size_t row, Kind kind,
                               const Parameters& parameters,
                               const std::optional<std::string>& trace_folder = {});

/// The label that ends the code of effects or library calls is the same for every material. Gives
/// the label that the last processed material (a row of the list) has ended with its row's number,
/// as in SKIP_FX7, when an earlier material has ended with the same one: a source with a label
/// twice does not assemble.
void number_repeated_label(OpenSet& set, std::size_t row);

} // namespace morvane
