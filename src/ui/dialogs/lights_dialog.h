// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"

#include <QDialog>

#include <memory>

namespace morvane {

/// "Light Properties": edits a copy of the light parameters and hands it back on O.K.
class LightsDialog : public QDialog {
    Q_OBJECT

  public:
    explicit LightsDialog(LightParameters& parameters, QWidget* parent = nullptr);
    ~LightsDialog() override;

    void accept() override;

  Q_SIGNALS:
    /// What the controls say has changed.
    void edited(const morvane::LightParameters& parameters);

  private:
    struct Controls;

    LightParameters shown() const;
    void fill_lists();
    void load();
    void connect_controls();

    std::unique_ptr<Controls> ui_;
    LightParameters& parameters_;
};

} // namespace morvane
