// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"

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

} // namespace morvane
