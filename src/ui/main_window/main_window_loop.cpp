// SPDX-License-Identifier: GPL-3.0-or-later

// The main window's loop of export, look, change: new exports read by themselves, and the compiler.

#include "base/paths.h"
#include "base/reporter.h"
#include "ui/dialogs/dialogs.h"
#include "ui/hourglass.h"
#include "ui/main_window/compiler_pane.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/export_bar.h"
#include "ui/main_window/main_window.h"
#include "ui/project_window/project_window.h"
#include "ui/qt_text.h"
#include "upkeep/compile.h"

#include <QApplication>
#include <QDockWidget>
#include <QGraphicsColorizeEffect>
#include <QScrollBar>
#include <QTimer>

namespace morvane {

namespace {

constexpr int export_look_every_ms = 200;

QAction* add_check(QMenu& menu, QAction* before, const QString& name, const QString& text) {
    auto* action = new QAction(text, &menu);
    action->setObjectName(name);
    action->setCheckable(true);
    menu.insertAction(before, action);
    return action;
}

} // namespace

void MainWindow::prepare_loop() {
    auto* project = new QAction(tr("Open &Project…"), this);
    project->setObjectName(QStringLiteral("actionOpenProject"));
    project->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+O")));
    ui_->menuFile->insertAction(ui_->actionSave, project);
    ui_->menuFile->insertSeparator(ui_->actionSave);
    connect(project, &QAction::triggered, this, [this] { run([this] { open_project(); }); });
    QAction* before = ui_->actionBackup;
    watch_export_ =
        add_check(*ui_->menuFile, before, QStringLiteral("actionWatchExport"), tr("&Watch Export"));
    apply_and_save_ = add_check(*ui_->menuFile, before, QStringLiteral("actionApplyAndSave"),
                                tr("&Apply and Save on Export"));
    compile_after_save_ =
        add_check(*ui_->menuFile, before, QStringLiteral("actionCompileAfterSave"),
                  tr("Compile a&fter Save"));
    ui_->menuFile->insertSeparator(before);
    unique_labels_ = add_check(*ui_->menuRecipe, nullptr, QStringLiteral("actionUniqueLabels"),
                               tr("&Unique Labels"));
    connect(unique_labels_, &QAction::toggled, this,
            [this](bool on) { document_.document().set_unique_labels(on); });
    for (QAction* kept : {watch_export_, apply_and_save_, compile_after_save_}) {
        kept->setChecked(state_.value(kept->objectName()) == QLatin1String("on"));
        connect(kept, &QAction::toggled, this, [this, kept](bool on) {
            state_.set_value(kept->objectName(), on ? QStringLiteral("on") : QString());
            follow_options();
        });
    }
    export_bar_ = new ExportBar(*this);
    connect(export_bar_, &ExportBar::apply_chosen, this, &MainWindow::apply_assignments);
    connect(export_bar_, &ExportBar::keep_chosen, this, [this] {
        live_.keep();
        show_export_state();
    });
    prepare_compiler_pane();
    connect(&document_, &DocumentModel::opened, this, [this] {
        if (!document_.is_reloading()) {
            follow_export();
        }
    });
    connect(&document_, &DocumentModel::saved, this, &MainWindow::follow_export);
    export_timer_ = new QTimer(this);
    export_timer_->setInterval(export_look_every_ms);
    connect(export_timer_, &QTimer::timeout, this, &MainWindow::look_at_export);
    follow_options();
}

void MainWindow::prepare_compiler_pane() {
    compiler_pane_ = new CompilerPane(desk_.disk, this);
    compiler_dock_ = &add_panel(*compiler_pane_, QStringLiteral("compilerDock"), tr("Compiler"));
    connect(compiler_pane_, &CompilerPane::place_chosen, this,
            [this](const QString& path, std::size_t line) {
                run([&] { tools_.show_text(path_bytes(path), line); });
            });
}

void MainWindow::follow_options() {
    live_.options.apply_and_save = apply_and_save_->isChecked();
    const bool watch = watch_export_->isChecked();
    if (watch && !live_.options.watch) {
        follow_export(); // what was exported while nobody watched is not news
    }
    live_.options.watch = watch;
    if (watch) {
        export_timer_->start();
    } else {
        export_timer_->stop();
        live_.keep();
        show_export_state();
    }
}

void MainWindow::follow_export() {
    if (set().opened) {
        live_.follow(LiveSet::Clock::now());
    }
    show_export_state();
}

// Not while a command or a dialog is at work, which may be about a material of this export.
void MainWindow::look_at_export() {
    if (reporter_.is_running() || QApplication::activeModalWidget() != nullptr) {
        return;
    }
    reload_export([this] { return live_.look(LiveSet::Clock::now(), output_base()); });
}

void MainWindow::apply_assignments() {
    reload_export([this] { return live_.apply(output_base()); });
}

// What is selected and what is in sight stay, as far as it is still there.
void MainWindow::reload_export(const std::function<LiveNews()>& command) {
    const std::vector<std::size_t> rows = selected_rows();
    const int scrolled = ui_->materials.verticalScrollBar()->value();
    LiveNews news = LiveNews::Nothing;
    run([&] { news = command(); });
    if (news == LiveNews::Reloaded) {
        select_rows(rows_after_reload(live_.rows(), rows));
        ui_->materials.verticalScrollBar()->setValue(scrolled);
        if (live_.was_saved() && compile_after_save_->isChecked()) {
            run([this] { start_compiler(); });
        }
    }
    if (news != LiveNews::Nothing || export_bar_->isVisible()) {
        show_export_state();
    }
}

void MainWindow::select_rows(const std::vector<std::size_t>& rows) {
    QItemSelection selection;
    for (const std::size_t row : rows) {
        const QModelIndex index =
            shown_materials_.mapFromSource(materials_.index(static_cast<int>(row) - 1, 0));
        selection.select(index, index);
    }
    ui_->materials.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect |
                                                           QItemSelectionModel::Rows);
}

void MainWindow::show_export_state() {
    const QString name = shown_text(file_name_part(set().base));
    const QString reason = shown_text(live_.stale_reason());
    if (live_.asks()) {
        export_bar_->say(tr("%1 was exported again. Its materials are not assigned yet.").arg(name),
                         true);
    } else if (!reason.isEmpty()) {
        export_bar_->say(tr("%1 This is the export before.").arg(reason), false);
    } else {
        export_bar_->leave();
    }
    const bool gray = !reason.isEmpty();
    if (gray != (centralWidget()->graphicsEffect() != nullptr)) {
        auto* effect = gray ? new QGraphicsColorizeEffect : nullptr;
        if (effect != nullptr) {
            effect->setColor(Qt::gray);
        }
        centralWidget()->setGraphicsEffect(effect);
    }
}

void MainWindow::back_up_and_compile_on_save() {
    const Hourglass hourglass;
    if (!may_replace_files()) {
        return;
    }
    if (!back_up_before_saving(services(), output_base())) {
        reporter_.message_box("There is no backup of " + output_base() + ", so it was not saved.",
                              Icon::Critical);
        return;
    }
    if (document_.document().save(output_base(), Boxes::NoSuccess).saved) {
        start_compiler();
    }
}

// The compiler reads the files, not what has been processed since they were saved.
void MainWindow::compile() {
    if (document_.has_unsaved_work() && !document_.was_saved()) {
        const Hourglass hourglass;
        if (!may_replace_files() ||
            !document_.document().save(output_base(), Boxes::NoSuccess).saved) {
            return;
        }
    }
    start_compiler();
}

void MainWindow::start_compiler() {
    const CompileJob job{output_base(), desk_.program_folder};
    if (auto program = start_compile(services(), desk_.programs, job)) {
        compiler_pane_->follow(compile_output_file(job), folder_part(output_base()),
                               compiler_.watch(std::move(program)));
        compiler_dock_->show();
        compiler_dock_->raise();
    }
}

void MainWindow::open_project() {
    const QString file = desk_.dialogs.open_file(this, tr("Open project"), output_folder(),
                                                 dialog_filter(QStringLiteral("Project|*.toml")));
    if (file.isEmpty()) {
        return;
    }
    ProjectWindow& window = tools_.show_project();
    window.disconnect(this);
    connect(&window, &ProjectWindow::export_chosen, this, [this](const QString& base) {
        run([&] { open_base(base); });
        raise();
        activateWindow();
    });
    window.open_project(path_bytes(file));
}

} // namespace morvane
