#include "ui/frm_model.h"

#include "aircraft/assemble_aircraft.h"
#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "source/chosen_file.h"
#include "source/source_set.h"
#include "ui/dialogs.h"
#include "ui/hourglass.h"
#include "ui/qt_text.h"
#include "ui/ui_frm_model.h"
#include "upkeep/backup.h"
#include "upkeep/settings.h"

namespace morvane {

frmModel::frmModel(Desk& desk, WindowState& state)
    : ToolForm(desk, state), ui_(std::make_unique<Ui::frmModel>()),
      reporter_(desk.log, desk.dialogs, this) {
    ui_->setupUi(this);
    fields_ = {ui_->fnModel_0, ui_->fnModel_1, ui_->fnModel_2, ui_->fnModel_3, ui_->fnModel_4};
    browse_buttons_ = {ui_->Command8_0, ui_->Command8_1, ui_->Command8_2, ui_->Command8_3,
                       ui_->Command8_4};
    const AircraftPaths kept = read_aircraft_paths(services(), desk.program_folder);
    for (std::size_t i = 0; i < path_count; ++i) {
        fields_.at(i)->setText(shown_text(kept.at(i)));
    }
    connect_controls();
}

frmModel::~frmModel() = default;

void frmModel::connect_controls() {
    for (std::size_t i = 0; i < path_count; ++i) {
        connect(browse_buttons_.at(i), &QPushButton::clicked, this, [this, i] { browse(i); });
    }
    connect(ui_->chkWings, &QCheckBox::toggled, this, [this](bool checked) {
        for (const std::size_t part : {Fuselage, WingsHigh, WingsLow}) {
            allow(part, checked);
        }
    });
    connect(ui_->chkShadow, &QCheckBox::toggled, this,
            [this](bool checked) { allow(Shadow, checked); });
    connect(ui_->Command1, &QPushButton::clicked, this, &QWidget::close);
    connect(ui_->Command2, &QPushButton::clicked, this, &frmModel::process_aircraft);
    connect(ui_->Command3, &QPushButton::clicked, this, &frmModel::backup);
    connect(ui_->Command4, &QPushButton::clicked, this, &frmModel::restore);
}

void frmModel::allow(std::size_t part, bool allowed) {
    fields_.at(part)->setEnabled(allowed);
    browse_buttons_.at(part)->setEnabled(allowed);
}

std::array<std::string, frmModel::path_count> frmModel::paths() const {
    std::array<std::string, path_count> result;
    for (std::size_t i = 0; i < path_count; ++i) {
        result.at(i) = path_bytes(fields_.at(i)->text());
    }
    return result;
}

void frmModel::browse(std::size_t part) {
    const QString folder = shown_text(folder_part(model_file_name(paths().at(part))));
    const QString chosen = desk_.dialogs.open_file(this, tr("Choose the exported model"), folder,
                                                   dialog_filter(shown_text(source_file_filter)));
    if (const auto base = base_of_chosen_file(path_bytes(chosen))) {
        fields_.at(part)->setText(shown_text(*base));
    }
}

void frmModel::process_aircraft() {
    const Hourglass hourglass;
    assemble_aircraft(services(), {paths(), ui_->chkWings->isChecked(), ui_->chkShadow->isChecked(),
                                   desk_.program_folder, desk_.program_folder});
}

void frmModel::backup() {
    const Hourglass hourglass;
    const auto bases = paths();
    backup_aircraft_sets(services(), {bases.begin(), bases.end()});
}

void frmModel::restore() {
    const Hourglass hourglass;
    const auto bases = paths();
    restore_source_sets(services(), {bases.begin(), bases.end()});
}

void frmModel::leaving() {
    try {
        write_aircraft_paths(desk_.disk, desk_.program_folder, paths());
    } catch (const RuntimeError& error) {
        report_error(reporter_, error, "Error : ", " :");
    }
}

} // namespace morvane
