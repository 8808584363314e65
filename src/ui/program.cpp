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

void prepare_application(QApplication& application) {
    QApplication::setApplicationName(QStringLiteral("morvane"));
    QApplication::setApplicationVersion(shown_text(version_number));
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
