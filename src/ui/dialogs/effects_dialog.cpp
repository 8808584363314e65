// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/effects_dialog.h"

#include "ui/access_letters.h"
#include "ui/dialogs/dialogs.h"
#include "ui/dialogs/edits.h"
#include "ui/dialogs/ui_effects_dialog.h"
#include "ui/qt_text.h"
#include "ui/set_up.h"

namespace morvane {

struct EffectsDialog::Controls : SetUp<Ui::EffectsDialog> {
    using SetUp::SetUp;

    QComboBox& effect = *lstEffectType;
    QLineEdit& time_constraints = *fx_params;
    QCheckBox& on_ground = *fx_OTG;
    QLineEdit& terrain_height = *fx_terrain_alt;
    QPushButton& ok = *Command1;
    QPushButton& cancel = *Command2;
};

EffectsDialog::EffectsDialog(EffectParameters& parameters, const std::vector<std::string>& effects,
                             Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Controls>(this)), parameters_(parameters),
      dialogs_(dialogs) {
    accept_code_text_only(&ui_->time_constraints);
    accept_code_text_only(&ui_->terrain_height);
    for (const std::string& effect : effects) {
        ui_->effect.addItem(code_text(effect));
    }
    connect(&ui_->on_ground, &QCheckBox::toggled, &ui_->terrain_height, &QWidget::setDisabled);
    connect(&ui_->ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(&ui_->cancel, &QPushButton::clicked, this, &QDialog::reject);
    give_access_letters(*this);
    load();
    on_edits(*this, [this] {
        if (const EffectParameters now = shown(); now.fx_params.size() == time_constraints_length) {
            Q_EMIT edited(now);
        }
    });
}

EffectsDialog::~EffectsDialog() = default;

void EffectsDialog::load() {
    ui_->effect.setCurrentIndex(ui_->effect.findText(code_text(parameters_.lstEffectType),
                                                     Qt::MatchExactly | Qt::MatchCaseSensitive));
    ui_->time_constraints.setText(code_text(parameters_.fx_params));
    ui_->on_ground.setChecked(parameters_.fx_OTG);
    ui_->terrain_height.setText(code_text(parameters_.fx_Terrain_alt));
}

EffectParameters EffectsDialog::shown() const {
    EffectParameters parameters = parameters_;
    parameters.lstEffectType = code_bytes(ui_->effect.currentText());
    parameters.fx_params = code_bytes(ui_->time_constraints.text());
    parameters.fx_OTG = ui_->on_ground.isChecked();
    parameters.fx_Terrain_alt = code_bytes(ui_->terrain_height.text());
    return parameters;
}

void EffectsDialog::accept() {
    const EffectParameters parameters = shown();
    if (parameters.fx_params.size() != time_constraints_length) {
        dialogs_.show_box(this,
                          tr("The values of the parameters are incorect. Double click in the "
                             "textbox for default values. Do not change the overall length."),
                          Icon::Critical, {});
        return;
    }
    parameters_ = parameters;
    QDialog::accept();
}

} // namespace morvane
