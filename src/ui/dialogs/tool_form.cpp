#include "ui/dialogs/tool_form.h"

#include "ui/window_state.h"

#include <QCloseEvent>

namespace morvane {

ToolForm::ToolForm(Desk& desk, WindowState& state) : desk_(desk), state_(state) {}

void ToolForm::bring_up() {
    if (!placed_) {
        state_.restore(*this);
        placed_ = true;
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void ToolForm::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (desk_.activation.is_activated(*this, *event)) {
        activated();
    }
}

void ToolForm::closeEvent(QCloseEvent* event) {
    if (!may_close()) {
        event->ignore();
        return;
    }
    leaving();
    state_.keep(*this);
    desk_.activation.forget(*this);
    event->accept();
}

} // namespace morvane
