// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/edits.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

namespace morvane {

void on_edits(QWidget& form, const std::function<void()>& edited) {
    for (const QLineEdit* field : form.findChildren<QLineEdit*>()) {
        QObject::connect(field, &QLineEdit::textChanged, &form, edited);
    }
    for (const QComboBox* list : form.findChildren<QComboBox*>()) {
        QObject::connect(list, &QComboBox::currentIndexChanged, &form, edited);
    }
    for (const QCheckBox* box : form.findChildren<QCheckBox*>()) {
        QObject::connect(box, &QCheckBox::toggled, &form, edited);
    }
}

} // namespace morvane
