// SPDX-License-Identifier: GPL-3.0-or-later

// Takes the pictures of the user guide: every form, in light and dark.
//   screenshots FOLDER SUFFIX     QT_SCALE_FACTOR sets the size

#include "bgl/bgl_files.h"
#include "ui/appearance.h"
#include "ui/program.h"
#include "ui/rig.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QListWidget>
#include <QPixmap>
#include <QTabWidget>
#include <QTableView>

#include <random>

namespace morvane::test {
namespace {

class Album {
  public:
    Album(QString folder, QString suffix)
        : folder_(std::move(folder)), suffix_(std::move(suffix)) {}

    void take(QWidget& window, const QString& name) const {
        QTest::qWait(80); // lists of folders fill themselves behind the scenes
        const QString file = folder_ + QLatin1Char('/') + name + suffix_ + QStringLiteral(".png");
        if (!window.grab().save(file)) {
            qFatal("cannot write %s", qPrintable(file));
        }
    }

  private:
    QString folder_;
    QString suffix_;
};

void take_dialog(Rig& rig, const Album& album, const QString& kind, const QString& name) {
    choose(*rig.form, "typeOfObj", kind);
    QWidget& dialog = rig.parameters();
    album.take(dialog, name);
    dialog.close();
}

void take_main_window(Rig& rig, const Album& album) {
    rig.form->resize(1180, 760);
    rig.copy_example("airport");
    rig.open(QStringLiteral("airport/airport"));
    rig.select(1);
    click(*rig.form, "Command1");
    rig.select(2);
    choose(*rig.form, "typeOfObj", QStringLiteral("Library New"));
    click(*rig.form, "Command1");
    rig.select(3);
    choose(*rig.form, "typeOfObj", QStringLiteral("Lights"));
    album.take(*rig.form, QStringLiteral("main-window"));
}

// After what take_main_window does: a panel in front, and something selected.
void take_panel(Rig& rig, const Album& album, const char* dock, const QString& name) {
    auto& panel = control<QDockWidget>(*rig.form, dock);
    panel.raise();
    QTest::qWait(300); // the list of problems is made after a while
    album.take(*rig.form, name);
}

void take_views(Rig& rig, const Album& album) {
    const QSize size = rig.form->size();
    rig.form->resize(1280, 720);
    trigger(*rig.form, "actionNextProblem");
    take_panel(rig, album, "problemDock", QStringLiteral("problems"));
    rig.select(3);
    take_panel(rig, album, "codeDock", QStringLiteral("code"));
    rig.select(1);
    trigger(*rig.form, "actionShowSource");
    QWidget& source = rig.window("SourceWindow");
    source.resize(1280, 720);
    album.take(source, QStringLiteral("source"));
    source.close();
    rig.select(3);
    control<QDockWidget>(*rig.form, "messagesDock").raise();
    rig.form->resize(size);
}

void take_dialogs(Rig& rig, const Album& album) {
    take_dialog(rig, album, QStringLiteral("Lights"), QStringLiteral("lights"));
    take_dialog(rig, album, QStringLiteral("Effects"), QStringLiteral("effects"));
    take_dialog(rig, album, QStringLiteral("Windsock"), QStringLiteral("windsock"));
    take_dialog(rig, album, QStringLiteral("Library"), QStringLiteral("library-placer"));
}

QString write_library(const Rig& rig) {
    std::mt19937 random(2002);
    LibrarySpec library;
    library.objects = random_objects(random, 12);
    const char* names[] = {"Hangar, small", "Hangar, large", "Control tower", "Fuel truck",
                           "Fire engine",   "Wind turbine",  "Water tower",   "Radar dome",
                           "Passenger bus", "Statue",        "Fence, 10 m",   "Fence, 50 m"};
    for (std::size_t i = 0; i < library.objects.size(); ++i) {
        library.objects[i].name = names[i];
        library.objects[i].power = 100;
        library.objects[i].type = 0;
        library.objects[i].stored_scale = i % 3 == 0 ? 131072 : 65536;
    }
    return QString::fromStdString(
        rig.folder.write("scenery/airport_objects.bgl", library_file(library)));
}

void take_browser(Rig& rig, const Album& album) {
    rig.dialogs.files = {write_library(rig)};
    click(*rig.form, "Command7");
    QWidget& browser = rig.window("LibView");
    click(browser, "Command2");
    QTest::qWait(200);
    click(browser, "Command1");
    // Where the pictures were taken is nobody's business.
    auto& folders = control<QTreeView>(browser, "Dir1");
    folders.setRootIndex(folders.currentIndex().parent());
    control<QLineEdit>(browser, "inpFilename")
        .setText(QStringLiteral("scenery/airport_objects.bgl"));
    control<QLineEdit>(browser, "folderPath").setText(QStringLiteral("scenery"));
    album.take(browser, QStringLiteral("library-browser"));
    auto& tabs = control<QTabWidget>(browser, "tabs");
    tabs.setCurrentIndex(1);
    auto& table = control<QTableView>(browser, "objectTable");
    table.setCurrentIndex(table.model()->index(2, 0));
    album.take(browser, QStringLiteral("library-browser-objects"));
}

void take_model(Rig& rig, const Album& album) {
    rig.settings.write("model.ini", "md001\r\naircraft/complete\r\naircraft/fuselage\r\n"
                                    "aircraft/wings_high\r\naircraft/wings_low\r\n"
                                    "aircraft/shadow\r\n");
    click(*rig.form, "Command6");
    QWidget& model = rig.window("frmModel");
    click(model, "chkWings");
    album.take(model, QStringLiteral("model-modifier"));
}

void take_compiler(Rig& rig, const Album& album) {
    click(*rig.form, "Command13");
    QWidget& compiler = rig.window("frmLibComp");
    int last_word = 0;
    for (const char* name : {"hangar", "tower", "fuel_truck"}) {
        const std::string base = std::string("library/") + name;
        rig.folder.write(base + ".asm",
                         "    SCALE_AGL OBJ_END, 5, 40, 65536, 0100h, 0, 0200h, 0\r\n");
        rig.folder.write(base + "_0.asm", "    BGL_RETURN\r\n");
        rig.dialogs.files = {QString::fromStdString(base + ".asm")};
        click(compiler, "Command1");
        type(compiler, "libGUID",
             QStringLiteral("03B8C61F5, 04A02D7E9, 0C58D14B6, 00000000%1").arg(++last_word));
        click(compiler, "Command2");
    }
    control<QListWidget>(compiler, "libFileList").setCurrentRow(1);
    type(compiler, "libOutFile", QStringLiteral("library/library.asm"));
    album.take(compiler, QStringLiteral("library-compiler"));
}

void take_tools(Rig& rig, const Album& album) {
    take_model(rig, album);
    take_browser(rig, album);
    take_compiler(rig, album);
    click(*rig.form, "Command9");
    QTest::qWait(50);
    type(rig.window("frmLabelRename"), "lblAdition", QStringLiteral("G2"));
    album.take(rig.window("frmLabelRename"), QStringLiteral("label-rename"));
}

void take_all(const QString& folder, const QString& suffix) {
    for (const Appearance appearance : {Appearance::Light, Appearance::Dark}) {
        apply_appearance(appearance);
        Rig rig;
        QDir::setCurrent(QString::fromStdString(rig.folder.path()));
        const Album album(folder, QLatin1Char('-') + appearance_name(appearance) + suffix);
        take_main_window(rig, album);
        take_views(rig, album);
        take_dialogs(rig, album);
        take_tools(rig, album);
        rig.dialogs.unsaved = Unsaved::Discard;
        rig.form->close();
    }
}

} // namespace
} // namespace morvane::test

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    morvane::prepare_application(application);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        qFatal("usage: screenshots FOLDER [SUFFIX]");
    }
    morvane::test::take_all(QDir(arguments.at(1)).absolutePath(), arguments.value(2));
}
