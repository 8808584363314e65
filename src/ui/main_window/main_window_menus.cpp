// SPDX-License-Identifier: GPL-3.0-or-later

// The main window's buttons and menus, and what Help shows.

#include "base/paths.h"
#include "ui/appearance.h"
#include "ui/dialogs/dialogs.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/qt_text.h"

#include <QActionGroup>
#include <QDialog>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <array>
#include <utility>

namespace morvane {

namespace {

QString table_row(const QString& keys, const QString& what) {
    return QStringLiteral("<tr><td><b>%1</b>&nbsp;&nbsp;</td><td>%2</td></tr>")
        .arg(keys.toHtmlEscaped(), what.toHtmlEscaped());
}

QString plain_caption(const QAction& action) {
    return action.text().remove(QLatin1Char('&'));
}

} // namespace

void MainWindow::connect_buttons() {
    const auto on_click = [this](QPushButton& button, void (MainWindow::*command)()) {
        connect(&button, &QPushButton::clicked, this,
                [this, command] { run([this, command] { (this->*command)(); }); });
    };
    on_click(ui_->browse, &MainWindow::browse);
    on_click(ui_->open, &MainWindow::open);
    on_click(ui_->parameters, &MainWindow::show_parameters);
    on_click(ui_->process, &MainWindow::process);
    on_click(ui_->save, &MainWindow::save);
    on_click(ui_->backup, &MainWindow::backup);
    on_click(ui_->restore, &MainWindow::restore_backup);
    on_click(ui_->compile, &MainWindow::compile_and_view);
}

void MainWindow::connect_menus() {
    const auto on_choice = [this](QAction* action, void (MainWindow::*command)()) {
        connect(action, &QAction::triggered, this,
                [this, command] { run([this, command] { (this->*command)(); }); });
    };
    on_choice(ui_->actionBrowse, &MainWindow::browse);
    on_choice(ui_->actionOpen, &MainWindow::open);
    on_choice(ui_->actionSave, &MainWindow::save);
    on_choice(ui_->actionCompile, &MainWindow::compile);
    on_choice(ui_->actionBackup, &MainWindow::backup);
    on_choice(ui_->actionRestore, &MainWindow::restore_backup);
    on_choice(ui_->actionUndo, &MainWindow::undo);
    on_choice(ui_->actionRedo, &MainWindow::redo);
    on_choice(ui_->actionNext, &MainWindow::select_next_unprocessed);
    on_choice(ui_->actionParameters, &MainWindow::show_parameters);
    on_choice(ui_->actionProcess, &MainWindow::process);
    on_choice(ui_->actionShowSource, &MainWindow::show_source);
    on_choice(ui_->actionApplyRecipe, &MainWindow::choose_recipe);
    on_choice(ui_->actionSaveRecipe, &MainWindow::save_recipe_file);
    on_choice(ui_->actionCopyAllMessages, &MainWindow::copy_messages);
    on_choice(ui_->actionResetLayout, &MainWindow::reset_layout);
    on_choice(ui_->actionGuide, &MainWindow::show_guide);
    on_choice(ui_->actionKeys, &MainWindow::show_keys);
    on_choice(ui_->actionAbout, &MainWindow::show_about);
    connect(ui_->actionSelectHighlight, &QAction::triggered, this,
            [this] { select_like(MaterialModel::Highlight); });
    connect(ui_->actionSelectColor, &QAction::triggered, this,
            [this] { select_like(MaterialModel::Color); });
    connect(ui_->actionExit, &QAction::triggered, this, &QWidget::close);
    connect(ui_->menuRecent, &QMenu::aboutToShow, this, &MainWindow::show_recent);
    connect_colors();
    connect_tools();
}

void MainWindow::connect_colors() {
    auto* group = new QActionGroup(this);
    const std::array<std::pair<QAction*, Appearance>, 3> choices{
        {{ui_->actionColorsSystem, Appearance::System},
         {ui_->actionColorsLight, Appearance::Light},
         {ui_->actionColorsDark, Appearance::Dark}}};
    const Appearance chosen = appearance_from_name(state_.value(QStringLiteral("colors")));
    if (chosen != Appearance::System) {
        apply_appearance(chosen);
    }
    for (const auto& [action, appearance] : choices) {
        group->addAction(action);
        action->setChecked(appearance == chosen);
    }
    connect(group, &QActionGroup::triggered, this, [this, choices](const QAction* chosen_action) {
        for (const auto& [action, appearance] : choices) {
            if (action == chosen_action) {
                state_.set_value(QStringLiteral("colors"), appearance_name(appearance));
                apply_appearance(appearance);
            }
        }
    });
}

void MainWindow::connect_tools() {
    const auto opens = [this](QPushButton& button, QAction* action, auto show) {
        connect(&button, &QPushButton::clicked, this, [this, show] { run(show); });
        connect(action, &QAction::triggered, this, [this, show] { run(show); });
    };
    opens(ui_->model_modifier, ui_->actionWings, [this] { tools_.show_model_modifier(); });
    opens(ui_->library_browser, ui_->actionLibrary, [this] { tools_.show_library_browser(); });
    opens(ui_->label_rename, ui_->actionLabel,
          [this] { tools_.show_label_rename([this] { return ui_->input_base.text(); }); });
    opens(ui_->library_compiler, ui_->actionLibraryCompiler,
          [this] { tools_.show_library_compiler(); });
}

void MainWindow::show_about() {
    desk_.dialogs.show_box(
        this,
        tr("Morvane %1\n\nTurns marked materials of exported scenery and aircraft models into "
           "lights, effects, windsocks and library objects.")
            .arg(ui_->version.text()),
        Icon::Information, {});
}

void MainWindow::show_guide() {
    QStringList looked;
    for (const std::string& folder : desk_.guide_folders) {
        const std::string path = join_path(folder, "window.md");
        if (desk_.disk.is_file(path)) {
            desk_.open_document(path);
            return;
        }
        looked.append(shown_text(path));
    }
    desk_.dialogs.show_box(this, tr("The guide is not installed."), Icon::Exclamation,
                           looked.join(QLatin1Char('\n')));
}

void MainWindow::show_keys() {
    QString rows;
    for (const QAction* action : findChildren<QAction*>()) {
        if (!action->shortcut().isEmpty()) {
            rows += table_row(action->shortcut().toString(QKeySequence::NativeText),
                              plain_caption(*action));
        }
    }
    rows += table_row(tr("Enter"), tr("in the input box: opens the set"));
    rows += table_row(tr("Enter"), tr("on a material: its parameters"));
    rows += table_row(tr("Alt and an underlined letter"), tr("the button or field"));
    auto* dialog = new QDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(QStringLiteral("keysDialog"));
    dialog->setWindowTitle(tr("Keys"));
    auto* text = new QTextBrowser(dialog);
    text->setObjectName(QStringLiteral("keysText"));
    text->setAccessibleName(tr("Keys"));
    text->setHtml(QStringLiteral("<table cellpadding=\"2\">") + rows + QStringLiteral("</table>"));
    auto* layout = new QVBoxLayout(dialog);
    layout->addWidget(text);
    dialog->resize(420, 460);
    dialog->open();
}

} // namespace morvane
