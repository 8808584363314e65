// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"

#include <QDialog>

#include <memory>
#include <string>
#include <vector>

namespace morvane {

class Dialogs;

/// "Effect properties": edits a copy of the effect parameters and hands it back on O.K.
class EffectsDialog : public QDialog {
    Q_OBJECT

  public:
    /// `effects` are the names offered.
    EffectsDialog(EffectParameters& parameters, const std::vector<std::string>& effects,
                  Dialogs& dialogs, QWidget* parent = nullptr);
    ~EffectsDialog() override;

    void accept() override;

  Q_SIGNALS:
    /// What the controls say has changed, and can be used.
    void edited(const morvane::EffectParameters& parameters);

  private:
    struct Controls;

    EffectParameters shown() const;
    void load();

    std::unique_ptr<Controls> ui_;
    EffectParameters& parameters_;
    Dialogs& dialogs_;
};

} // namespace morvane
