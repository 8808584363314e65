// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

namespace morvane {

/// Gives each button, check box and labelled field of a form a letter of its caption that reaches
/// it with Alt, in the order of the Tab key. The captions stay as they are: the style underlines
/// the letters. Buttons that have keys of their own keep those. `taken` are letters that something
/// else in the form has, its menus for one.
void give_access_letters(QWidget& form, const QString& taken = {});

/// The caption with "&" before the letter that the widget was given; the caption as it is when it
/// has none.
QString with_access_letter(const QWidget& widget, const QString& caption);

} // namespace morvane
