// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/text_viewer.h"

#include "base/errors.h"
#include "base/paths.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "ui/qt_text.h"

#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>
#include <QVBoxLayout>

#include <utility>

namespace morvane {

namespace {

constexpr int look_every_ms = 200;

QPlainTextEdit* make_text(QWidget* parent) {
    auto* text = new QPlainTextEdit(parent);
    text->setObjectName(QStringLiteral("viewerText"));
    text->setAccessibleName(TextViewer::tr("Text"));
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setTabChangesFocus(true);
    return text;
}

} // namespace

TextViewer::TextViewer(Desk& desk, WindowState& state)
    : ToolForm(desk, state), text_(make_text(this)), status_(new QLabel(this)),
      timer_(new QTimer(this)) {
    setObjectName(QStringLiteral("TextViewer"));
    status_->setObjectName(QStringLiteral("viewerStatus"));
    status_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text_);
    layout->addWidget(status_);
    resize(720, 480);
    timer_->setInterval(look_every_ms);
    connect(timer_, &QTimer::timeout, this, &TextViewer::look);
}

TextViewer::~TextViewer() = default;

void TextViewer::show_file(const std::string& path) {
    timer_->stop();
    program_.reset();
    path_ = path;
    setWindowTitle(shown_text(file_name_part(path)));
    text_->clear();
    status_->setText(shown_text(path));
    read_again();
    bring_up();
}

void TextViewer::follow(const std::string& path, std::unique_ptr<RunningProgram> program) {
    show_file(path);
    program_ = std::move(program);
    status_->setText(tr("The compiler is running."));
    timer_->start();
    look();
}

void TextViewer::go_to(std::size_t line) {
    const QTextBlock block = text_->document()->findBlockByNumber(static_cast<int>(line) - 1);
    QTextCursor cursor(block);
    cursor.select(QTextCursor::LineUnderCursor);
    text_->setTextCursor(cursor);
    text_->centerCursor();
}

void TextViewer::read_again() {
    try {
        const QString now = shown_text(read_bytes(desk_.disk, path_).view());
        if (now != text_->toPlainText()) {
            text_->setPlainText(now);
        }
    } catch (const RuntimeError& error) {
        text_->clear();
        status_->setText(shown_text(std::string(error.description()) + ": " + path_));
    }
}

void TextViewer::look() {
    const auto ended = program_->exit_status(); // asked first, so that nothing is missed at the end
    read_again();
    text_->verticalScrollBar()->setValue(text_->verticalScrollBar()->maximum());
    if (ended) {
        timer_->stop();
        status_->setText(*ended == 0 ? tr("The compiler has finished.")
                                     : tr("The compiler has ended with status %1.").arg(*ended));
    }
}

} // namespace morvane
