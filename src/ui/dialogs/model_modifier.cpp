// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/model_modifier.h"

#include "aircraft/assemble_aircraft.h"
#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "source/source_set.h"
#include "ui/dialogs/dialogs.h"
#include "ui/dialogs/ui_model_modifier.h"
#include "ui/hourglass.h"
#include "ui/qt_text.h"
#include "ui/set_up.h"
#include "ui/widgets/file_drop.h"
#include "upkeep/backup.h"
#include "upkeep/settings.h"

namespace morvane {

struct ModelModifier::Controls : SetUp<Ui::ModelModifier> {
    using SetUp::SetUp;

    QCheckBox& wings = *chkWings;
    QCheckBox& shadow = *chkShadow;
    QPushButton& close = *Command1;
    QPushButton& process = *Command2;
    QPushButton& backup = *Command3;
    QPushButton& restore = *Command4;
    std::array<QLineEdit*, path_count> paths{fnModel_0, fnModel_1, fnModel_2, fnModel_3, fnModel_4};
    std::array<QPushButton*, path_count> browse{Command8_0, Command8_1, Command8_2, Command8_3,
                                                Command8_4};
};

ModelModifier::ModelModifier(Desk& desk, WindowState& state)
    : ToolForm(desk, state), ui_(std::make_unique<Controls>(this)) {
    const AircraftPaths kept = read_aircraft_paths(services(), desk.program_folder);
    for (std::size_t i = 0; i < path_count; ++i) {
        ui_->paths.at(i)->setText(shown_text(kept.at(i)));
    }
    connect_controls();
}

ModelModifier::~ModelModifier() = default;

void ModelModifier::connect_controls() {
    for (std::size_t i = 0; i < path_count; ++i) {
        accept_dropped_file(*ui_->paths.at(i), base_of_file);
        connect(ui_->browse.at(i), &QPushButton::clicked, this,
                [this, i] { run([this, i] { browse(i); }); });
    }
    connect(&ui_->wings, &QCheckBox::toggled, this, [this](bool checked) {
        for (const std::size_t part : {Fuselage, WingsHigh, WingsLow}) {
            allow(part, checked);
        }
    });
    connect(&ui_->shadow, &QCheckBox::toggled, this,
            [this](bool checked) { allow(Shadow, checked); });
    connect(&ui_->close, &QPushButton::clicked, this, &QWidget::close);
    const auto on_click = [this](QPushButton& button, void (ModelModifier::*command)()) {
        connect(&button, &QPushButton::clicked, this,
                [this, command] { run([this, command] { (this->*command)(); }); });
    };
    on_click(ui_->process, &ModelModifier::process_aircraft);
    on_click(ui_->backup, &ModelModifier::backup);
    on_click(ui_->restore, &ModelModifier::restore);
    show_reports_below();
    new FileDrop(
        *this,
        [](const QStringList& paths) {
            return paths.size() == 1 && !base_of_file(paths.front()).isEmpty();
        },
        [this](const QStringList& paths) { take_dropped(base_of_file(paths.front())); });
}

// A file that is dropped beside the boxes goes into the first one that waits for a path.
void ModelModifier::take_dropped(const QString& base) {
    for (QLineEdit* field : ui_->paths) {
        if (field->isEnabled() && field->text().isEmpty()) {
            field->setText(base);
            return;
        }
    }
    ui_->paths.at(CompleteModel)->setText(base);
}

void ModelModifier::allow(std::size_t part, bool allowed) {
    ui_->paths.at(part)->setEnabled(allowed);
    ui_->browse.at(part)->setEnabled(allowed);
}

std::array<std::string, ModelModifier::path_count> ModelModifier::paths() const {
    std::array<std::string, path_count> result;
    for (std::size_t i = 0; i < path_count; ++i) {
        result.at(i) = path_bytes(ui_->paths.at(i)->text());
    }
    return result;
}

void ModelModifier::browse(std::size_t part) {
    const QString folder = shown_text(folder_part(model_file_name(paths().at(part))));
    const QString chosen = desk_.dialogs.open_file(this, tr("Choose the exported model"), folder,
                                                   dialog_filter(shown_text(source_file_filter)));
    if (const auto base = base_of_chosen_file(path_bytes(chosen))) {
        ui_->paths.at(part)->setText(shown_text(*base));
    }
}

void ModelModifier::process_aircraft() {
    const Hourglass hourglass;
    assemble_aircraft(services(), {paths(), ui_->wings.isChecked(), ui_->shadow.isChecked(),
                                   desk_.program_folder, desk_.program_folder});
}

void ModelModifier::backup() {
    const Hourglass hourglass;
    const auto bases = paths();
    backup_aircraft_sets(services(), {bases.begin(), bases.end()});
}

void ModelModifier::restore() {
    const Hourglass hourglass;
    const auto bases = paths();
    restore_source_sets(services(), {bases.begin(), bases.end()});
}

void ModelModifier::leaving() {
    try {
        write_aircraft_paths(desk_.disk, desk_.program_folder, paths());
    } catch (const RuntimeError& error) {
        report_error(reporter_, error, "Error : ", " :");
    }
}

} // namespace morvane
