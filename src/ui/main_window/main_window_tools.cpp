// The main window's commands on the working files, and its ways to the other tools.

#include "base/paths.h"
#include "ui/dialogs/dialogs.h"
#include "ui/dialogs/text_viewer.h"
#include "ui/hourglass.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/models/message_log.h"
#include "ui/qt_text.h"
#include "upkeep/backup.h"
#include "upkeep/compile.h"

#include <QClipboard>
#include <QGuiApplication>

namespace morvane {

void MainWindow::connect_tools() {
    const auto opens = [this](QPushButton* button, QAction* action, auto show) {
        connect(button, &QPushButton::clicked, this, [this, show] { run(show); });
        connect(action, &QAction::triggered, this, [this, show] { run(show); });
    };
    opens(&ui_->model_modifier, ui_->actionWings, [this] { tools_.show_model_modifier(); });
    opens(&ui_->library_browser, ui_->actionLibrary, [this] { tools_.show_library_browser(); });
    opens(&ui_->label_rename, ui_->actionLabel,
          [this] { tools_.show_label_rename([this] { return ui_->input_base.text(); }); });
    opens(&ui_->library_compiler, ui_->actionLibraryCompiler,
          [this] { tools_.show_library_compiler(); });
}

void MainWindow::backup() {
    const Hourglass hourglass;
    backup_source_set(services(), output_base());
}

void MainWindow::restore_backup() {
    const Hourglass hourglass;
    restore_source_sets(services(), {output_base()});
}

// The compiler reads the files, not what has been processed since they were saved.
bool MainWindow::may_compile() {
    if (!has_unsaved_work() || set_.saved) {
        return true;
    }
    switch (desk_.dialogs.ask_unsaved(this,
                                      tr("Save first? Materials of this set have been processed "
                                         "but not saved; the compiler would not see them."),
                                      true)) {
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

void MainWindow::compile() {
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

void MainWindow::show_about() {
    desk_.dialogs.show_box(
        this,
        tr("Morvane %1\n\nTurns marked materials of exported scenery and aircraft models into "
           "lights, effects, windsocks and library objects.")
            .arg(ui_->version.text()),
        Icon::Information, {});
}

} // namespace morvane
