// SPDX-License-Identifier: GPL-3.0-or-later

// The main window's arrangement: the steps on the left, a picture in the middle, panels as docks.

#include "ui/main_window/controls.h"
#include "ui/main_window/export_bar.h"
#include "ui/main_window/main_window.h"
#include "ui/qt_text.h"

#include <QDockWidget>
#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>

namespace morvane {

namespace {

constexpr int least_steps_width = 440;
constexpr int max_steps_width_without_picture = 520;
constexpr int panels_height = 190;

} // namespace

void MainWindow::prepare_docks() {
    setDockNestingEnabled(true);
    setCorner(Qt::TopLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    ui_->stepsDock->setTitleBarWidget(new QWidget(ui_->stepsDock)); // none: the steps always stay
    const int bar = ui_->stepsScroll->verticalScrollBar()->sizeHint().width();
    ui_->stepsScroll->setMinimumWidth(ui_->stepsPane->minimumSizeHint().width() + bar);
    ui_->stepsScroll->setMaximumWidth(max_steps_width_without_picture);
    centralWidget()->hide();
    add_view_action(*ui_->messagesDock);
    statusBar()->addWidget(&ui_->status, 1);
    statusBar()->addPermanentWidget(&ui_->version);
}

void MainWindow::add_view_action(QDockWidget& dock) {
    ui_->menuView->insertAction(ui_->actionResetLayout, dock.toggleViewAction());
}

void MainWindow::set_picture(QWidget& picture) {
    centralWidget()->layout()->addWidget(&picture);
    centralWidget()->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    centralWidget()->show();
    ui_->stepsScroll->setMaximumWidth(QWIDGETSIZE_MAX);
    QList<QDockWidget*> panels = findChildren<QDockWidget*>();
    panels.removeOne(ui_->stepsDock);
    for (QDockWidget* panel : panels) {
        removeDockWidget(panel); // all of them first: a group of tabs would keep its room
    }
    for (QDockWidget* panel : panels) {
        addDockWidget(Qt::BottomDockWidgetArea, panel);
        if (panel != ui_->messagesDock) {
            tabifyDockWidget(ui_->messagesDock, panel);
        }
        panel->show();
    }
    ui_->messagesDock->raise();
}

QDockWidget& MainWindow::add_panel(QWidget& content, const QString& name, const QString& title) {
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(name);
    dock->setWidget(&content);
    addDockWidget(dockWidgetArea(ui_->messagesDock), dock);
    tabifyDockWidget(ui_->messagesDock, dock);
    ui_->messagesDock->raise();
    add_view_action(*dock);
    return *dock;
}

// Docks have no sizes before the window is shown. The arrangement is kept as a whole, so it has to
// be complete when it is put back.
void MainWindow::restore_layout() {
    give_first_sizes();
    first_layout_ = saveState(layout_version);
    restoreState(state_.bytes(layout_key()), layout_version);
    ui_->stepsDock->show();
}

// Beside a bar that scrolls downwards, nothing has to be scrolled sideways.
int MainWindow::steps_width() const {
    return ui_->stepsPane->minimumSizeHint().width() + 2 * ui_->stepsScroll->frameWidth() +
           ui_->stepsScroll->verticalScrollBar()->sizeHint().width();
}

void MainWindow::give_first_sizes() {
    layout()->activate();
    resizeDocks({ui_->stepsDock}, {std::max(least_steps_width, steps_width())}, Qt::Horizontal);
    resizeDocks({ui_->messagesDock}, {panels_height}, Qt::Vertical);
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (first_layout_.isEmpty()) {
        restore_layout();
    }
}

// A layout that was kept says nothing about panels that have come since.
QString MainWindow::layout_key() const {
    QStringList names;
    for (const QDockWidget* dock : findChildren<QDockWidget*>()) {
        names.append(dock->objectName());
    }
    names.sort();
    return QStringLiteral("Form1/layout-") + names.join(QLatin1Char('-'));
}

void MainWindow::keep_layout() {
    export_bar_->leave(); // what it says is over then
    state_.keep(*this);
    keep_picture();
    state_.set_bytes(layout_key(), saveState(layout_version));
    if (columns_kept_) {
        state_.keep(*ui_->materials.header(), QStringLiteral("Form1/lstMat2proc"));
    }
}

void MainWindow::reset_layout() {
    restoreState(first_layout_, layout_version);
    give_first_sizes();
}

} // namespace morvane
