// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/note.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace morvane::scene {

/// What could not be drawn of a file. The same trouble in many places is one note, which names the
/// first place and how many there are: a damaged file of a million triangles stays readable.
class Problems {
  public:
    /// `text` is what is wrong, e.g. "a triangle names a vertex that is not there"; `line` of the
    /// file, 0 where there is none.
    void add(const std::string& text, std::size_t line);
    std::vector<Note> notes(const std::string& path) const;

  private:
    struct Trouble {
        std::string text;
        std::size_t line = 0; // of the first
        std::size_t count = 0;
    };
    std::vector<Trouble> troubles_;
};

} // namespace morvane::scene
