#pragma once

#include "objects/parameters.h"

#include <QDialog>

#include <memory>
#include <string>
#include <vector>

namespace morvane {

class Dialogs;

namespace Ui {
class frmEffects;
}

/// "Effect properties": edits a copy of the effect parameters and hands it back on O.K.
class frmEffects : public QDialog {
    Q_OBJECT

  public:
    /// `effects` are the names offered.
    frmEffects(EffectParameters& parameters, const std::vector<std::string>& effects,
               Dialogs& dialogs, QWidget* parent = nullptr);
    ~frmEffects() override;

    void accept() override;

  private:
    void load();

    std::unique_ptr<Ui::frmEffects> ui_;
    EffectParameters& parameters_;
    Dialogs& dialogs_;
};

} // namespace morvane
