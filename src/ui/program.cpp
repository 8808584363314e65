#include "ui/program.h"

#include "core/version.h"
#include "ui/appearance.h"
#include "ui/qt_text.h"

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>

namespace morvane {

void prepare_application(QApplication& application) {
    QApplication::setApplicationName(QStringLiteral("morvane"));
    QApplication::setApplicationDisplayName(QStringLiteral("Morvane"));
    QApplication::setApplicationVersion(shown_text(version_caption));
    QGuiApplication::setDesktopFileName(QStringLiteral("morvane"));
    QIcon icon;
    for (const int side : {16, 32, 48, 128}) {
        icon.addFile(QStringLiteral(":/icons/morvane-%1.png").arg(side), QSize(side, side));
    }
    application.setWindowIcon(icon);
    use_roomy_style();
}

} // namespace morvane
