// SPDX-License-Identifier: GPL-3.0-or-later

// The main window's commands on the working files.

#include "base/paths.h"
#include "source/opened_file.h"
#include "source/source_set.h"
#include "system/results_viewer.h"
#include "ui/dialogs/dialogs.h"
#include "ui/hourglass.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/models/message_log.h"
#include "upkeep/backup.h"
#include "upkeep/compile.h"

#include <QClipboard>
#include <QGuiApplication>

namespace morvane {

namespace {

void report_copies(Reporter& reporter, const CopyResult& result) {
    for (const FileCopy& copy : result.copied) {
        reporter.note({"copied " + copy.from + " to " + copy.to});
    }
}

} // namespace

void MainWindow::backup() {
    const Hourglass hourglass;
    report_copies(reporter_, backup_source_set(services(), output_base()));
}

void MainWindow::restore_backup() {
    const Hourglass hourglass;
    const CopyResult result = restore_source_sets(services(), {output_base()});
    report_copies(reporter_, result);
    const bool is_open_set =
        set().opened &&
        is_same_file(desk_.disk, model_file_name(output_base()), model_file_name(set().base));
    if (!result.copied.empty() && is_open_set) {
        follow_export(); // what was restored is no export
        show_restored();
    }
}

// The set in memory is no longer what the files hold: every step has to be done again.
void MainWindow::show_restored() {
    for (StepMarker* marker : {&ui_->open_step, &ui_->select_step, &ui_->define_step,
                               &ui_->process_step, &ui_->save_step}) {
        marker->set_done(false);
    }
    reporter_.note({"the files of the open set were restored: press Open to read them again."});
    ui_->open.setFocus();
}

// The compiler reads the files, not what has been processed since they were saved.
bool MainWindow::may_compile() {
    if (!document_.has_unsaved_work() || document_.was_saved()) {
        return true;
    }
    switch (desk_.dialogs.ask_unsaved(this,
                                      tr("Save first? Materials of this set have been processed "
                                         "but not saved; the compiler would not see them."),
                                      true)) {
    case Unsaved::Save:
        save();
        return document_.was_saved();
    case Unsaved::Discard:
        return true;
    case Unsaved::Cancel:
        break;
    }
    return false;
}

// The button, unlike F7, asks before it saves and shows the output in the results viewer.
void MainWindow::compile_and_view() {
    if (!may_compile()) {
        return;
    }
    const CompileJob job{output_base(), desk_.program_folder};
    if (auto program = start_compile(services(), desk_.programs, job)) {
        tools_.viewer().follow(compile_output_file(job), compiler_.watch(std::move(program)));
    }
}

void MainWindow::show_search_results() {
    tools_.viewer().show_file(join_path(desk_.program_folder, "out.txt"));
}

void MainWindow::copy_messages() {
    QGuiApplication::clipboard()->setText(desk_.log.texts().join(QLatin1Char('\n')));
}

} // namespace morvane
