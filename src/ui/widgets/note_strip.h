// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>
#include <QStringList>

class QLabel;

namespace morvane {

/// What a form's last command had to say, at the foot of the form. Hidden while that is nothing.
class NoteStrip : public QFrame {
    Q_OBJECT

  public:
    explicit NoteStrip(QWidget* parent = nullptr);

    void add(const QString& text);
    void clear();
    QString text() const;

  private:
    QLabel* label_;
    QStringList lines_;
};

} // namespace morvane
