#include "ui/program.h"

#include "core/version.h"
#include "tools/program_folder.h"
#include "ui/appearance.h"
#include "ui/qt_text.h"

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QStandardPaths>

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

std::string program_folder_of_run(Disk& disk, const std::string& option) {
    const std::string data_home =
        path_bytes(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    return resolve_program_folder(disk, {option, path_bytes(qEnvironmentVariable("MORVANE_HOME")),
                                         path_bytes(QApplication::applicationDirPath()),
                                         user_data_folder(data_home, {})});
}

} // namespace morvane
