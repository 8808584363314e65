// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window/main_window.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/version.h"
#include "ui/access_letters.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/document_views.h"
#include "ui/qt_text.h"
#include "ui/widgets/file_drop.h"
#include "upkeep/settings.h"

#include <QCloseEvent>

namespace morvane {

MainWindow::MainWindow(Desk& desk, QWidget* parent)
    : QMainWindow(parent), desk_(desk), ui_(std::make_unique<Controls>(this)), progress_(*this),
      reporter_(desk.log, desk.dialogs, this,
                [this](std::string_view what, std::size_t done, std::size_t total) {
                    return progress_.show(what, done, total);
                }),
      state_(desk.program_folder, *this), document_(services(), desk.program_folder),
      tools_(desk, state_), compiler_(desk.log),
      live_(document_.document(), {desk.disk, reporter_}) {
    prepare_controls();
    prepare_materials();
    prepare_docks();
    prepare_picture();
    prepare_history();
    views_ = std::make_unique<DocumentViews>(*this, desk_, tools_, *ui_->menuEdit);
    connect_changes();
    connect_document();
    connect_buttons();
    connect_menus();
    prepare_loop();
    accept_drops();
    load_settings();
    state_.restore(*this);
    show_recent();
    show_selection();
    show_history();
    show_status();
    update_par_line();
    give_access_letters(*this, QStringLiteral("FEMCTVH")); // the menus have those
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
    ui_->messages.show_log(desk_.log);
    QSizePolicy keeps_place = ui_->processed_mark.sizePolicy();
    keeps_place.setRetainSizeWhenHidden(true);
    ui_->processed_mark.setSizePolicy(keeps_place);
}

// Every command of the window runs by way of this: nothing that it throws gets past it.
void MainWindow::run(const std::function<void()>& command) {
    const bool outermost = !reporter_.is_running();
    run_command(reporter_, command);
    if (outermost) {
        progress_.finish();
    }
    show_status();
    update_title();
}

void MainWindow::connect_changes() {
    connect(&ui_->input_base, &QLineEdit::textChanged, &ui_->output_base, &QLineEdit::setText);
    connect(&ui_->input_base, &QLineEdit::textChanged, this, &MainWindow::show_status);
    connect(&ui_->input_base, &QLineEdit::returnPressed, this, [this] { run([this] { open(); }); });
    connect(&ui_->kind, &QComboBox::currentIndexChanged, this, [this] {
        update_par_line();
        Q_EMIT kind_changed();
    });
}

void MainWindow::connect_document() {
    connect(&document_, &DocumentModel::opened, this, &MainWindow::show_opened_set);
    // Later, since the entry of the menu that led here must not go yet.
    connect(&document_, &DocumentModel::opened, this, &MainWindow::show_recent,
            Qt::QueuedConnection);
    connect(&document_, &DocumentModel::row_changed, this, &MainWindow::show_row);
    connect(&document_, &DocumentModel::parameters_changed, this, &MainWindow::update_par_line);
    connect(&document_, &DocumentModel::history_changed, this, &MainWindow::show_history);
    connect(&document_, &DocumentModel::saved, this, [this] { ui_->save_step.set_done(true); });
}

void MainWindow::accept_drops() {
    const auto base_or_path = [](const QString& path) {
        return path.endsWith(QLatin1String(".toml"), Qt::CaseInsensitive) ? QString()
                                                                          : base_of_file(path);
    };
    accept_dropped_file(ui_->input_base, base_or_path);
    accept_dropped_file(ui_->output_base, base_or_path);
    const auto is_recipe = [](const QString& path) {
        return path.endsWith(QLatin1String(".toml"), Qt::CaseInsensitive);
    };
    new FileDrop(
        *this,
        [is_recipe](const QStringList& paths) {
            return paths.size() == 1 &&
                   (is_recipe(paths.front()) || !base_of_file(paths.front()).isEmpty());
        },
        [this, is_recipe](const QStringList& paths) {
            run([&] {
                if (is_recipe(paths.front()) && set().opened) {
                    apply_recipe_file(paths.front());
                } else {
                    open_file(paths.front());
                }
            });
        });
}

void MainWindow::load_settings() {
    const MainPaths paths = read_main_paths(services(), desk_.program_folder, {});
    ui_->input_base.setText(shown_text(paths.input));
    ui_->output_base.setText(shown_text(paths.output));
    effects_ = read_effect_names(services(), desk_.program_folder);
    if (!effects_.empty()) {
        Parameters defaults;
        defaults.effects.lstEffectType = effects_.front();
        document_.document().set_default_parameters(defaults);
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
    if (const auto line = parameter_line(kind(), document_.document().parameters())) {
        ui_->parameter_line.setText(code_text(*line));
        ui_->parameter_line.setCursorPosition(0);
    }
}

void MainWindow::update_title() {
    const QString name = shown_text(file_name_part(set().base));
    const QString mark = document_.has_unsaved_work() ? QStringLiteral(" *") : QString();
    setWindowTitle(set().opened ? tr("Morvane - %1").arg(name) + mark : tr("Morvane"));
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
