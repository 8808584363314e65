// SPDX-License-Identifier: GPL-3.0-or-later

// Takes the pictures of the user guide: every form, in light and dark.
//   screenshots FOLDER [SUFFIX] [WIDTHxHEIGHT]     QT_SCALE_FACTOR sets the scale
// With a size also the main window of that size, with each of its panels in front, and the forms
// that the guide does not show: to be looked at.

#include "bgl/bgl_files.h"
#include "scene/drawing_code.h"
#include "support/source_folder.h"
#include "ui/appearance.h"
#include "ui/program.h"
#include "ui/rig.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QListView>
#include <QListWidget>
#include <QPixmap>
#include <QTabWidget>
#include <QTableView>

#include <filesystem>
#include <random>
#include <utility>
#include <vector>

namespace morvane::test {
namespace {

class Album {
  public:
    Album(QString folder, QString suffix, QSize size)
        : folder_(std::move(folder)), suffix_(std::move(suffix)), size_(size) {}

    /// For the guide only with the sizes that the guide has.
    bool is_guide() const { return size_.isEmpty(); }
    const QSize& size() const { return size_; }

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
    QSize size_;
};

void bound(QWidget& window, const Album& album) {
    if (!album.is_guide()) {
        window.resize(window.size().boundedTo(album.size()));
    }
}

void resize(QWidget& window, const Album& album, const QSize& guide_size) {
    window.resize(album.is_guide() ? guide_size : album.size());
}

void take_dialog(Rig& rig, const Album& album, const QString& kind, const QString& name) {
    choose(*rig.form, "typeOfObj", kind);
    QWidget& dialog = rig.parameters();
    album.take(dialog, name);
    dialog.close();
}

void take_main_window(Rig& rig, const Album& album) {
    resize(*rig.form, album, {1180, 760});
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
    QTest::qWait(300); // what it shows follows after a while
    album.take(*rig.form, name);
}

void take_views(Rig& rig, const Album& album) {
    const QSize size = rig.form->size();
    resize(*rig.form, album, {1280, 720});
    QTest::qWait(600); // the list of problems is made after a while
    trigger(*rig.form, "actionNextProblem");
    take_panel(rig, album, "problemDock", QStringLiteral("problems"));
    rig.select(3);
    take_panel(rig, album, "codeDock", QStringLiteral("code"));
    rig.select(1);
    trigger(*rig.form, "actionShowSource");
    QWidget& source = rig.window("SourceWindow");
    resize(source, album, {1280, 720});
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

struct Part {
    float width, height, depth, x, y, z;
};

// Each box in a colour of its own, from bottom to top.
std::string drawing(const std::vector<Part>& parts) {
    DrawingCode code;
    code.materials({{{0.72F, 0.66F, 0.58F, 1}, {0.72F, 0.66F, 0.58F}},
                    {{0.55F, 0.22F, 0.18F, 1}, {0.55F, 0.22F, 0.18F}},
                    {{0.35F, 0.45F, 0.55F, 1}, {0.35F, 0.45F, 0.55F}}});
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const Part& part = parts[i];
        code.material(static_cast<int>(i % 3))
            .box(part.width, part.height, part.depth, part.x, part.y, part.z);
    }
    return code.end().bytes();
}

std::vector<std::string> drawings() {
    const std::string fence = drawing({{10, 2, 0.1F, 0, 0, 0}, {0.2F, 2.2F, 0.2F, -5, 0, 0}});
    return {drawing({{16, 6, 12, 0, 0, 0}, {17, 1, 13, 0, 6, 0}}),
            drawing({{40, 11, 30, 0, 0, 0}, {42, 1, 32, 0, 11, 0}, {20, 8, 0.3F, 0, 0, -15}}),
            drawing({{6, 18, 6, 0, 0, 0}, {9, 1, 9, 0, 18, 0}, {8, 3, 8, 0, 19, 0}}),
            drawing({{2.4F, 1, 7, 0, 0.6F, 0}, {2.2F, 1.6F, 4.6F, 0, 1.6F, -1}}),
            drawing({{2.6F, 1, 8, 0, 0.6F, 0}, {2.4F, 1.8F, 2, 0, 1.6F, 2.8F}}),
            drawing({{1.5F, 40, 1.5F, 0, 0, 0}, {1, 1, 1, 0, 40, 1}, {24, 1, 0.4F, 0, 40, 1.6F}}),
            drawing({{1.2F, 14, 1.2F, 0, 0, 0}, {7, 5, 7, 0, 14, 0}}),
            drawing({{8, 5, 8, 0, 0, 0}, {6, 1, 6, 0, 5, 0}, {7, 6, 7, 0, 6, 0}}),
            drawing({{2.5F, 3, 12, 0, 0.4F, 0}}),
            drawing({{2, 1.5F, 2, 0, 0, 0}, {0.7F, 2.4F, 0.5F, 0, 1.5F, 0}}),
            fence,
            DrawingCode().word(0x7777).bytes()};
}

QString write_library(const Rig& rig) {
    std::mt19937 random(2002);
    LibrarySpec library;
    library.objects = random_objects(random, 12);
    const std::vector<std::string> codes = drawings();
    const char* names[] = {"Hangar, small", "Hangar, large", "Control tower", "Fuel truck",
                           "Fire engine",   "Wind turbine",  "Water tower",   "Radar dome",
                           "Passenger bus", "Statue",        "Fence, 10 m",   "Fence, 50 m"};
    for (std::size_t i = 0; i < library.objects.size(); ++i) {
        library.objects[i].name = names[i];
        library.objects[i].power = 100;
        library.objects[i].type = 0;
        library.objects[i].code = codes[i];
        library.objects[i].stored_scale = i % 3 == 0 ? 131072 : 65536;
    }
    return QString::fromStdString(
        rig.folder.write("scenery/airport_objects.bgl", library_file(library)));
}

void take_browser(Rig& rig, const Album& album) {
    rig.dialogs.files = {write_library(rig)};
    click(*rig.form, "Command7");
    QWidget& browser = rig.window("LibView");
    browser.resize(960, 620);
    bound(browser, album);
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
    tabs.setCurrentIndex(2);
    auto& shelf = control<QListView>(browser, "shelfList");
    shelf.setCurrentIndex(shelf.model()->index(1, 0));
    click(browser, "turnObject");
    QTest::qWait(1500); // the pictures are made while nothing else is to be done
    album.take(browser, QStringLiteral("library-browser-shelf"));
}

void take_project(Rig& rig, const Album& album) {
    for (const char* name : {"project", "aircraft-flex", "library"}) {
        std::filesystem::copy(source_folder() + "/examples/" + name, rig.folder.file(name),
                              std::filesystem::copy_options::recursive);
    }
    std::filesystem::copy(source_folder() + "/share/morvane.inc",
                          rig.folder.file("project/morvane.inc"));
    rig.dialogs.files = {QString::fromStdString(rig.folder.file("project/morvane.toml"))};
    trigger(*rig.form, "actionOpenProject");
    QWidget& project = rig.window("ProjectWindow");
    project.resize(960, 480);
    bound(project, album);
    click(project, "buildAll");
    control<QLabel>(project, "projectFile").setText(QStringLiteral("project/morvane.toml"));
    QTest::qWait(1500);
    album.take(project, QStringLiteral("project"));
}

// What is nowhere in the guide.
void take_rest(Rig& rig, const Album& album) {
    for (const auto& [dock, name] :
         {std::pair("historyDock", "history"), std::pair("compilerDock", "compiler")}) {
        take_panel(rig, album, dock, QString::fromLatin1(name));
    }
    control<QDockWidget>(*rig.form, "messagesDock").raise();
    trigger(*rig.form, "actionWatchExport");
    rig.folder.write("airport/airport_0.asm",
                     read_file(rig.folder.file("airport/airport_0.asm")) + "; again\r\n");
    rig.folder.write("airport/airport.asm", read_file(rig.folder.file("airport/airport.asm")));
    QTest::qWait(3000);
    album.take(*rig.form, QStringLiteral("watch-bar"));
    trigger(*rig.form, "actionWatchExport");
    click(*rig.form, "sceneDetails");
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits("morvane::SceneDetails")) {
            album.take(*window, QStringLiteral("details"));
            window->close();
        }
    }
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
    take_project(rig, album);
    take_compiler(rig, album);
    click(*rig.form, "Command9");
    QTest::qWait(50);
    type(rig.window("frmLabelRename"), "lblAdition", QStringLiteral("G2"));
    album.take(rig.window("frmLabelRename"), QStringLiteral("label-rename"));
}

void take_all(const QString& folder, const QString& suffix, const QSize& size) {
    for (const Appearance appearance : {Appearance::Light, Appearance::Dark}) {
        apply_appearance(appearance);
        Rig rig;
        QDir::setCurrent(QString::fromStdString(rig.folder.path()));
        const Album album(folder, QLatin1Char('-') + appearance_name(appearance) + suffix, size);
        take_main_window(rig, album);
        take_views(rig, album);
        if (!album.is_guide()) {
            take_rest(rig, album);
        }
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
        qFatal("usage: screenshots FOLDER [SUFFIX] [WIDTHxHEIGHT]");
    }
    const QStringList sides = arguments.value(3).split(QLatin1Char('x'));
    morvane::test::take_all(QDir(arguments.at(1)).absolutePath(), arguments.value(2),
                            {sides.value(0).toInt(), sides.value(1).toInt()});
}
