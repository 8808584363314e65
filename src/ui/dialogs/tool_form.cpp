// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/tool_form.h"

#include "ui/access_letters.h"
#include "ui/widgets/note_strip.h"
#include "ui/window_state.h"

#include <QCloseEvent>
#include <QLayout>

#include <utility>

namespace morvane {

ToolForm::ToolForm(Desk& desk, WindowState& state, QtReporter::Progress progress)
    : desk_(desk), reporter_(desk.log, desk.dialogs, this, std::move(progress)), state_(state) {}

void ToolForm::run(const std::function<void()>& command) {
    if (notes_ != nullptr) {
        notes_->clear();
    }
    run_command(reporter_, command);
}

void ToolForm::show_reports_below() {
    notes_ = new NoteStrip(this);
    layout()->addWidget(notes_);
    reporter_.on_message = [this](const QString& text) { notes_->add(text); };
}

void ToolForm::bring_up() {
    if (!placed_) {
        give_access_letters(*this);
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
        run_command(reporter_, [this] { activated(); });
    }
}

void ToolForm::closeEvent(QCloseEvent* event) {
    if (!may_close()) {
        event->ignore();
        return;
    }
    run_command(reporter_, [this] {
        leaving();
        state_.keep(*this);
    });
    desk_.activation.forget(*this);
    event->accept();
}

} // namespace morvane
