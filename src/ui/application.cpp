// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/application.h"

#include "ui/dialogs/dialogs.h"
#include "ui/models/message_log.h"
#include "ui/qt_reporter.h"

#include <utility>

namespace morvane {

namespace {

void show_failure() {
    MessageLog log;
    SystemDialogs dialogs;
    QtReporter reporter(log, dialogs, QApplication::activeWindow());
    report_failure(reporter);
}

} // namespace

Application::Application(int& argc, char** argv)
    : QApplication(argc, argv), report_(show_failure) {}

void Application::report_failures_by(std::function<void()> report) {
    report_ = report ? std::move(report) : show_failure;
}

// Commands report what they throw by themselves. This catches what is thrown beside them: in the
// handlers of dialogs, in slots that are called later, while something is painted.
bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        report_failure();
        return false;
    }
}

// The box has an event loop of its own. What fails in there, most likely the same again, must not
// bring up box after box.
void Application::report_failure() {
    if (reporting_) {
        return;
    }
    reporting_ = true;
    try {
        report_();
    } catch (...) {
        // There is no way left to say anything.
    }
    reporting_ = false;
}

} // namespace morvane
