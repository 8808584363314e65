#pragma once

#include "ui/desk.h"

#include <QWidget>

namespace morvane {

class WindowState;

/// What the forms of the tools have in common: they keep their place on the screen, are told when
/// the user comes to them, and are hidden, not destroyed, when they are closed.
class ToolForm : public QWidget {
    Q_OBJECT

  public:
    ToolForm(Desk& desk, WindowState& state);

    /// Shows the form, in front and active.
    void bring_up();

  protected:
    /// The user came here from another form.
    virtual void activated() {}
    /// Whether the form can be closed now.
    virtual bool may_close() { return true; }
    /// The form closes: settings are written here.
    virtual void leaving() {}

    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    Desk& desk_;

  private:
    WindowState& state_;
    bool placed_ = false;
};

} // namespace morvane
