#pragma once

#include "objects/parameters.h"

#include <QDialog>

#include <memory>

namespace morvane {

namespace Ui {
class frmLights;
}

/// "Light Properties": edits a copy of the light parameters and hands it back on O.K.
class frmLights : public QDialog {
    Q_OBJECT

  public:
    explicit frmLights(LightParameters& parameters, QWidget* parent = nullptr);
    ~frmLights() override;

    void accept() override;

  private:
    void fill_lists();
    void load();
    void connect_controls();

    std::unique_ptr<Ui::frmLights> ui_;
    LightParameters& parameters_;
};

} // namespace morvane
