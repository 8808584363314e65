// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QWidget;

namespace morvane {

/// Calls `edited` whenever a text, a choice or a check box of the form changes, by the user or by
/// the program, as long as the form lives.
void on_edits(QWidget& form, const std::function<void()>& edited);

} // namespace morvane
