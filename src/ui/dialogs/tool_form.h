// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/services.h"
#include "ui/desk.h"
#include "ui/qt_reporter.h"

#include <QWidget>

#include <functional>

namespace morvane {

class NoteStrip;
class WindowState;

/// What the forms of the tools have in common: they keep their place on the screen, are told when
/// the user comes to them, and are hidden, not destroyed, when they are closed.
class ToolForm : public QWidget {
    Q_OBJECT

  public:
    ToolForm(Desk& desk, WindowState& state, QtReporter::Progress progress = {});

    /// Shows the form, in front and active.
    void bring_up();
    /// Whether the program, and with it the form, may end.
    virtual bool may_end() { return true; }

  protected:
    /// The user came here from another form.
    virtual void activated() {}
    /// Whether the form can be closed now.
    virtual bool may_close() { return true; }
    /// The form closes: settings are written here.
    virtual void leaving() {}

    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    /// Every command of a form runs by way of this: nothing that it throws gets past it, and what
    /// it reports is shown in the form.
    void run(const std::function<void()>& command);
    /// Gives the form a strip at its foot that shows what its commands report.
    void show_reports_below();
    Services services() { return {desk_.disk, reporter_}; }

    Desk& desk_;
    QtReporter reporter_;

    WindowState& state_;

  private:
    NoteStrip* notes_ = nullptr;
    bool placed_ = false;
};

} // namespace morvane
