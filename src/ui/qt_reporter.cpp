// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt_reporter.h"

#include "base/errors.h"
#include "ui/dialogs/dialogs.h"
#include "ui/models/message_log.h"
#include "ui/qt_text.h"

#include <new>
#include <utility>

namespace morvane {

namespace {

constexpr qsizetype max_explaining_notes = 5;

} // namespace

QtReporter::QtReporter(MessageLog& log, Dialogs& dialogs, QWidget* parent, Progress progress)
    : log_(log), dialogs_(dialogs), parent_(parent), progress_(std::move(progress)) {}

bool QtReporter::begin_command() {
    if (running_) {
        return false;
    }
    running_ = true;
    notes_.clear();
    unwanted_.clear();
    return true;
}

void QtReporter::add_message(std::string_view text) {
    log_.add(shown_text(text));
    if (on_message) {
        on_message(shown_text(text));
    }
}

void QtReporter::note(const Note& note) {
    notes_.append(shown_text(place_and_text(note)));
    Reporter::note(note);
}

void QtReporter::clear_messages() {
    log_.clear();
}

QString QtReporter::explanation(Icon icon) {
    const QStringList notes = std::exchange(notes_, {});
    if (icon == Icon::Information) {
        return {};
    }
    QString text = notes.mid(0, max_explaining_notes).join(QLatin1Char('\n'));
    if (const qsizetype more = notes.size() - max_explaining_notes; more > 0) {
        text += QStringLiteral("\n") +
                QObject::tr("... and %1 more under Messages.").arg(static_cast<qlonglong>(more));
    }
    return text;
}

void QtReporter::message_box(std::string_view text, Icon icon) {
    dialogs_.show_box(parent_, shown_text(text), icon, explanation(icon));
}

void QtReporter::repeated_box(std::string_view text, Icon icon) {
    const QString shown = shown_text(text);
    if (!unwanted_.contains(shown) && dialogs_.show_repeated_box(parent_, shown, icon)) {
        unwanted_.append(shown);
    }
}

bool QtReporter::ask(std::string_view text, Icon icon, std::string_view title) {
    return dialogs_.ask(parent_, shown_text(text), icon, shown_text(title));
}

bool QtReporter::progress(std::string_view what, std::size_t done, std::size_t total) {
    return !progress_ || progress_(what, done, total);
}

void report_failure(QtReporter& reporter) {
    try {
        throw;
    } catch (const RuntimeError& error) {
        report_error(reporter, error, "Error : ", " :", Icon::Critical);
    } catch (const std::bad_alloc&) {
        reporter.message_box("There is not enough memory for this command.", Icon::Critical);
    } catch (const std::exception& error) {
        reporter.message_box(std::string("The command has failed: ") + error.what(),
                             Icon::Critical);
    } catch (...) {
        reporter.message_box("The command has failed for an unknown reason.", Icon::Critical);
    }
}

void run_command(QtReporter& reporter, const std::function<void()>& command) {
    const bool outermost = reporter.begin_command();
    try {
        command();
    } catch (...) {
        report_failure(reporter);
    }
    if (outermost) {
        reporter.end_command();
    }
}

} // namespace morvane
