// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/message_view.h"

#include "ui/models/message_log.h"

#include <QScrollBar>
#include <QTextCursor>
#include <QTimer>

#include <algorithm>

namespace morvane {

MessageView::MessageView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
}

void MessageView::show_log(const MessageLog& log) {
    setPlainText(log.texts().join(QLatin1Char('\n')));
    auto* soon = new QTimer(this);
    soon->setSingleShot(true);
    connect(soon, &QTimer::timeout, this, &MessageView::put_in);
    connect(&log, &MessageLog::added, this, [this, soon](const QString& text) {
        take(text);
        soon->start(0);
    });
    connect(&log, &MessageLog::cleared, this, [this] {
        waiting_.clear();
        clear();
    });
}

void MessageView::take(const QString& text) {
    waiting_.append(text);
}

void MessageView::put_in() {
    if (waiting_.isEmpty()) {
        return;
    }
    std::reverse(waiting_.begin(), waiting_.end());
    const bool at_top = verticalScrollBar()->value() == 0;
    QTextCursor top(document());
    top.insertText(waiting_.join(QLatin1Char('\n')) +
                   (document()->isEmpty() ? QString() : QStringLiteral("\n")));
    waiting_.clear();
    if (at_top) {
        verticalScrollBar()->setValue(0);
    }
}

} // namespace morvane
