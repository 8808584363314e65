// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace morvane {

/// The colours of all windows: those of the platform, or light or dark ones of the program's own.
enum class Appearance { System, Light, Dark };

/// "system", "light" or "dark", for the window's own settings.
QString appearance_name(Appearance appearance);
/// Any other name is System.
Appearance appearance_from_name(const QString& name);

/// Gives the platform's style some air around captions and rows. To be called once, at the start.
void use_roomy_style();

void apply_appearance(Appearance appearance);

} // namespace morvane
