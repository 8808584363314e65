// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <vector>

namespace morvane {

/// The message log of the program.
class MessageLog : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    void add(const QString& text);
    void clear();
    /// All messages, newest first.
    QStringList texts() const;

  Q_SIGNALS:
    void added(const QString& text);
    void cleared();

  private:
    std::vector<QString> messages_; // oldest first
};

} // namespace morvane
