// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/library_dialog.h"

#include "ui/access_letters.h"
#include "ui/dialogs/edits.h"
#include "ui/dialogs/ui_library_dialog.h"
#include "ui/qt_text.h"
#include "ui/set_up.h"

namespace morvane {

struct LibraryDialog::Controls : SetUp<Ui::LibraryDialog> {
    using SetUp::SetUp;

    QLineEdit& identifier = *libGUID;
    QLineEdit& scale = *libScale;
    QCheckBox& on_ground = *lib_OTG;
    QLineEdit& terrain_height = *lib_terrain_alt;
    QPushButton& library_tool = *Command1;
    QPushButton& search_results = *Command2;
    QPushButton& ok = *Command3;
    QPushButton& cancel = *Command4;
};

LibraryDialog::LibraryDialog(LibraryParameters& parameters, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Controls>(this)), parameters_(parameters) {
    for (QLineEdit* field : {&ui_->identifier, &ui_->scale, &ui_->terrain_height}) {
        accept_code_text_only(field);
    }
    ui_->identifier.setText(code_text(parameters_.libGUID));
    ui_->scale.setText(code_text(parameters_.libScale));
    ui_->on_ground.setChecked(parameters_.lib_OTG);
    ui_->terrain_height.setText(code_text(parameters_.lib_Terrain_alt));
    connect(&ui_->library_tool, &QPushButton::clicked, this, &LibraryDialog::library_tool_wanted);
    connect(&ui_->search_results, &QPushButton::clicked, this,
            &LibraryDialog::search_results_wanted);
    connect(&ui_->ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(&ui_->cancel, &QPushButton::clicked, this, &QDialog::reject);
    give_access_letters(*this);
    on_edits(*this, [this] { Q_EMIT edited(shown()); });
}

LibraryDialog::~LibraryDialog() = default;

void LibraryDialog::take_identifier(const QString& identifier) {
    ui_->identifier.setText(identifier);
}

void LibraryDialog::take_object(const QString& identifier, const QString& scale) {
    take_identifier(identifier);
    ui_->scale.setText(scale);
}

LibraryParameters LibraryDialog::shown() const {
    LibraryParameters parameters = parameters_;
    parameters.libGUID = code_bytes(ui_->identifier.text());
    parameters.libScale = code_bytes(ui_->scale.text());
    parameters.lib_OTG = ui_->on_ground.isChecked();
    parameters.lib_Terrain_alt = code_bytes(ui_->terrain_height.text());
    return parameters;
}

void LibraryDialog::accept() {
    parameters_ = shown();
    QDialog::accept();
}

} // namespace morvane
