#include "ui/main_window/main_window.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/version.h"
#include "ui/appearance.h"
#include "ui/main_window/controls.h"
#include "ui/models/message_log.h"
#include "ui/qt_text.h"
#include "upkeep/settings.h"

#include <QActionGroup>
#include <QCloseEvent>

#include <array>
#include <utility>

namespace morvane {

MainWindow::MainWindow(Desk& desk, QWidget* parent)
    : QMainWindow(parent), desk_(desk), ui_(std::make_unique<Controls>(this)),
      reporter_(desk.log, desk.dialogs, this), state_(desk.program_folder, *this),
      tools_(desk, state_), compiler_(desk.log) {
    prepare_controls();
    prepare_docks();
    connect_changes();
    connect_buttons();
    connect_menus();
    load_settings();
    state_.restore(*this);
    show_recent();
    show_selection();
    show_status();
    update_par_line();
    connect(ui_->menuRecent, &QMenu::aboutToShow, this, &MainWindow::show_recent);
}

MainWindow::~MainWindow() = default;

void MainWindow::prepare_controls() {
    ui_->version.setText(shown_text(version_caption));
    int step = 0;
    for (StepMarker* marker : {&ui_->open_step, &ui_->select_step, &ui_->define_step,
                               &ui_->process_step, &ui_->save_step}) {
        marker->set_step(++step);
    }
    for (const Kind item : all_kinds) {
        ui_->kind.addItem(code_text(kind_text(item)));
    }
    ui_->materials.setModel(&materials_);
    ui_->messages.show_log(desk_.log);
    QSizePolicy keeps_place = ui_->processed_mark.sizePolicy();
    keeps_place.setRetainSizeWhenHidden(true);
    ui_->processed_mark.setSizePolicy(keeps_place);
}

// Every command of the window runs by way of this: nothing that it throws gets past it.
void MainWindow::run(const std::function<void()>& command) {
    run_command(reporter_, command);
    show_status();
    update_title();
}

void MainWindow::connect_changes() {
    connect(&ui_->input_base, &QLineEdit::textChanged, &ui_->output_base, &QLineEdit::setText);
    connect(&ui_->input_base, &QLineEdit::textChanged, this, &MainWindow::show_status);
    connect(&ui_->input_base, &QLineEdit::returnPressed, this, [this] { run([this] { open(); }); });
    connect(&ui_->kind, &QComboBox::currentIndexChanged, this, &MainWindow::update_par_line);
    connect(ui_->materials.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MainWindow::show_selection);
    connect(&ui_->materials, &QTreeView::activated, this, &MainWindow::show_parameters);
}

void MainWindow::connect_buttons() {
    const auto on_click = [this](QPushButton* button, void (MainWindow::*command)()) {
        connect(button, &QPushButton::clicked, this,
                [this, command] { run([this, command] { (this->*command)(); }); });
    };
    on_click(&ui_->browse, &MainWindow::browse);
    on_click(&ui_->open, &MainWindow::open);
    on_click(&ui_->parameters, &MainWindow::show_parameters);
    on_click(&ui_->process, &MainWindow::process);
    on_click(&ui_->save, &MainWindow::save);
    on_click(&ui_->backup, &MainWindow::backup);
    on_click(&ui_->restore, &MainWindow::restore_backup);
    on_click(&ui_->compile, &MainWindow::compile);
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
    on_choice(ui_->actionNext, &MainWindow::select_next_unprocessed);
    on_choice(ui_->actionParameters, &MainWindow::show_parameters);
    on_choice(ui_->actionProcess, &MainWindow::process);
    on_choice(ui_->actionApplyRecipe, &MainWindow::choose_recipe);
    on_choice(ui_->actionSaveRecipe, &MainWindow::save_recipe_file);
    on_choice(ui_->actionAbout, &MainWindow::show_about);
    connect(ui_->actionExit, &QAction::triggered, this, &QWidget::close);
    on_choice(ui_->actionCopyAllMessages, &MainWindow::copy_messages);
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
        connect(action, &QAction::triggered, this, [this, wanted = appearance] {
            state_.set_value(QStringLiteral("colors"), appearance_name(wanted));
            apply_appearance(wanted);
        });
    }
}

void MainWindow::load_settings() {
    const MainPaths paths = read_main_paths(services(), desk_.program_folder, {});
    ui_->input_base.setText(shown_text(paths.input));
    ui_->output_base.setText(shown_text(paths.output));
    effects_ = read_effect_names(services(), desk_.program_folder);
    if (!effects_.empty()) {
        parameters_.effects.lstEffectType = effects_.front();
    }
}

void MainWindow::write_settings() {
    try {
        write_main_paths(desk_.disk, desk_.program_folder,
                         {path_bytes(ui_->input_base.text()), output_base()});
    } catch (const RuntimeError& error) {
        report_error(reporter_, error, "Error : ", " :");
    }
    keep_layout();
}

Kind MainWindow::kind() const {
    return all_kinds.at(static_cast<std::size_t>(ui_->kind.currentIndex()));
}

std::string MainWindow::output_base() const {
    return path_bytes(ui_->output_base.text());
}

QString MainWindow::output_folder() const {
    return shown_text(folder_part(output_base()));
}

void MainWindow::update_par_line() {
    if (const auto line = parameter_line(kind(), parameters_)) {
        ui_->parameter_line.setText(code_text(*line));
        ui_->parameter_line.setCursorPosition(0);
    }
}

void MainWindow::update_title() {
    const QString name = shown_text(file_name_part(set_.base));
    const QString mark = has_unsaved_work() ? QStringLiteral(" *") : QString();
    setWindowTitle(set_.opened ? tr("Morvane - %1").arg(name) + mark : tr("Morvane"));
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (desk_.activation.is_activated(*this, *event)) {
        update_par_line();
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    bool closes = false;
    run([&] {
        closes = may_leave_set() && tools_.close_all();
        if (closes) {
            write_settings();
        }
    });
    event->setAccepted(closes);
}

} // namespace morvane
