// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/time_constraint_edit.h"

#include "objects/parameters.h"
#include "ui/qt_text.h"

#include <QMouseEvent>

namespace morvane {

void TimeConstraintEdit::mouseDoubleClickEvent(QMouseEvent* event) {
    setText(code_text(default_time_constraints));
    event->accept();
}

} // namespace morvane
