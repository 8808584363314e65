// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/windsock_dialog.h"

#include "ui/access_letters.h"
#include "ui/dialogs/dialogs.h"
#include "ui/dialogs/edits.h"
#include "ui/dialogs/ui_windsock_dialog.h"
#include "ui/qt_text.h"
#include "ui/set_up.h"
#include "ui/widgets/platform_color.h"

namespace morvane {

struct WindsockDialog::Controls : SetUp<Ui::WindsockDialog> {
    using SetUp::SetUp;

    QLineEdit& mast_color = *ws_mastColor;
    QCheckBox& lit = *ws_lit;
    ColorSwatch& preview = *Shape1;
    QPushButton& ok = *Command1;
    QPushButton& cancel = *Command2;
};

WindsockDialog::WindsockDialog(WindsockParameters& parameters, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Controls>(this)), parameters_(parameters),
      dialogs_(dialogs) {
    accept_code_text_only(&ui_->mast_color);
    connect(&ui_->mast_color, &QLineEdit::textChanged, this, &WindsockDialog::show_color);
    connect(&ui_->ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(&ui_->cancel, &QPushButton::clicked, this, &QDialog::reject);
    give_access_letters(*this);
    show_color(ui_->mast_color.text());
    ui_->mast_color.setText(code_text(parameters_.ws_mastColor));
    ui_->lit.setChecked(parameters_.ws_lit);
    on_edits(*this, [this] {
        if (const WindsockParameters now = shown(); now.ws_mastColor.size() == mast_color_length) {
            Q_EMIT edited(now);
        }
    });
}

WindsockDialog::~WindsockDialog() = default;

// The preview takes the text as a colour value as it stands, though the windsock's own colour is
// written RRGGBB: red and blue change places.
void WindsockDialog::show_color(const QString& text) {
    if (const auto color = platform_color(code_bytes(text))) {
        ui_->preview.set_color(*color);
    }
    const std::string digits = code_bytes(text);
    const bool is_color = digits.size() == mast_color_length && platform_color(digits).has_value();
    ui_->simulatorColor->set_color(is_color ? rgb_color(digits) : QColor());
    ui_->simulatorText->setText(is_color ? text.toUpper() : tr("not a color: RRGGBB in hex"));
}

WindsockParameters WindsockDialog::shown() const {
    WindsockParameters parameters = parameters_;
    parameters.ws_mastColor = code_bytes(ui_->mast_color.text());
    parameters.ws_lit = ui_->lit.isChecked();
    return parameters;
}

void WindsockDialog::accept() {
    const WindsockParameters parameters = shown();
    if (parameters.ws_mastColor.size() != mast_color_length) {
        dialogs_.show_box(this, tr("The format of mast color must be in RRGGBB format."),
                          Icon::Critical, {});
        return;
    }
    parameters_ = parameters;
    QDialog::accept();
}

} // namespace morvane
