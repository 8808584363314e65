// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/reporter.h"

#include "base/errors.h"

namespace morvane {

std::string place_and_text(const Note& note) {
    if (note.path.empty()) {
        return note.text;
    }
    std::string place = note.path;
    for (const std::size_t number : {note.line, note.column}) {
        if (number != 0) {
            place += ":" + std::to_string(number);
        }
    }
    return place + ": " + note.text;
}

void Reporter::note(const Note& note) {
    add_message("Note: " + place_and_text(note));
}

void report_error(Reporter& reporter, const RuntimeError& error, std::string_view before,
                  std::string_view between, Icon icon) {
    if (!error.about().empty() || error.line() != 0) {
        const std::string about = error.about().empty() ? "" : ": " + error.about();
        reporter.note({error.description() + about, error.path(), error.line()});
    }
    reporter.message_box(std::string(before) + std::to_string(error.number()) +
                             std::string(between) + error.description(),
                         icon);
}

} // namespace morvane
