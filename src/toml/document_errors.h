// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// A position in a text: line and column from 1, the column in characters.
struct Place {
    std::size_t line = 1;
    std::size_t column = 1;
};

/// Whether the byte is a control character other than a tab, which no text of a document may hold.
bool is_control(char byte);

/// Collects what is wrong in a document, to be told in the order of its lines.
class DocumentErrors {
  public:
    DocumentErrors(std::string file, std::string_view text);

    void add(Place place, std::string message);
    bool empty() const { return found_.empty(); }
    /// Each error as "FILE:LINE:COLUMN: message", the line itself, and a caret under the place,
    /// separated by "\n". Only the first 50, and then how many more there are.
    std::vector<std::string> texts() const;
    /// The same errors as their messages with their places.
    std::vector<Note> problems() const;

  private:
    struct Found {
        Place place;
        std::string message;
    };

    std::string render(const Found& found) const;
    std::vector<Found> in_order() const;

    std::string file_;
    std::vector<std::string_view> lines_;
    std::vector<Found> found_;
};

/// The lines of a document, without their ends.
std::vector<std::string_view> document_lines(std::string_view text);

/// Line and column of a byte of the text.
Place place_of(std::string_view text, std::size_t offset);

/// The byte at which a place is. The mark that some editors put in front of UTF-8 text is no
/// character of the first line.
std::size_t byte_of(std::string_view text, Place place);

} // namespace morvane
