// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QToolBar>

class QLabel;
class QMainWindow;
class QPushButton;

namespace morvane {

/// The bar that says that the open set was exported again. It is part of its window only while it
/// has something to say, so that no layout that is kept knows of it.
class ExportBar : public QToolBar {
    Q_OBJECT

  public:
    explicit ExportBar(QMainWindow& window);

    /// Says a text; with `choice` also offers to apply the user's assignments or to keep them.
    void say(const QString& text, bool choice);
    void leave();

  Q_SIGNALS:
    void apply_chosen();
    void keep_chosen();

  private:
    QMainWindow& window_;
    QLabel* text_;
    QPushButton* apply_;
    QPushButton* keep_;
};

} // namespace morvane
