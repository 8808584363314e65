#pragma once

#include "objects/parameters.h"

#include <QDialog>

#include <memory>

namespace morvane {

namespace Ui {
class frmLibrary;
}

/// "Library Placer": edits a copy of the library parameters and hands it back on O.K.
class frmLibrary : public QDialog {
    Q_OBJECT

  public:
    explicit frmLibrary(LibraryParameters& parameters, QWidget* parent = nullptr);
    ~frmLibrary() override;

    /// Puts an identifier into the field, for the library browser.
    void take_identifier(const QString& identifier);
    void accept() override;

  Q_SIGNALS:
    void library_tool_wanted();
    void search_results_wanted();

  private:
    std::unique_ptr<Ui::frmLibrary> ui_;
    LibraryParameters& parameters_;
};

} // namespace morvane
