// The main window's commands around the open set: choose, open, select, save, leave.

#include "base/paths.h"
#include "objects/save.h"
#include "source/chosen_file.h"
#include "source/open_source_set.h"
#include "source/source_set.h"
#include "ui/dialogs/dialogs.h"
#include "ui/hourglass.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/qt_text.h"
#include "ui/widgets/file_drop.h"
#include "ui/widgets/platform_color.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QMimeData>

#include <utility>

namespace morvane {

namespace {

QString base_of_dropped(const QMimeData& data) {
    return data.urls().size() == 1
               ? QDir::toNativeSeparators(base_of_file(data.urls().front().toLocalFile()))
               : QString();
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

void MainWindow::open_file(const QString& path) {
    const QLatin1String recipe(".toml");
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
    const std::string base = path_bytes(ui_->input_base.text());
    const bool opened = open_source_set(services(), set_, base);
    if (opened) {
        state_.add_recent(ui_->input_base.text());
        show_recent();
    }
    if (opened || !set_.opened) { // else the files are missing and the set that was open stays
        show_opened_set();
    }
    return opened;
}

void MainWindow::show_opened_set() {
    made_.clear();
    unsaved_work_ = 0;
    materials_.show_set(set_);
    for (int column = 0; column < materials_.columnCount(); ++column) {
        ui_->materials.resizeColumnToContents(column);
    }
    show_counters();
    ui_->open_step.set_done(set_.opened);
    for (StepMarker* marker :
         {&ui_->select_step, &ui_->define_step, &ui_->process_step, &ui_->save_step}) {
        marker->set_done(false);
    }
    show_selection();
    update_title();
}

std::size_t MainWindow::selected_row() const {
    const QModelIndexList rows = ui_->materials.selectionModel()->selectedRows();
    return rows.isEmpty() ? 0 : static_cast<std::size_t>(rows.front().row()) + 1;
}

void MainWindow::show_selection() {
    const std::size_t row = selected_row();
    if (row == 0) {
        ui_->highlight_color.set_color({});
        ui_->own_color.set_color({});
        ui_->processed_mark.hide();
        return;
    }
    const Translation& material = set_.translation(row);
    ui_->highlight_color.set_color(platform_color(material.highlight).value_or(QColor()));
    ui_->own_color.set_color(rgb_color(material.color));
    ui_->processed_mark.setVisible(!material.processed.empty());
    ui_->select_step.set_done(true);
    update_par_line();
}

void MainWindow::save() {
    const Hourglass hourglass;
    if (may_replace_files() && save_set(services(), set_, output_base()).saved) {
        unsaved_work_ = 0;
        ui_->save_step.set_done(true);
    }
}

// The output box follows the input box, where the path of another set may be waiting to be opened.
bool MainWindow::may_replace_files() {
    if (set_.saved || set_.replacements.empty()) {
        return true; // nothing will be written
    }
    std::vector<std::pair<std::string, std::string>> files{
        {model_file_name(output_base()), model_file_name(set_.base)}};
    if (set_.frame_changed) {
        files.emplace_back(frame_file_name(output_base()), frame_file_name(set_.base));
    }
    for (const auto& [output, opened] : files) {
        if (desk_.disk.is_file(output) && !is_same_file(desk_.disk, output, opened)) {
            return reporter_.ask(output + " is not the set that is open. Replace it?",
                                 Icon::Exclamation, {});
        }
    }
    return true;
}

bool MainWindow::has_unsaved_work() const {
    return set_.opened && unsaved_work_ > 0;
}

bool MainWindow::may_leave_set() {
    if (!has_unsaved_work()) {
        return true;
    }
    const QString question =
        set_.saved
            ? tr("Materials have been processed since this set was saved. That work cannot be "
                 "saved: Restore and Open have to come before it. Discard it?")
            : tr("Materials of this set have been processed but not saved. Save them now?");
    switch (desk_.dialogs.ask_unsaved(this, question, !set_.saved)) {
    case Unsaved::Save:
        save();
        return set_.saved;
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
    const QString opened = shown_text(set_.base);
    QString text = typed.isEmpty() ? tr("No source set is open.") : tr("Not open: %1").arg(typed);
    if (set_.opened) {
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
    ui_->menuRecent->setEnabled(!ui_->menuRecent->isEmpty());
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!base_of_dropped(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    run([&] { open_base(base_of_dropped(*event->mimeData())); });
}

} // namespace morvane
