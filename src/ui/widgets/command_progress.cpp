// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/command_progress.h"

#include "ui/qt_text.h"

#include <QProgressDialog>

namespace morvane {

namespace {

constexpr qint64 patience_ms = 500;
constexpr qint64 repaint_every_ms = 50;

} // namespace

CommandProgress::CommandProgress(QWidget& window) : window_(window) {}

CommandProgress::~CommandProgress() = default;

bool CommandProgress::show(std::string_view what, std::size_t done, std::size_t total) {
    if (!running_.isValid()) {
        running_.start();
    }
    if (running_.elapsed() < patience_ms ||
        (painted_.isValid() && painted_.elapsed() < repaint_every_ms)) {
        return true;
    }
    painted_.start();
    if (!dialog_) {
        dialog_ = std::make_unique<QProgressDialog>(&window_);
        dialog_->setObjectName(QStringLiteral("commandProgress"));
        dialog_->setWindowModality(Qt::ApplicationModal); // the other forms have to wait too
        dialog_->setWindowTitle(QStringLiteral("Morvane"));
        dialog_->setMinimumDuration(0);
        dialog_->setMinimumWidth(360);
        dialog_->setAutoClose(false);
        dialog_->setAutoReset(false);
    }
    dialog_->setLabelText(shown_text(what));
    dialog_->setMaximum(static_cast<int>(total));
    dialog_->setValue(static_cast<int>(done)); // handles waiting events, a click on Cancel too
    return !dialog_->wasCanceled();
}

void CommandProgress::finish() {
    dialog_.reset();
    running_.invalidate();
    painted_.invalidate();
}

} // namespace morvane
