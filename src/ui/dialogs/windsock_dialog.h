// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"

#include <QDialog>

#include <memory>

namespace morvane {

class Dialogs;

/// "Windsock Properties": edits a copy of the windsock parameters and hands it back on O.K.
class WindsockDialog : public QDialog {
    Q_OBJECT

  public:
    WindsockDialog(WindsockParameters& parameters, Dialogs& dialogs, QWidget* parent = nullptr);
    ~WindsockDialog() override;

    void accept() override;

  Q_SIGNALS:
    /// What the controls say has changed, and can be used.
    void edited(const morvane::WindsockParameters& parameters);

  private:
    struct Controls;

    WindsockParameters shown() const;
    void show_color(const QString& text);

    std::unique_ptr<Controls> ui_;
    WindsockParameters& parameters_;
    Dialogs& dialogs_;
};

} // namespace morvane
