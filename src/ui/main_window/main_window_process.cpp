// SPDX-License-Identifier: GPL-3.0-or-later

// The main window's commands on materials: their parameters, and Process.

#include "base/text.h"
#include "objects/block_checks.h"
#include "objects/parameter_checks.h"
#include "source/materials.h"
#include "ui/dialogs/effects_dialog.h"
#include "ui/dialogs/library_dialog.h"
#include "ui/dialogs/lights_dialog.h"
#include "ui/dialogs/windsock_dialog.h"
#include "ui/hourglass.h"
#include "ui/library_browser/library_browser.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/main_window/scene_presenter.h"
#include "ui/qt_text.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace morvane {

void MainWindow::show_parameters() {
    edited_ = document_.document().parameters();
    switch (kind()) {
    case Kind::Lights: {
        auto* dialog = new LightsDialog(edited_.lights, this);
        connect(dialog, &QDialog::accepted, this, [this] {
            parameters_set_ = true;
            ui_->define_step.set_done(true);
        });
        preview(dialog, &LightsDialog::edited, &Parameters::lights);
        show_dialog(dialog);
        break;
    }
    case Kind::Effects: {
        auto* dialog = new EffectsDialog(edited_.effects, effects_, desk_.dialogs, this);
        preview(dialog, &EffectsDialog::edited, &Parameters::effects);
        show_dialog(dialog);
        break;
    }
    case Kind::Windsock: {
        auto* dialog = new WindsockDialog(edited_.windsock, desk_.dialogs, this);
        preview(dialog, &WindsockDialog::edited, &Parameters::windsock);
        show_dialog(dialog);
        break;
    }
    case Kind::Library:
    case Kind::LibraryNew:
        show_library_dialog();
        break;
    }
}

// While a dialog is open the picture shows what its controls say.
template <typename Dialog, typename Edited, typename Part>
void MainWindow::preview(Dialog* dialog, Edited edited, Part Parameters::*part) {
    connect(dialog, edited, this, [this, part](const Part& shown) {
        Parameters parameters = document_.document().parameters();
        parameters.*part = shown;
        picture_->preview(parameters);
    });
    connect(dialog, &QDialog::finished, this, [this] { picture_->preview(std::nullopt); });
}

// The dialog is modal to this window only, so that the library browser can be used beside it.
void MainWindow::show_dialog(QDialog* dialog) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this] {
        run([this] {
            document_.document().set_parameters(edited_);
            update_par_line();
            for (const Note& note : parameter_notes(kind(), edited_)) {
                reporter_.note(note);
            }
        });
    });
    dialog->open();
}

void MainWindow::show_library_dialog() {
    auto* dialog = new LibraryDialog(edited_.library, this);
    connect(dialog, &LibraryDialog::library_tool_wanted, this, [this, dialog] {
        connect(&tools_.show_library_browser(), &LibraryBrowser::identifier_copied, dialog,
                &LibraryDialog::take_identifier, Qt::UniqueConnection);
    });
    connect(dialog, &LibraryDialog::search_results_wanted, this,
            [this] { run([this] { show_search_results(); }); });
    preview(dialog, &LibraryDialog::edited, &Parameters::library);
    if (LibraryBrowser* browser = tools_.library_browser()) {
        connect(browser, &LibraryBrowser::identifier_copied, dialog,
                &LibraryDialog::take_identifier);
    }
    show_dialog(dialog);
}

void MainWindow::process() {
    const Hourglass hourglass;
    const std::vector<std::size_t> rows = selected_rows();
    if (rows.size() > 1) {
        process_rows(rows);
        return;
    }
    const std::size_t row = rows.empty() ? 0 : rows.front();
    if (may_process(row)) {
        document_.document().process(row, kind());
        note_late_work();
    }
}

// Of several selected materials those that are processed already are no mistake.
void MainWindow::process_rows(const std::vector<std::size_t>& rows) {
    std::vector<std::size_t> left;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(left),
                 [this](std::size_t row) { return set().translation(row).processed.empty(); });
    std::size_t done = rows.size() - left.size();
    std::size_t asked = done;
    done += document_.document().process(left, kind(), [&](std::size_t row) {
        return reporter_.progress("Processing", asked++, rows.size()) && may_process(row);
    });
    reporter_.note({"processed " + to_text(done) + " of the " + to_text(rows.size()) +
                    " materials selected."});
    note_late_work();
}

bool MainWindow::may_process(std::size_t row) {
    if (row == 0 || !set().translation(row).processed.empty()) {
        return true; // which is refused with its own box
    }
    const Translation& material = set().translation(row);
    if (check_block(set(), material).state != BlockState::Rewritten) {
        return true;
    }
    return reporter_.ask("The block of " + row_and_number(material) +
                             " shows that it has been rewritten before. Process it all the same?",
                         Icon::Exclamation, {});
}

void MainWindow::note_late_work() {
    if (document_.was_saved() && document_.has_unsaved_work() && !late_work_noted_) {
        late_work_noted_ = true;
        reporter_.note({"this set has been saved already: what is processed now cannot be saved "
                        "before Restore and Open, and those drop it."});
    }
}

} // namespace morvane
