// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// A line of a file to come.
struct ComingLine {
    std::string_view text;
    std::size_t opened = 0; // the same line in the set's store, from 1; 0: generated
};

/// A file of a set as Save would write it now, by line number. No line is copied: the set must
/// outlive it. Once the set has changed the file is out of date: its lines are then those of
/// neither state, and some cannot be had.
class ComingFile {
  public:
    /// The model file with the generated code in its place. Before anything is processed, and so
    /// before anything can be saved, it is the opened one.
    static ComingFile model(const OpenSet& set);
    static ComingFile frame(const OpenSet& set);

    /// Lines from one file or from one material's code that follow each other.
    struct Stretch {
        std::size_t first = 1; // its first line in the file to come
        std::size_t count = 0;
        std::size_t opened = 0;      // its first line in the store; 0: it is generated
        std::size_t replacement = 0; // position of its code in the set, where it is generated
    };

    std::size_t count() const;
    /// Line 1 .. count(). Throws SubscriptOutOfRange elsewhere, and for a line that the set has no
    /// more.
    ComingLine line(std::size_t number) const;
    /// Where a line of the store will be.
    std::size_t number_of(std::size_t opened) const;
    const std::vector<Stretch>& stretches() const { return stretches_; }

  private:
    ComingFile(const OpenSet& set, const LineStore& store) : set_(&set), store_(&store) {}
    void add_opened(std::size_t first, std::size_t end);
    void add_code(const Replacement& replacement);

    const OpenSet* set_;
    const LineStore* store_;
    std::vector<Stretch> stretches_; // none is empty
};

} // namespace morvane
