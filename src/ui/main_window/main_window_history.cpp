// SPDX-License-Identifier: GPL-3.0-or-later

// Undo and redo in the main window, and the list of what was done.

#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/qt_text.h"

#include <QListWidget>

namespace morvane {

namespace {

void add_step(QListWidget& list, const QString& name, bool undone) {
    list.addItem(name);
    if (undone) {
        QListWidgetItem& item = *list.item(list.count() - 1);
        item.setForeground(list.palette().brush(QPalette::PlaceholderText));
        item.setToolTip(MainWindow::tr("Undone. Choose it to do everything up to it again."));
    }
}

} // namespace

// The first one is shown in the menu.
QList<QKeySequence> MainWindow::redo_keys(bool on_windows) {
    QList<QKeySequence> keys{Qt::CTRL | Qt::SHIFT | Qt::Key_Z};
    if (on_windows) {
        keys.append(Qt::CTRL | Qt::Key_Y);
    }
    return keys;
}

void MainWindow::prepare_history() {
    history_ = new QListWidget;
    history_->setObjectName(QStringLiteral("historyList"));
    history_->setAccessibleName(tr("History"));
    add_panel(*history_, QStringLiteral("historyDock"), tr("History"));
    ui_->menuEdit->setToolTipsVisible(true);
#ifdef Q_OS_WIN
    ui_->actionRedo->setShortcuts(redo_keys(true));
#else
    ui_->actionRedo->setShortcuts(redo_keys(false));
#endif
    const auto go = [this](const QListWidgetItem* item) {
        if (item == nullptr) {
            return; // the list was filled anew by the click before
        }
        const auto steps = static_cast<std::size_t>(history_->row(item));
        run([this, steps] { document_.document().go_to(steps); });
    };
    connect(history_, &QListWidget::itemActivated, this, go);
    connect(history_, &QListWidget::itemClicked, this, go);
}

void MainWindow::show_history() {
    const Document& document = document_.document();
    const QString refusal = shown_text(document.undo_refusal());
    const auto& done = document.done();
    const auto& undone = document.undone();
    const QString undo_name = done.empty() ? QString() : shown_text(done.back().name);
    const QString redo_name = undone.empty() ? QString() : shown_text(undone.back().name);
    ui_->actionUndo->setText(tr("&Undo %1").arg(undo_name).trimmed());
    ui_->actionRedo->setText(tr("&Redo %1").arg(redo_name).trimmed());
    ui_->actionUndo->setEnabled(document.can_undo());
    ui_->actionRedo->setEnabled(document.can_redo());
    for (QAction* action : {ui_->actionUndo, ui_->actionRedo}) {
        action->setToolTip(refusal.isEmpty() ? QString(action->text()).remove(QLatin1Char('&'))
                                             : refusal);
    }
    const QSignalBlocker quiet(history_);
    history_->clear();
    history_->setToolTip(refusal);
    if (!set().opened) {
        return;
    }
    for (std::size_t row = 1; row <= set().translations.size(); ++row) {
        show_made(row); // the steps say by which parameters
    }
    add_step(*history_, tr("Open"), false);
    for (const Step& step : done) {
        add_step(*history_, shown_text(step.name), false);
    }
    for (std::size_t next = undone.size(); next-- > 0;) {
        add_step(*history_, shown_text(undone[next].name), true);
    }
    history_->setCurrentRow(static_cast<int>(done.size()));
}

void MainWindow::undo() {
    document_.document().undo();
}

void MainWindow::redo() {
    document_.document().redo();
}

} // namespace morvane
