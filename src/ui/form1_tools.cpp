// The main window's commands on the working files, and its ways to the other tools.

#include "base/paths.h"
#include "ui/dialogs.h"
#include "ui/form1.h"
#include "ui/hourglass.h"
#include "ui/message_log.h"
#include "ui/qt_text.h"
#include "ui/text_viewer.h"
#include "ui/ui_form1.h"
#include "upkeep/backup.h"
#include "upkeep/compile.h"

#include <QClipboard>
#include <QGuiApplication>

namespace morvane {

void Form1::connect_tools() {
    const auto opens = [this](QPushButton* button, QAction* action, auto show) {
        connect(button, &QPushButton::clicked, this, show);
        connect(action, &QAction::triggered, this, show);
    };
    opens(ui_->Command6, ui_->actionWings, [this] { tools_.show_model(); });
    opens(ui_->Command7, ui_->actionLibrary, [this] { tools_.show_library(); });
    opens(ui_->Command9, ui_->actionLabel,
          [this] { tools_.show_labels([this] { return ui_->InputFile->text(); }); });
    opens(ui_->Command13, ui_->actionLibraryCompiler, [this] { tools_.show_compiler(); });
}

void Form1::backup() {
    const Hourglass hourglass;
    backup_source_set(services(), output_base());
}

void Form1::restore_backup() {
    const Hourglass hourglass;
    restore_source_sets(services(), {output_base()});
}

void Form1::compile() {
    const CompileJob job{output_base(), desk_.program_folder};
    if (auto program = start_compile(services(), desk_.launcher, job)) {
        tools_.viewer().follow(compile_output_file(job), std::move(program));
    }
}

void Form1::show_search_results() {
    tools_.viewer().show_file(join_path(desk_.program_folder, "out.txt"));
}

void Form1::copy_messages() {
    QGuiApplication::clipboard()->setText(desk_.log.texts().join(QLatin1Char('\n')));
}

void Form1::show_about() {
    desk_.dialogs.show_box(
        this,
        tr("Morvane %1\n\nTurns marked materials of exported scenery and aircraft models into "
           "lights, effects, windsocks and library objects.")
            .arg(ui_->Label21->text()),
        Icon::Information);
}

} // namespace morvane
