#include "ui/qt_reporter.h"

#include "ui/dialogs/dialogs.h"
#include "ui/models/message_log.h"
#include "ui/qt_text.h"

#include <utility>

namespace morvane {

QtReporter::QtReporter(MessageLog& log, Dialogs& dialogs, QWidget* parent, Progress progress)
    : log_(log), dialogs_(dialogs), parent_(parent), progress_(std::move(progress)) {}

void QtReporter::add_message(std::string_view text) {
    log_.add(shown_text(text));
}

void QtReporter::clear_messages() {
    log_.clear();
}

void QtReporter::message_box(std::string_view text, Icon icon) {
    dialogs_.show_box(parent_, shown_text(text), icon);
}

bool QtReporter::ask(std::string_view text, Icon icon, std::string_view title) {
    return dialogs_.ask(parent_, shown_text(text), icon, shown_text(title));
}

bool QtReporter::progress(std::string_view what, std::size_t done, std::size_t total) {
    return !progress_ || progress_(what, done, total);
}

} // namespace morvane
