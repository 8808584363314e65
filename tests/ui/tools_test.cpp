// SPDX-License-Identifier: GPL-3.0-or-later

// What people expect of the tool forms, and of a window on a narrow screen.

#include "bgl/bgl_files.h"
#include "ui/models/material_model.h"
#include "ui/registry.h"
#include "ui/rig.h"

#include <QCheckBox>
#include <QDir>
#include <QDropEvent>
#include <QHeaderView>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QScrollBar>
#include <QSplitter>
#include <QTimer>
#include <QTreeView>
#include <QUrl>

#include <algorithm>
#include <random>

namespace morvane::test {

class ToolsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void chosenFolderSurvivesALookAtTheMainWindow();
    void chosenFolderIsInViewWithItsPath();
    void listOfTheCompilerIsSavedAndOpened();
    void severalDesignsAreAddedAtOnce();
    void everyObjectGetsAnIdentifierOfItsOwn();
    void outputGetsItsEnding();
    void unsavedListIsAskedAbout();
    void overflowBoxCanBeSilencedForOneSearch();
    void repeatedBoxOffersToBeSilenced();
    void pathGivenAtTheStartBecomesAbsolute();
    void boxesAndSplittersOfTheBrowserAreKept();
    void longParametersAreReachedByScrolling();
    void withNothingOpenCommandsSayWhatIsMissing();
};

namespace {

QWidget& open_tool(Rig& rig, const char* button, const char* name) {
    click(*rig.form, button);
    return rig.window(name);
}

QWidget& open_browser(Rig& rig) {
    QWidget& browser = open_tool(rig, "Command7", "LibView");
    QTest::qWait(20); // until it is the active window
    return browser;
}

QWidget& open_compiler(Rig& rig) {
    return open_tool(rig, "Command13", "frmLibComp");
}

QString folder_of(const Rig& rig, const std::string& name) {
    return QString::fromStdString(rig.folder.file(name));
}

void browse_to(Rig& rig, QWidget& browser, const QString& file) {
    rig.dialogs.files = {file};
    click(browser, "Command2");
}

QString path_shown(const QWidget& browser) {
    return control<QLineEdit>(browser, "folderPath").text();
}

// A design in the rig's folder; returns its frame file.
QString write_design(const Rig& rig, const std::string& name) {
    rig.folder.write(name + "_0.asm", "    BGL_RETURN\r\n");
    return QString::fromStdString(rig.folder.write(
        name + ".asm", "    SCALE_AGL OBJ_END, 5, 40, 65536, 0100h, 0, 0200h, 0, 0, 0\r\n"));
}

QListWidget& objects(const QWidget& compiler) {
    return control<QListWidget>(compiler, "libFileList");
}

QStringList identifiers(QWidget& compiler) {
    QStringList found;
    for (int line = 0; line < objects(compiler).count(); ++line) {
        objects(compiler).setCurrentRow(line);
        found.append(text_of(compiler, "libGUID"));
    }
    return found;
}

QStringList lines(const QWidget& compiler) {
    QStringList texts;
    for (int line = 0; line < objects(compiler).count(); ++line) {
        texts.append(objects(compiler).item(line)->text());
    }
    return texts;
}

void drop(QWidget& target, const QStringList& files) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files) {
        urls.append(QUrl::fromLocalFile(file));
    }
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &enter);
    QDropEvent event(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &event);
}

} // namespace

void ToolsTest::chosenFolderSurvivesALookAtTheMainWindow() {
    Rig rig;
    const QString file = QString::fromStdString(rig.folder.write("deep/down/a.bgl", "x"));
    QWidget& browser = open_browser(rig);
    browse_to(rig, browser, file);
    const QString chosen = QDir::toNativeSeparators(folder_of(rig, "deep/down"));
    QCOMPARE(path_shown(browser), chosen);
    QCOMPARE(rig.settings.read("libview.ini"), chosen.toStdString() + "\r\n"); // at once
    QApplication::setActiveWindow(rig.form.get());
    QCoreApplication::processEvents();
    QApplication::setActiveWindow(&browser);
    QCoreApplication::processEvents();
    QCOMPARE(path_shown(browser), chosen);
    const auto& tree = control<QTreeView>(browser, "Dir1");
    QCOMPARE(tree.currentIndex().data().toString(), QStringLiteral("down"));
}

void ToolsTest::chosenFolderIsInViewWithItsPath() {
    Rig rig;
    for (int folder = 0; folder < 60; ++folder) {
        rig.folder.write("f" + std::to_string(100 + folder) + "/a.bgl", "x");
    }
    QWidget& browser = open_browser(rig);
    browse_to(rig, browser, folder_of(rig, "f158/a.bgl"));
    auto& tree = control<QTreeView>(browser, "Dir1");
    const auto is_in_view = [&] {
        const QRect row = tree.visualRect(tree.currentIndex());
        return row.isValid() && row.top() >= 0 && row.bottom() <= tree.viewport()->height();
    };
    QTRY_VERIFY(is_in_view());
    QTest::qWait(200); // while the folders above it go on filling up
    QVERIFY(is_in_view());
    QCOMPARE(tree.currentIndex().data().toString(), QStringLiteral("f158"));
    const auto& path = control<QLineEdit>(browser, "folderPath");
    QCOMPARE(path.text(), QDir::toNativeSeparators(folder_of(rig, "f158")));
    const auto& files = control<QWidget>(browser, "File1");
    QVERIFY(path.mapTo(&browser, QPoint(0, path.height())).y() <=
            files.mapTo(&browser, QPoint()).y());
}

void ToolsTest::listOfTheCompilerIsSavedAndOpened() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    rig.dialogs.several = {write_design(rig, "tower"), write_design(rig, "hangar")};
    click(compiler, "Command1");
    const QStringList made = identifiers(compiler);
    rig.dialogs.files = {folder_of(rig, "objects")}; // the ending is added
    click(compiler, "saveList");
    // As the command line writes and reads it.
    const std::string text = rig.folder.read("objects.toml");
    QVERIFY2(text.find("[[object]]") != std::string::npos, text.c_str());
    QVERIFY(text.find("\"tower\"") != std::string::npos); // relative to the list
    objects(compiler).setCurrentRow(0);
    click(compiler, "Command3");
    QCOMPARE(objects(compiler).count(), 1);
    rig.dialogs.unsaved = Unsaved::Discard;
    rig.dialogs.files = {folder_of(rig, "objects.toml")};
    click(compiler, "openList");
    QCOMPARE(lines(compiler), QStringList({folder_of(rig, "tower"), folder_of(rig, "hangar")}));
    QCOMPARE(identifiers(compiler), made);
}

void ToolsTest::severalDesignsAreAddedAtOnce() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    const QString tower = write_design(rig, "tower");
    const QString hangar = write_design(rig, "hangar");
    rig.dialogs.several = {tower, hangar};
    click(compiler, "Command1");
    QCOMPARE(lines(compiler), QStringList({folder_of(rig, "tower"), folder_of(rig, "hangar")}));
    drop(compiler, {tower, hangar});
    QCOMPARE(objects(compiler).count(), 4);
    QVERIFY2(rig.dialogs.boxes.empty(), qPrintable(rig.dialogs.take_box()));
}

void ToolsTest::everyObjectGetsAnIdentifierOfItsOwn() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    rig.dialogs.several = {write_design(rig, "a"), write_design(rig, "b"), write_design(rig, "c")};
    click(compiler, "Command1");
    QStringList found = identifiers(compiler);
    QCOMPARE(found.size(), 3);
    QCOMPARE(found.removeDuplicates(), 0);
    const QString before = text_of(compiler, "libGUID");
    click(compiler, "newIdentifier");
    QVERIFY(text_of(compiler, "libGUID") != before);
    QCOMPARE(text_of(compiler, "libGUID").split(QLatin1Char(',')).size(), 4);
}

void ToolsTest::outputGetsItsEnding() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    rig.dialogs.files = {folder_of(rig, "library")};
    click(compiler, "Command5");
    QCOMPARE(text_of(compiler, "libOutFile"), folder_of(rig, "library.asm"));
    rig.dialogs.files = {folder_of(rig, "other.txt")}; // what was typed counts
    click(compiler, "Command5");
    QCOMPARE(text_of(compiler, "libOutFile"), folder_of(rig, "other.txt"));
}

void ToolsTest::unsavedListIsAskedAbout() {
    Rig rig;
    QWidget& compiler = open_compiler(rig);
    rig.dialogs.several = {write_design(rig, "tower"), write_design(rig, "hangar")};
    click(compiler, "Command1");
    rig.dialogs.unsaved = Unsaved::Cancel;
    click(compiler, "openList");
    QCOMPARE(rig.dialogs.unsaved_asked, 1);
    QCOMPARE(objects(compiler).count(), 2);
    QVERIFY(!rig.form->close()); // which would end the program
    QCOMPARE(rig.dialogs.unsaved_asked, 2);
    rig.dialogs.unsaved = Unsaved::Save;
    rig.dialogs.files = {folder_of(rig, "objects.toml")};
    QVERIFY(rig.form->close());
    QVERIFY(rig.folder.has("objects.toml"));
}

// Two searches over reports that overflow many times.
void ToolsTest::overflowBoxCanBeSilencedForOneSearch() {
    Rig rig;
    std::mt19937 random(11);
    for (int file = 0; file < 3; ++file) {
        LibrarySpec library;
        library.objects = random_objects(random, 1500);
        rig.folder.write(std::to_string(file) + ".bgl", library_file(library));
    }
    rig.settings.write("libview.ini", rig.folder.path() + "\r\n");
    QWidget& browser = open_browser(rig);
    const QString text = QStringLiteral("Too many data for output box. The complete list can be "
                                        "examined from file 'Out.txt'.");
    click(browser, "Command3");
    const std::size_t overflows = rig.dialogs.boxes.size();
    QVERIFY(overflows > 2); // at every one
    QCOMPARE(rig.dialogs.boxes[0].text, text);
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::Exclamation);
    for (int search = 0; search < 2; ++search) { // each search begins anew
        rig.dialogs.boxes.clear();
        rig.dialogs.no_more_boxes = true;
        click(browser, "Command3");
        QCOMPARE(rig.dialogs.take_box(), text);
    }
}

void ToolsTest::repeatedBoxOffersToBeSilenced() {
    Rig rig;
    SystemDialogs dialogs;
    for (const bool wanted : {true, false}) {
        QString shown;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            shown = box->checkBox()->text();
            box->checkBox()->setChecked(wanted);
            box->button(QMessageBox::Ok)->click();
        });
        QCOMPARE(dialogs.show_repeated_box(rig.form.get(), QStringLiteral("Too many"),
                                           Icon::Exclamation),
                 wanted);
        QCOMPARE(shown.remove(QLatin1Char('&')),
                 QStringLiteral("Do not show again in this search"));
    }
}

void ToolsTest::pathGivenAtTheStartBecomesAbsolute() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(QString::fromStdString(rig.folder.path())));
    for (const char* given : {"airport/airport", "airport/airport_0.asm", "airport/airport.asm"}) {
        type(*rig.form, "InputFile", QString());
        rig.form->open_file(QString::fromLatin1(given));
        QCOMPARE(text_of(*rig.form, "InputFile"), base);
    }
    QDir::setCurrent(before);
    auto& recent = control<QMenu>(*rig.form, "menuRecent");
    Q_EMIT recent.aboutToShow(); // found from any folder
    QCOMPARE(recent.actions().size(), 1);
    QCOMPARE(recent.actions()[0]->text(), base);
}

void ToolsTest::boxesAndSplittersOfTheBrowserAreKept() {
    Rig rig;
    QWidget* browser = &open_browser(rig);
    const auto checked = [&](const char* name) {
        return control<QCheckBox>(*browser, name).isChecked();
    };
    const bool clears = checked("chkClrTb");
    const bool header = checked("chkShowRawHdr");
    click(*browser, "chkClrTb");
    click(*browser, "chkShowRawHdr");
    auto* splitter = &control<QSplitter>(*browser, "splitter");
    splitter->setSizes({300, browser->width() - 300});
    const QList<int> sizes = splitter->sizes();
    browser->close();
    rig.restart();
    browser = &open_browser(rig);
    QCOMPARE(checked("chkClrTb"), !clears);
    QCOMPARE(checked("chkShowRawHdr"), !header);
    splitter = &control<QSplitter>(*browser, "splitter");
    QTRY_COMPARE(splitter->sizes(), sizes);
}

void ToolsTest::longParametersAreReachedByScrolling() {
    Rig rig;
    rig.form->resize(1280, 720);
    rig.open(rig.copy_example("airport"));
    auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    QVERIFY2(list.width() < 500, qPrintable(QString::number(list.width())));
    QCoreApplication::processEvents();
    const int before = list.horizontalScrollBar()->maximum();
    choose(*rig.form, "typeOfObj", QStringLiteral("Library New"));
    rig.select(1);
    click(*rig.form, "Command1");
    const QString text = list.model()->index(0, MaterialModel::Parameters).data().toString();
    QCOMPARE(text, QStringLiteral("05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h"));
    QTRY_VERIFY(list.horizontalScrollBar()->maximum() > before + 100);
    QVERIFY(list.columnWidth(MaterialModel::Parameters) >
            list.fontMetrics().horizontalAdvance(text));
    list.horizontalScrollBar()->setValue(list.horizontalScrollBar()->maximum());
    const QRect cell = list.visualRect(list.model()->index(0, MaterialModel::Parameters));
    QVERIFY(cell.right() <= list.viewport()->width());
    trigger(*rig.form, "actionUndo");
    QTRY_COMPARE(list.horizontalScrollBar()->maximum(), before);
}

// They stay enabled, since each has an answer of its own.
void ToolsTest::withNothingOpenCommandsSayWhatIsMissing() {
    Rig rig;
    click(*rig.form, "Command1");
    QCOMPARE(
        rig.dialogs.take_box(),
        QStringLiteral("Error ! Please select material and set processing parameters first !!"));
    click(*rig.form, "Command3");
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("No material matches"));
    QWidget& dialog = rig.parameters(); // of the next set
    click(dialog, "Command2");
    QVERIFY(control<QWidget>(*rig.form, "Command12").isEnabled()); // its path is in the output box
}

namespace {
const Registration<ToolsTest> registration("tools");
}

} // namespace morvane::test

#include "tools_test.moc"
