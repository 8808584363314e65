// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>
#include <QStringList>

namespace morvane {

class MessageLog;

/// Shows the message log, newest message on top. Messages that come in quick succession are put in
/// together when the window next draws itself, so that their number costs nothing.
class MessageView : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit MessageView(QWidget* parent = nullptr);

    void show_log(const MessageLog& log);

  private:
    void take(const QString& text);
    void put_in();

    QStringList waiting_; // oldest first
};

} // namespace morvane
