#include "base/reporter.h"

#include "base/errors.h"

namespace morvane {

std::string place_and_text(const Note& note) {
    if (note.path.empty()) {
        return note.text;
    }
    const std::string line = note.line == 0 ? "" : ":" + std::to_string(note.line);
    return note.path + line + ": " + note.text;
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
