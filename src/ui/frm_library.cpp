#include "ui/frm_library.h"

#include "ui/qt_text.h"
#include "ui/ui_frm_library.h"

namespace morvane {

frmLibrary::frmLibrary(LibraryParameters& parameters, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::frmLibrary>()), parameters_(parameters) {
    ui_->setupUi(this);
    for (QLineEdit* field : {ui_->libGUID, ui_->libScale, ui_->lib_terrain_alt}) {
        accept_code_text_only(field);
    }
    ui_->libGUID->setText(code_text(parameters_.libGUID));
    ui_->libScale->setText(code_text(parameters_.libScale));
    ui_->lib_OTG->setChecked(parameters_.lib_OTG);
    ui_->lib_terrain_alt->setText(code_text(parameters_.lib_Terrain_alt));
    connect(ui_->Command1, &QPushButton::clicked, this, &frmLibrary::library_tool_wanted);
    connect(ui_->Command2, &QPushButton::clicked, this, &frmLibrary::search_results_wanted);
    connect(ui_->Command3, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui_->Command4, &QPushButton::clicked, this, &QDialog::reject);
}

frmLibrary::~frmLibrary() = default;

void frmLibrary::take_identifier(const QString& identifier) {
    ui_->libGUID->setText(identifier);
}

void frmLibrary::accept() {
    parameters_.libGUID = code_bytes(ui_->libGUID->text());
    parameters_.libScale = code_bytes(ui_->libScale->text());
    parameters_.lib_OTG = ui_->lib_OTG->isChecked();
    parameters_.lib_Terrain_alt = code_bytes(ui_->lib_terrain_alt->text());
    QDialog::accept();
}

} // namespace morvane
