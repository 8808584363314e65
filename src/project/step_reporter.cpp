// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/step_reporter.h"

namespace morvane {

void StepReporter::note(const Note& note) {
    problems.push_back({"note", note.severity, note.text, note.path, note.line, std::nullopt});
}

void StepReporter::message_box(std::string_view text, Icon icon) {
    if (icon != Icon::Information) {
        problems.push_back({"failed", Severity::Error, std::string(text), {}, 0, std::nullopt});
    }
}

bool StepReporter::ask(std::string_view text, Icon /*icon*/, std::string_view /*title*/) {
    problems.push_back(
        {"question", Severity::Warning, std::string(text) + " No.", {}, 0, std::nullopt});
    return false;
}

} // namespace morvane
