// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QApplication;

namespace morvane {

/// Name and version of the program, as help and version show them.
void name_application();

/// Name, icon and colours of the program.
void prepare_application(QApplication& application);

} // namespace morvane
