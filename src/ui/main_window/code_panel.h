// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/material_code.h"

#include <QWidget>

class QLabel;
class QLineEdit;

namespace morvane {

class LineView;

/// The lines of a material: what was generated, or would be, and what is commented out.
class CodePanel : public QWidget {
    Q_OBJECT

  public:
    explicit CodePanel(QWidget* parent = nullptr);

    /// `what` says what the lines are, in one line.
    void show_code(MaterialCode code, const QString& what);

  private:
    void find(int by);

    MaterialCode code_;
    QLabel* what_;
    QLineEdit* wanted_;
    LineView* lines_;
};

} // namespace morvane
