// The main window's commands on one material: its parameters, and Process.

#include "objects/process.h"
#include "ui/form1.h"
#include "ui/frm_effects.h"
#include "ui/frm_library.h"
#include "ui/frm_lights.h"
#include "ui/frm_windsock.h"
#include "ui/hourglass.h"
#include "ui/lib_view.h"
#include "ui/qt_text.h"
#include "ui/ui_form1.h"

namespace morvane {

void Form1::show_parameters() {
    switch (kind()) {
    case Kind::Lights: {
        auto* dialog = new frmLights(parameters_.lights, this);
        connect(dialog, &QDialog::accepted, this, [this] { ui_->Label9->set_done(true); });
        show_dialog(dialog);
        break;
    }
    case Kind::Effects:
        show_dialog(new frmEffects(parameters_.effects, effects_, desk_.dialogs, this));
        break;
    case Kind::Windsock:
        show_dialog(new frmWindsock(parameters_.windsock, desk_.dialogs, this));
        break;
    case Kind::Library:
    case Kind::LibraryNew:
        show_library_dialog();
        break;
    }
}

// The dialog is modal to this window only, so that the library browser can be used beside it.
void Form1::show_dialog(QDialog* dialog) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, &Form1::update_par_line);
    dialog->open();
}

void Form1::show_library_dialog() {
    auto* dialog = new frmLibrary(parameters_.library, this);
    connect(dialog, &frmLibrary::library_tool_wanted, this, [this, dialog] {
        connect(&tools_.show_library(), &LibView::identifier_copied, dialog,
                &frmLibrary::take_identifier, Qt::UniqueConnection);
    });
    connect(dialog, &frmLibrary::search_results_wanted, this, &Form1::show_search_results);
    if (LibView* browser = tools_.library()) {
        connect(browser, &LibView::identifier_copied, dialog, &frmLibrary::take_identifier);
    }
    show_dialog(dialog);
}

void Form1::process() {
    const Hourglass hourglass;
    const std::size_t row = selected_row();
    if (process_material(services(), set_, row, kind(), parameters_, desk_.program_folder)
            .processed) {
        made_.push_back({row, kind(), parameters_});
        show_processed(row);
    }
}

void Form1::show_processed(std::size_t row) {
    materials_.show_processed(static_cast<int>(row) - 1,
                              shown_text(set_.translation(row).processed));
    ui_->lstMat2proc->resizeColumnToContents(MaterialModel::Processed);
    ui_->Label16->setVisible(row == selected_row());
    show_counters();
    const bool all_done = set_.unprocessed() == 0;
    ui_->Label10->set_done(all_done);
    if (all_done) {
        ui_->Label9->set_done(true);
    }
}

void Form1::show_counters() {
    const bool usable = set_.opened;
    ui_->Text1->setText(QString::number(usable ? set_.translations.size() : 0));
    ui_->Text2->setText(QString::number(usable ? set_.unprocessed() : 0));
}

void Form1::select_next_unprocessed() {
    const std::size_t count = set_.opened ? set_.translations.size() : 0;
    for (std::size_t step = 1; step <= count; ++step) {
        const std::size_t row = (selected_row() + step - 1) % count + 1;
        if (set_.translation(row).processed.empty()) {
            ui_->lstMat2proc->setCurrentIndex(materials_.index(static_cast<int>(row) - 1, 0));
            return;
        }
    }
}

} // namespace morvane
