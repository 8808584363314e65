#include "ui/frm_lights.h"

#include "ui/qt_text.h"
#include "ui/ui_frm_lights.h"

#include <algorithm>
#include <iterator>

namespace morvane {

namespace {

// The choice is handed over by list position, since the two windows' lists differ in the last text.
template <typename List>
int position_in(const List& list, const std::string& text) {
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&](const auto& entry) { return entry.text == text; });
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

template <typename List>
std::string text_at(const List& list, int position) {
    return position < 0 ? std::string()
                        : std::string(list.at(static_cast<std::size_t>(position)).text);
}

} // namespace

frmLights::frmLights(LightParameters& parameters, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::frmLights>()), parameters_(parameters) {
    ui_->setupUi(this);
    for (QLineEdit* field : {ui_->LightInt, ui_->LightAttnL, ui_->LightAttS, ui_->FlashMask}) {
        accept_code_text_only(field);
    }
    fill_lists();
    load();
    connect_controls();
}

frmLights::~frmLights() = default;

void frmLights::fill_lists() {
    for (const LightTypeEntry& entry : light_types) {
        const bool is_last = &entry == &light_types.back();
        const LightTypeEntry& shown = is_last ? dialog_panel_light_type : entry;
        ui_->LightType->addItem(code_text(shown.text), shown.switch_bit);
    }
    for (const FlashVariableEntry& entry : flash_variables) {
        ui_->LightVariable->addItem(code_text(entry.text), entry.value);
    }
}

void frmLights::load() {
    ui_->LightType->setCurrentIndex(position_in(light_types, parameters_.LightType));
    ui_->LightVariable->setCurrentIndex(position_in(flash_variables, parameters_.LightVariable));
    ui_->LightInt->setText(code_text(parameters_.LightInt));
    ui_->LightAttnL->setText(code_text(parameters_.LightAttnL));
    ui_->LightAttS->setText(code_text(parameters_.LightAttS));
    ui_->FlashMask->setText(code_text(parameters_.FlashMask));
    ui_->DayFlag->setChecked(parameters_.DayFlag);
    ui_->AircraftFlag->setChecked(parameters_.AircraftFlag);
}

void frmLights::connect_controls() {
    connect(ui_->LightVariable, &QComboBox::activated, this, [this](int position) {
        ui_->FlashMask->setText(
            code_text(flash_variables.at(static_cast<std::size_t>(position)).mask));
    });
    // Each click clears the other box, whatever the clicked one's new state is.
    connect(ui_->DayFlag, &QCheckBox::clicked, this,
            [this] { ui_->AircraftFlag->setChecked(false); });
    connect(ui_->AircraftFlag, &QCheckBox::clicked, this,
            [this] { ui_->DayFlag->setChecked(false); });
    connect(ui_->Command1, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui_->Command2, &QPushButton::clicked, this, &QDialog::reject);
}

void frmLights::accept() {
    parameters_.LightType = text_at(light_types, ui_->LightType->currentIndex());
    parameters_.LightVariable = text_at(flash_variables, ui_->LightVariable->currentIndex());
    parameters_.LightInt = code_bytes(ui_->LightInt->text());
    parameters_.LightAttnL = code_bytes(ui_->LightAttnL->text());
    parameters_.LightAttS = code_bytes(ui_->LightAttS->text());
    parameters_.FlashMask = code_bytes(ui_->FlashMask->text());
    parameters_.DayFlag = ui_->DayFlag->isChecked();
    parameters_.AircraftFlag = ui_->AircraftFlag->isChecked();
    QDialog::accept();
}

} // namespace morvane
