// The main window's commands on one material: its parameters, and Process.

#include "objects/process.h"
#include "ui/dialogs/effects_dialog.h"
#include "ui/dialogs/library_dialog.h"
#include "ui/dialogs/lights_dialog.h"
#include "ui/dialogs/windsock_dialog.h"
#include "ui/hourglass.h"
#include "ui/library_browser/library_browser.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/qt_text.h"

namespace morvane {

void MainWindow::show_parameters() {
    switch (kind()) {
    case Kind::Lights: {
        auto* dialog = new LightsDialog(parameters_.lights, this);
        connect(dialog, &QDialog::accepted, this, [this] { ui_->define_step.set_done(true); });
        show_dialog(dialog);
        break;
    }
    case Kind::Effects:
        show_dialog(new EffectsDialog(parameters_.effects, effects_, desk_.dialogs, this));
        break;
    case Kind::Windsock:
        show_dialog(new WindsockDialog(parameters_.windsock, desk_.dialogs, this));
        break;
    case Kind::Library:
    case Kind::LibraryNew:
        show_library_dialog();
        break;
    }
}

// The dialog is modal to this window only, so that the library browser can be used beside it.
void MainWindow::show_dialog(QDialog* dialog) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, &MainWindow::update_par_line);
    dialog->open();
}

void MainWindow::show_library_dialog() {
    auto* dialog = new LibraryDialog(parameters_.library, this);
    connect(dialog, &LibraryDialog::library_tool_wanted, this, [this, dialog] {
        connect(&tools_.show_library_browser(), &LibraryBrowser::identifier_copied, dialog,
                &LibraryDialog::take_identifier, Qt::UniqueConnection);
    });
    connect(dialog, &LibraryDialog::search_results_wanted, this, &MainWindow::show_search_results);
    if (LibraryBrowser* browser = tools_.library_browser()) {
        connect(browser, &LibraryBrowser::identifier_copied, dialog,
                &LibraryDialog::take_identifier);
    }
    show_dialog(dialog);
}

void MainWindow::process() {
    const Hourglass hourglass;
    const std::size_t row = selected_row();
    if (process_material(services(), set_, row, kind(), parameters_, desk_.program_folder)
            .processed) {
        made_.push_back({row, kind(), parameters_});
        count_work(row);
    }
}

void MainWindow::count_work(std::size_t row) {
    if (++unsaved_work_ == 1 && set_.saved) {
        reporter_.note({"this set has been saved already, so this work cannot be saved: it is lost "
                        "with Restore and Open, which have to come first."});
    }
    show_processed(row);
}

void MainWindow::show_processed(std::size_t row) {
    materials_.show_processed(static_cast<int>(row) - 1,
                              shown_text(set_.translation(row).processed));
    ui_->materials.resizeColumnToContents(MaterialModel::Processed);
    ui_->processed_mark.setVisible(row == selected_row());
    show_counters();
    const bool all_done = set_.unprocessed() == 0;
    ui_->process_step.set_done(all_done);
    if (all_done) {
        ui_->define_step.set_done(true);
    }
}

void MainWindow::show_counters() {
    const bool usable = set_.opened;
    ui_->total.setText(QString::number(usable ? set_.translations.size() : 0));
    ui_->unprocessed.setText(QString::number(usable ? set_.unprocessed() : 0));
}

void MainWindow::select_next_unprocessed() {
    const std::size_t count = set_.opened ? set_.translations.size() : 0;
    for (std::size_t step = 1; step <= count; ++step) {
        const std::size_t row = (selected_row() + step - 1) % count + 1;
        if (set_.translation(row).processed.empty()) {
            ui_->materials.setCurrentIndex(materials_.index(static_cast<int>(row) - 1, 0));
            return;
        }
    }
}

} // namespace morvane
