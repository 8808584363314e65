// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"

#include <QDialog>

#include <memory>

namespace morvane {

/// "Library Placer": edits a copy of the library parameters and hands it back on O.K.
class LibraryDialog : public QDialog {
    Q_OBJECT

  public:
    explicit LibraryDialog(LibraryParameters& parameters, QWidget* parent = nullptr);
    ~LibraryDialog() override;

    /// Puts an identifier into the field, for the library browser.
    void take_identifier(const QString& identifier);
    /// The same for an object with its scale, in the form that the fields take.
    void take_object(const QString& identifier, const QString& scale);
    void accept() override;

  Q_SIGNALS:
    /// What the controls say has changed.
    void edited(const morvane::LibraryParameters& parameters);
    void library_tool_wanted();
    void search_results_wanted();

  private:
    struct Controls;

    LibraryParameters shown() const;

    std::unique_ptr<Controls> ui_;
    LibraryParameters& parameters_;
};

} // namespace morvane
