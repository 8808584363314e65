// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/program.h"

#include "base/version.h"
#include "ui/appearance.h"
#include "ui/qt_text.h"

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>

// The linker leaves the icons of a static library out unless they are asked for. Outside of any
// namespace, as the macro wants it.
static void load_icons() {
    Q_INIT_RESOURCE(morvane);
}

namespace morvane {

void name_application() {
    QCoreApplication::setApplicationName(QStringLiteral("morvane"));
    QCoreApplication::setApplicationVersion(shown_text(version_number));
}

void prepare_application(QApplication& application) {
    name_application();
    QGuiApplication::setDesktopFileName(QStringLiteral("morvane"));
    load_icons();
    QIcon icon;
    for (const int side : {16, 32, 48, 128}) {
        icon.addFile(QStringLiteral(":/icons/morvane-%1.png").arg(side), QSize(side, side));
    }
    application.setWindowIcon(icon);
    use_roomy_style();
}

} // namespace morvane
