// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

namespace morvane {

/// An edit field for an effect's time constraints. A double click restores the default.
class TimeConstraintEdit : public QLineEdit {
    Q_OBJECT

  public:
    using QLineEdit::QLineEdit;

  protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
};

} // namespace morvane
