#pragma once

#include "objects/parameters.h"

#include <QDialog>

#include <memory>

namespace morvane {

class Dialogs;

namespace Ui {
class frmWindsock;
}

/// "Windsock Properties": edits a copy of the windsock parameters and hands it back on O.K.
class frmWindsock : public QDialog {
    Q_OBJECT

  public:
    frmWindsock(WindsockParameters& parameters, Dialogs& dialogs, QWidget* parent = nullptr);
    ~frmWindsock() override;

    void accept() override;

  private:
    void show_color(const QString& text);

    std::unique_ptr<Ui::frmWindsock> ui_;
    WindsockParameters& parameters_;
    Dialogs& dialogs_;
};

} // namespace morvane
