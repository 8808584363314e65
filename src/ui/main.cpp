// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "system/disk.h"
#include "system/program_places.h"
#include "system/programs.h"
#include "system/results_viewer.h"
#include "ui/appearance.h"
#include "ui/application.h"
#include "ui/desk.h"
#include "ui/dialogs/dialogs.h"
#include "ui/main_window/main_window.h"
#include "ui/models/message_log.h"
#include "ui/program.h"
#include "ui/qt_text.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDesktopServices>
#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

// morvane [--program-folder DIR] [PATH]
struct CommandLine {
    std::string program_folder;
    QString path;
};

CommandLine read_command_line(const QCoreApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::tr("The window of Morvane."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption folder(QStringLiteral("program-folder"),
                                    QCoreApplication::tr("Where settings and reports lie."),
                                    QStringLiteral("DIR"));
    parser.addOption(folder);
    parser.addPositionalArgument(
        QStringLiteral("PATH"),
        QCoreApplication::tr(
            "A source set to open: its base path, one of its files, or its recipe."),
        QStringLiteral("[PATH]"));
    parser.process(application);
    return {morvane::path_bytes(parser.value(folder)), parser.positionalArguments().value(0)};
}

int run(const QApplication& application) {
    const CommandLine line = read_command_line(application);
    const auto disk = morvane::make_system_disk();
    const auto programs = morvane::make_system_programs();
    morvane::SystemDialogs dialogs;
    morvane::MessageLog log;
    const auto viewer = morvane::make_system_viewer(*programs);
    const auto places = morvane::program_places(line.program_folder);
    morvane::Desk desk{*disk, dialogs, *programs, log,
                       morvane::resolve_program_folder(*disk, places)};
    desk.viewer = viewer.get();
    desk.guide_folders = morvane::document_folders(morvane::executable_folder());
    desk.open_document = [](const std::string& path) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(morvane::shown_text(path)));
    };
    morvane::MainWindow window(desk);
    window.show();
    if (!line.path.isEmpty()) {
        window.open_file(line.path);
    }
    return QApplication::exec();
}

bool asks_for_help_or_version(int argc, char** argv) {
    return std::any_of(argv, argv + argc, [](std::string_view word) {
        return word == "-h" || word == "--help" || word == "--help-all" || word == "-v" ||
               word == "--version";
    });
}

// Help and version need no display, which the application of a window does.
void answer_without_window(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    morvane::name_application();
    read_command_line(application); // prints them and leaves
}

// Qt ends the program when it finds no display, with a hint to install it anew, which helps nobody.
void say_that_there_is_no_display(QtMsgType type, const QMessageLogContext& /*context*/,
                                  const QString& text) {
    if (type == QtFatalMsg) {
        std::fputs(
            "morvane: there is no display to show a window on. morvane-cli does the same work "
            "without one.\n",
            stderr);
        std::_Exit(EXIT_FAILURE);
    }
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

int main(int argc, char** argv) {
    if (asks_for_help_or_version(argc, argv)) {
        answer_without_window(argc, argv);
    }
    qInstallMessageHandler(say_that_there_is_no_display);
    morvane::Application application(argc, argv);
    qInstallMessageHandler(nullptr);
    morvane::prepare_application(application);
    try {
        return run(application);
    } catch (const morvane::RuntimeError& error) {
        morvane::SystemDialogs().show_box(nullptr, morvane::shown_text(error.what()),
                                          morvane::Icon::Critical, {});
    } catch (...) {
        application.report_failure();
    }
    return EXIT_FAILURE;
}
