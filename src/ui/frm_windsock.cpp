#include "ui/frm_windsock.h"

#include "ui/dialogs.h"
#include "ui/platform_color.h"
#include "ui/qt_text.h"
#include "ui/ui_frm_windsock.h"

namespace morvane {

frmWindsock::frmWindsock(WindsockParameters& parameters, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::frmWindsock>()), parameters_(parameters),
      dialogs_(dialogs) {
    ui_->setupUi(this);
    accept_code_text_only(ui_->ws_mastColor);
    connect(ui_->ws_mastColor, &QLineEdit::textChanged, this, &frmWindsock::show_color);
    connect(ui_->Command1, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui_->Command2, &QPushButton::clicked, this, &QDialog::reject);
    show_color(ui_->ws_mastColor->text());
    ui_->ws_mastColor->setText(code_text(parameters_.ws_mastColor));
    ui_->ws_lit->setChecked(parameters_.ws_lit);
}

frmWindsock::~frmWindsock() = default;

// The preview takes the text as a colour value as it stands, though the windsock's own colour is
// written RRGGBB: red and blue change places.
void frmWindsock::show_color(const QString& text) {
    if (const auto color = platform_color(code_bytes(text))) {
        ui_->Shape1->set_color(*color);
    }
}

void frmWindsock::accept() {
    const std::string color = code_bytes(ui_->ws_mastColor->text());
    if (color.size() != mast_color_length) {
        dialogs_.show_box(this, tr("The format of mast color must be in RRGGBB format."),
                          Icon::Critical);
        return;
    }
    parameters_.ws_mastColor = color;
    parameters_.ws_lit = ui_->ws_lit->isChecked();
    QDialog::accept();
}

} // namespace morvane
