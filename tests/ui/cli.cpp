// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/cli.h"

#include <QProcess>

namespace morvane::test {

int run_cli(const QString& program_folder, const QStringList& arguments) {
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(
        QStringLiteral(MORVANE_CLI),
        QStringList{QStringLiteral("--program-folder"), program_folder, QStringLiteral("--yes")} +
            arguments);
    const bool ended = program.waitForFinished();
    return ended && program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
}

} // namespace morvane::test
