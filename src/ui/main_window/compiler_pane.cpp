// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window/compiler_pane.h"

#include "base/errors.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "ui/qt_text.h"

#include <QFontDatabase>
#include <QLabel>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr int output_look_every_ms = 200;

QString escaped(std::string_view bytes) {
    return shown_text(bytes).toHtmlEscaped();
}

QString linked_line(std::string_view line, const CompilerPlace& place, std::size_t number) {
    return escaped(line.substr(0, place.begin)) + QStringLiteral("<a href=\"#%1\">").arg(number) +
           escaped(line.substr(place.begin, place.length)) + QStringLiteral("</a>") +
           escaped(line.substr(place.begin + place.length));
}

QString as_html(std::string_view output, const std::vector<CompilerPlace>& places) {
    QString html = QStringLiteral("<pre>");
    std::size_t next = 0;
    for (std::size_t number = 1; !output.empty(); ++number) {
        const std::size_t end = std::min(output.find('\n'), output.size());
        std::string_view line = output.substr(0, end);
        line = line.substr(0, line.find_last_not_of('\r') + 1);
        const bool linked = next < places.size() && places[next].line_of_output == number;
        html +=
            (linked ? linked_line(line, places[next], next) : escaped(line)) + QLatin1Char('\n');
        next += linked ? 1 : 0;
        output.remove_prefix(std::min(end + 1, output.size()));
    }
    return html + QStringLiteral("</pre>");
}

} // namespace

CompilerPane::CompilerPane(Disk& disk, QWidget* parent)
    : QWidget(parent), disk_(disk), text_(new QTextBrowser(this)), status_(new QLabel(this)),
      timer_(new QTimer(this)) {
    text_->setObjectName(QStringLiteral("compilerText"));
    text_->setAccessibleName(tr("Output of the compiler"));
    text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text_->setLineWrapMode(QTextEdit::NoWrap);
    text_->setPlaceholderText(tr("Nothing has been compiled since the program began."));
    text_->setOpenLinks(false);
    text_->setTabChangesFocus(true);
    status_->setObjectName(QStringLiteral("compilerStatus"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text_);
    layout->addWidget(status_);
    timer_->setInterval(output_look_every_ms);
    connect(timer_, &QTimer::timeout, this, &CompilerPane::look);
    connect(text_, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& link) { choose(link.fragment().toInt()); });
}

CompilerPane::~CompilerPane() = default;

void CompilerPane::follow(const std::string& path, const std::string& folder,
                          std::unique_ptr<RunningProgram> program) {
    path_ = path;
    folder_ = folder;
    program_ = std::move(program);
    status_->setText(tr("The compiler is running."));
    timer_->start();
    look();
}

void CompilerPane::look() {
    const auto ended = program_->exit_status(); // asked first, so that nothing is missed at the end
    read_again();
    if (ended) {
        timer_->stop();
        status_->setText(*ended == 0 ? tr("The compiler has finished.")
                                     : tr("The compiler has ended with status %1.").arg(*ended));
    }
}

void CompilerPane::read_again() {
    try {
        const FileBytes bytes = read_bytes(disk_, path_);
        if (bytes.view() == shown_ && !shown_.empty()) {
            return;
        }
        shown_ = bytes.view();
        places_ = compiler_places(shown_);
        text_->setHtml(as_html(shown_, places_));
        text_->verticalScrollBar()->setValue(text_->verticalScrollBar()->maximum());
    } catch (const RuntimeError& error) {
        shown_.clear();
        text_->setPlainText(shown_text(std::string(error.description()) + ": " + path_));
    }
}

void CompilerPane::choose(int place) {
    const auto index = static_cast<std::size_t>(place);
    if (place >= 0 && index < places_.size()) {
        Q_EMIT place_chosen(shown_text(compiled_file(folder_, places_[index].file)),
                            places_[index].line);
    }
}

} // namespace morvane
