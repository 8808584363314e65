#include "ui/frm_effects.h"

#include "ui/dialogs.h"
#include "ui/qt_text.h"
#include "ui/ui_frm_effects.h"

namespace morvane {

frmEffects::frmEffects(EffectParameters& parameters, const std::vector<std::string>& effects,
                       Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::frmEffects>()), parameters_(parameters),
      dialogs_(dialogs) {
    ui_->setupUi(this);
    accept_code_text_only(ui_->fx_params);
    accept_code_text_only(ui_->fx_terrain_alt);
    for (const std::string& effect : effects) {
        ui_->lstEffectType->addItem(code_text(effect));
    }
    connect(ui_->fx_OTG, &QCheckBox::toggled, ui_->fx_terrain_alt, &QWidget::setDisabled);
    connect(ui_->Command1, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui_->Command2, &QPushButton::clicked, this, &QDialog::reject);
    load();
}

frmEffects::~frmEffects() = default;

void frmEffects::load() {
    ui_->lstEffectType->setCurrentIndex(ui_->lstEffectType->findText(
        code_text(parameters_.lstEffectType), Qt::MatchExactly | Qt::MatchCaseSensitive));
    ui_->fx_params->setText(code_text(parameters_.fx_params));
    ui_->fx_OTG->setChecked(parameters_.fx_OTG);
    ui_->fx_terrain_alt->setText(code_text(parameters_.fx_Terrain_alt));
}

void frmEffects::accept() {
    const std::string constraints = code_bytes(ui_->fx_params->text());
    if (constraints.size() != time_constraints_length) {
        dialogs_.show_box(this,
                          tr("The values of the parameters are incorect. Double click in the "
                             "textbox for default values. Do not change the overall length."),
                          Icon::Critical);
        return;
    }
    parameters_.lstEffectType = code_bytes(ui_->lstEffectType->currentText());
    parameters_.fx_params = constraints;
    parameters_.fx_OTG = ui_->fx_OTG->isChecked();
    parameters_.fx_Terrain_alt = code_bytes(ui_->fx_terrain_alt->text());
    QDialog::accept();
}

} // namespace morvane
