#include "ui/form1.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/version.h"
#include "ui/appearance.h"
#include "ui/message_log.h"
#include "ui/qt_text.h"
#include "ui/ui_form1.h"
#include "upkeep/settings.h"

#include <QActionGroup>
#include <QCloseEvent>

#include <array>
#include <utility>

namespace morvane {

Form1::Form1(Desk& desk, QWidget* parent)
    : QMainWindow(parent), ui_(std::make_unique<Ui::Form1>()), desk_(desk),
      reporter_(desk.log, desk.dialogs, this), state_(desk.program_folder), tools_(desk, state_) {
    ui_->setupUi(this);
    prepare_controls();
    connect_changes();
    connect_buttons();
    connect_menus();
    load_settings();
    show_recent();
    show_selection();
    update_par_line();
}

Form1::~Form1() = default;

void Form1::prepare_controls() {
    ui_->Label21->setText(shown_text(version_caption));
    int step = 0;
    for (StepMarker* marker : {ui_->Label6, ui_->Label7, ui_->Label9, ui_->Label10, ui_->Label12}) {
        marker->set_step(++step);
    }
    for (const Kind item : all_kinds) {
        ui_->typeOfObj->addItem(code_text(kind_text(item)));
    }
    ui_->lstMat2proc->setModel(&materials_);
    ui_->MsgText->show_log(desk_.log);
    ui_->splitter->setStretchFactor(0, 3);
    ui_->splitter->setStretchFactor(1, 2);
    QSizePolicy keeps_place = ui_->Label16->sizePolicy();
    keeps_place.setRetainSizeWhenHidden(true);
    ui_->Label16->setSizePolicy(keeps_place);
}

void Form1::connect_changes() {
    connect(ui_->InputFile, &QLineEdit::textChanged, ui_->OutputFile, &QLineEdit::setText);
    connect(ui_->InputFile, &QLineEdit::returnPressed, this, &Form1::open);
    connect(ui_->typeOfObj, &QComboBox::currentIndexChanged, this, &Form1::update_par_line);
    connect(ui_->lstMat2proc->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &Form1::show_selection);
    connect(ui_->lstMat2proc, &QTreeView::activated, this, &Form1::show_parameters);
}

void Form1::connect_buttons() {
    const auto on_click = [this](QPushButton* button, void (Form1::*command)()) {
        connect(button, &QPushButton::clicked, this, command);
    };
    on_click(ui_->Command8, &Form1::browse);
    on_click(ui_->Command2, &Form1::open);
    on_click(ui_->Command4, &Form1::show_parameters);
    on_click(ui_->Command1, &Form1::process);
    on_click(ui_->Command3, &Form1::save);
    on_click(ui_->Command10, &Form1::backup);
    on_click(ui_->Command11, &Form1::restore_backup);
    on_click(ui_->Command12, &Form1::compile);
}

void Form1::connect_menus() {
    const auto on_choice = [this](QAction* action, void (Form1::*command)()) {
        connect(action, &QAction::triggered, this, command);
    };
    on_choice(ui_->actionBrowse, &Form1::browse);
    on_choice(ui_->actionOpen, &Form1::open);
    on_choice(ui_->actionSave, &Form1::save);
    on_choice(ui_->actionCompile, &Form1::compile);
    on_choice(ui_->actionBackup, &Form1::backup);
    on_choice(ui_->actionRestore, &Form1::restore_backup);
    on_choice(ui_->actionNext, &Form1::select_next_unprocessed);
    on_choice(ui_->actionParameters, &Form1::show_parameters);
    on_choice(ui_->actionProcess, &Form1::process);
    on_choice(ui_->actionApplyRecipe, &Form1::choose_recipe);
    on_choice(ui_->actionSaveRecipe, &Form1::save_recipe_file);
    on_choice(ui_->actionAbout, &Form1::show_about);
    connect(ui_->actionExit, &QAction::triggered, this, &QWidget::close);
    on_choice(ui_->actionCopyAllMessages, &Form1::copy_messages);
    connect_colors();
    connect_tools();
}

void Form1::connect_colors() {
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

void Form1::load_settings() {
    const MainPaths paths = read_main_paths(services(), desk_.program_folder, {});
    ui_->InputFile->setText(shown_text(paths.input));
    ui_->OutputFile->setText(shown_text(paths.output));
    effects_ = read_effect_names(services(), desk_.program_folder);
    if (!effects_.empty()) {
        parameters_.effects.lstEffectType = effects_.front();
    }
    state_.restore(*this);
}

void Form1::write_settings() {
    try {
        write_main_paths(desk_.disk, desk_.program_folder,
                         {path_bytes(ui_->InputFile->text()), output_base()});
    } catch (const RuntimeError& error) {
        report_error(reporter_, error, "Error : ", " :");
    }
    state_.keep(*this);
}

Kind Form1::kind() const {
    return all_kinds.at(static_cast<std::size_t>(ui_->typeOfObj->currentIndex()));
}

std::string Form1::output_base() const {
    return path_bytes(ui_->OutputFile->text());
}

QString Form1::output_folder() const {
    return shown_text(folder_part(output_base()));
}

void Form1::update_par_line() {
    if (const auto line = parameter_line(kind(), parameters_)) {
        ui_->txtinfo->setText(code_text(*line));
        ui_->txtinfo->setCursorPosition(0);
    }
}

void Form1::update_title() {
    const QString name = shown_text(file_name_part(set_.base));
    setWindowTitle(set_.opened ? tr("Morvane - %1").arg(name) : tr("Morvane"));
}

void Form1::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (desk_.activation.is_activated(*this, *event)) {
        update_par_line();
    }
}

void Form1::closeEvent(QCloseEvent* event) {
    if (!may_leave_set() || !tools_.close_all()) {
        event->ignore();
        return;
    }
    write_settings();
    event->accept();
}

} // namespace morvane
