// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/lights_dialog.h"

#include "ui/access_letters.h"
#include "ui/dialogs/edits.h"
#include "ui/dialogs/ui_lights_dialog.h"
#include "ui/qt_text.h"
#include "ui/set_up.h"

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

struct LightsDialog::Controls : SetUp<Ui::LightsDialog> {
    using SetUp::SetUp;

    QComboBox& type = *LightType;
    QLineEdit& intensity = *LightInt;
    QLineEdit& linear_attenuation = *LightAttnL;
    QLineEdit& square_attenuation = *LightAttS;
    QLineEdit& flash_mask = *FlashMask;
    QComboBox& flash_variable = *LightVariable;
    QCheckBox& off_by_day = *DayFlag;
    QCheckBox& aircraft = *AircraftFlag;
    QPushButton& ok = *Command1;
    QPushButton& cancel = *Command2;
};

LightsDialog::LightsDialog(LightParameters& parameters, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Controls>(this)), parameters_(parameters) {
    for (QLineEdit* field :
         {&ui_->intensity, &ui_->linear_attenuation, &ui_->square_attenuation, &ui_->flash_mask}) {
        accept_code_text_only(field);
    }
    fill_lists();
    load();
    connect_controls();
    on_edits(*this, [this] { Q_EMIT edited(shown()); });
}

LightsDialog::~LightsDialog() = default;

void LightsDialog::fill_lists() {
    for (const LightTypeEntry& entry : light_types) {
        const bool is_last = &entry == &light_types.back();
        const LightTypeEntry& shown = is_last ? dialog_panel_light_type : entry;
        ui_->type.addItem(code_text(shown.text), shown.switch_bit);
    }
    for (const FlashVariableEntry& entry : flash_variables) {
        ui_->flash_variable.addItem(code_text(entry.text), entry.value);
    }
}

void LightsDialog::load() {
    ui_->type.setCurrentIndex(position_in(light_types, parameters_.LightType));
    ui_->flash_variable.setCurrentIndex(position_in(flash_variables, parameters_.LightVariable));
    ui_->intensity.setText(code_text(parameters_.LightInt));
    ui_->linear_attenuation.setText(code_text(parameters_.LightAttnL));
    ui_->square_attenuation.setText(code_text(parameters_.LightAttS));
    ui_->flash_mask.setText(code_text(parameters_.FlashMask));
    ui_->off_by_day.setChecked(parameters_.DayFlag);
    ui_->aircraft.setChecked(parameters_.AircraftFlag);
}

void LightsDialog::connect_controls() {
    connect(&ui_->flash_variable, &QComboBox::activated, this, [this](int position) {
        ui_->flash_mask.setText(
            code_text(flash_variables.at(static_cast<std::size_t>(position)).mask));
    });
    // Each click clears the other box, whatever the clicked one's new state is.
    connect(&ui_->off_by_day, &QCheckBox::clicked, this,
            [this] { ui_->aircraft.setChecked(false); });
    connect(&ui_->aircraft, &QCheckBox::clicked, this,
            [this] { ui_->off_by_day.setChecked(false); });
    connect(&ui_->ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(&ui_->cancel, &QPushButton::clicked, this, &QDialog::reject);
    give_access_letters(*this);
}

LightParameters LightsDialog::shown() const {
    LightParameters parameters = parameters_;
    parameters.LightType = text_at(light_types, ui_->type.currentIndex());
    parameters.LightVariable = text_at(flash_variables, ui_->flash_variable.currentIndex());
    parameters.LightInt = code_bytes(ui_->intensity.text());
    parameters.LightAttnL = code_bytes(ui_->linear_attenuation.text());
    parameters.LightAttS = code_bytes(ui_->square_attenuation.text());
    parameters.FlashMask = code_bytes(ui_->flash_mask.text());
    parameters.DayFlag = ui_->off_by_day.isChecked();
    parameters.AircraftFlag = ui_->aircraft.isChecked();
    return parameters;
}

void LightsDialog::accept() {
    parameters_ = shown();
    QDialog::accept();
}

} // namespace morvane
