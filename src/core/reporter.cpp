#include "core/reporter.h"

#include "core/errors.h"

namespace morvane {

void add_note(Reporter& reporter, std::string_view text) {
    reporter.add_message("Note: " + std::string(text));
}

void report_error(Reporter& reporter, const RuntimeError& error, std::string_view before,
                  std::string_view between, Icon icon) {
    if (!error.about().empty()) {
        add_note(reporter, std::string(error.description()) + ": " + error.about());
    }
    reporter.message_box(std::string(before) + std::to_string(error.number()) +
                             std::string(between) + error.description(),
                         icon);
}

} // namespace morvane
