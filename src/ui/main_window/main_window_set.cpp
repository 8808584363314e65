// SPDX-License-Identifier: GPL-3.0-or-later

// The main window's commands around the open set: choose, open, save, leave.

#include "base/paths.h"
#include "source/opened_file.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "ui/dialogs/dialogs.h"
#include "ui/hourglass.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/qt_text.h"
#include "ui/widgets/file_drop.h"

#include <QDir>

#include <utility>

namespace morvane {

namespace {

bool is_set(Disk& disk, const std::string& base) {
    return disk.is_file(model_file_name(base)) && disk.is_file(frame_file_name(base));
}

// A base path that was typed or browsed with the ending of the model file. A path that names a set
// as it stands is taken so.
QString understood_base(Disk& disk, const QString& typed) {
    if (disk.is_file(model_file_name(path_bytes(typed)))) {
        return typed;
    }
    for (const QString& ending : {QStringLiteral("_0.asm"), QStringLiteral("_0")}) {
        if (!typed.endsWith(ending, Qt::CaseInsensitive)) {
            continue;
        }
        QString base = typed.chopped(ending.size());
        if (is_set(disk, path_bytes(base))) {
            return base;
        }
    }
    return typed;
}

} // namespace

void MainWindow::browse() {
    const QString folder = shown_text(folder_part(path_bytes(ui_->input_base.text())));
    const QString chosen = desk_.dialogs.open_file(this, tr("Choose the source set"), folder,
                                                   dialog_filter(shown_text(source_file_filter)));
    if (const auto base = base_of_chosen_file(path_bytes(chosen))) {
        ui_->input_base.setText(shown_text(*base));
    }
}

// What is given at the start is relative to the folder that the program was started in.
void MainWindow::open_file(const QString& given) {
    const QLatin1String recipe(".toml");
    const QString path = QDir::isAbsolutePath(given)
                             ? given
                             : QDir::toNativeSeparators(QDir().absoluteFilePath(given));
    if (path.endsWith(recipe, Qt::CaseInsensitive)) {
        if (open_base(path.chopped(recipe.size()))) {
            apply_recipe_file(path);
        }
        return;
    }
    const QString base = base_of_file(path);
    open_base(base.isEmpty() ? path : base);
}

bool MainWindow::open_base(const QString& base) {
    ui_->input_base.setText(base);
    return open_set();
}

bool MainWindow::open_set() {
    if (!may_leave_set()) {
        return false;
    }
    const Hourglass hourglass;
    const QString typed = ui_->input_base.text();
    const QString understood = understood_base(desk_.disk, typed);
    if (understood != typed) {
        ui_->input_base.setText(understood);
    }
    if (!document_.document().open(path_bytes(understood))) {
        return false;
    }
    state_.add_recent(understood);
    ui_->materials.setFocus();
    return true;
}

void MainWindow::show_opened_set() {
    noted_rows_.clear();
    parameters_set_ = false;
    late_work_noted_ = false;
    if (!document_.is_reloading()) {
        ui_->materialFilter->clear();
    }
    materials_.show_set(set());
    fit_columns();
    for (StepMarker* marker :
         {&ui_->select_step, &ui_->define_step, &ui_->process_step, &ui_->save_step}) {
        marker->set_done(false);
    }
    ui_->open_step.set_done(set().opened);
    show_counters();
    show_selection();
    update_title();
}

void MainWindow::save() {
    if (compile_after_save_->isChecked() && document_.has_unsaved_work() &&
        !document_.was_saved()) {
        back_up_and_compile_on_save();
        return;
    }
    const Hourglass hourglass;
    if (may_replace_files()) {
        document_.document().save(output_base());
    }
}

// The output box follows the input box, where the path of another set may be waiting to be opened.
bool MainWindow::may_replace_files() {
    if (set().saved || set().replacements.empty()) {
        return true; // nothing will be written
    }
    std::vector<std::pair<std::string, std::string>> files{
        {model_file_name(output_base()), model_file_name(set().base)}};
    if (set().frame_changed) {
        files.emplace_back(frame_file_name(output_base()), frame_file_name(set().base));
    }
    for (const auto& [output, opened] : files) {
        if (desk_.disk.is_file(output) && !is_same_file(desk_.disk, output, opened)) {
            return reporter_.ask(output + " is not the set that is open. Replace it?",
                                 Icon::Exclamation, {});
        }
    }
    return true;
}

bool MainWindow::may_leave_set() {
    if (!document_.has_unsaved_work()) {
        return true;
    }
    const bool was_saved = document_.was_saved();
    const QString question =
        was_saved ? tr("Materials have been processed since this set was saved. That work cannot "
                       "be saved: Restore and Open have to come before it. Discard it?")
                  : tr("Materials of this set have been processed but not saved. Save them now?");
    switch (desk_.dialogs.ask_unsaved(this, question, !was_saved)) {
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

// A path is often longer than the box that it was typed into: here it can be read whole.
void MainWindow::show_status() {
    const QString typed = ui_->input_base.text();
    const QString opened = shown_text(set().base);
    QString text = typed.isEmpty() ? tr("No source set is open.") : tr("Not open: %1").arg(typed);
    if (set().opened) {
        text = typed == opened ? typed : tr("Open: %1. Not open yet: %2").arg(opened, typed);
    }
    ui_->status.setText(text);
    ui_->status.setToolTip(text);
}

// Sets whose files are gone are removed, so that nobody chooses one.
void MainWindow::show_recent() {
    ui_->menuRecent->clear();
    for (const QString& base : state_.recent()) {
        if (!desk_.disk.is_file(model_file_name(path_bytes(base)))) {
            state_.remove_recent(base);
            continue;
        }
        ui_->menuRecent->addAction(QString(base).replace(QLatin1Char('&'), QLatin1String("&&")),
                                   this, [this, base] { run([&] { open_base(base); }); });
    }
    // It stays enabled: sets that were opened meanwhile are found when it is shown.
    if (ui_->menuRecent->isEmpty()) {
        ui_->menuRecent->addAction(tr("None"))->setEnabled(false);
    }
}

} // namespace morvane
