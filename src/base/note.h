// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

namespace morvane {

enum class Severity { Note, Warning, Error };

/// A hint of the program's own, about a place in a file where there is one.
struct Note {
    std::string text;
    std::string path{};   // empty: about no file
    std::size_t line = 0; // from 1; 0: about the whole file
    Severity severity = Severity::Note;
    std::string code{};     // names the check that found it, e.g. "flash-mask"; empty: none did
    std::size_t column = 0; // in characters, from 1; 0: about the whole line

    bool operator==(const Note&) const = default;
};

/// Returns "PATH:LINE:COLUMN: TEXT", without the parts that the note does not have.
std::string place_and_text(const Note& note);

} // namespace morvane
