// SPDX-License-Identifier: GPL-3.0-or-later

// The library browser.

#include "bgl/bgl_files.h"
#include "ui/models/object_model.h"
#include "ui/registry.h"
#include "ui/rig.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>

#include <ctime>
#include <filesystem>
#include <functional>

namespace morvane::test {

class LibraryTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void nothingSelectedDisablesTheCommands();
    void analyseReports();
    void analyseOfAnInvalidFile();
    void compressedFilesAreUnpackedAsInstalled_data();
    void compressedFilesAreUnpackedAsInstalled();
    void rawHeaderIsShownOnRequest();
    void autoClearEmptiesTheReport();
    void clearListEmptiesTheReport();
    void searchListsObjects();
    void searchCanBeStopped();
    void objectsAreSortedAndFiltered();
    void identifierIsCopiedWithOneKey();
    void identifierGoesIntoTheOpenPlacer();
    void makeUniversalAndRevert();
    void onlyBglFilesAreListed();
    void browseSelectsTheFile();
    void folderIsRemembered();
    void tenThousandObjectsAreNoBurden();
};

namespace {

std::string library_bytes(const std::string& name, std::int32_t last_word = 1) {
    LibrarySpec library;
    library.objects = {
        {.guid = {static_cast<std::int32_t>(0xAAAAAAAAU), static_cast<std::int32_t>(0xAAAAAAAAU),
                  static_cast<std::int32_t>(0xAAAAAAAAU), last_word},
         .name = name}};
    return library_file(library);
}

QWidget& open_browser(Rig& rig) {
    click(*rig.form, "Command7");
    return rig.window("LibView");
}

/// Opens the browser on the rig's folder.
QWidget& open_at(Rig& rig) {
    rig.settings.write("libview.ini", rig.folder.path() + "\r\n");
    QWidget& browser = open_browser(rig);
    QTest::qWait(20);
    return browser;
}

void choose_file(QWidget& browser, const QString& name) {
    auto& list = control<QListView>(browser, "File1");
    const auto find = [&] {
        const QModelIndex root = list.rootIndex();
        for (int row = 0; row < list.model()->rowCount(root); ++row) {
            const QModelIndex index = list.model()->index(row, 0, root);
            if (index.data().toString() == name) {
                return index;
            }
        }
        return QModelIndex();
    };
    QTRY_VERIFY(find().isValid());
    list.scrollTo(find());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(find()).center());
}

QString report(const QWidget& browser) {
    return control<QPlainTextEdit>(browser, "tb1").toPlainText();
}

QAbstractItemModel& objects(const QWidget& browser) {
    return *control<QTableView>(browser, "objectTable").model();
}

QString object(const QWidget& browser, int row, int column) {
    return objects(browser).index(row, column).data().toString();
}

const QString identifier = QStringLiteral("0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h");

} // namespace

void LibraryTest::nothingSelectedDisablesTheCommands() {
    Rig rig;
    rig.folder.write("a.bgl", library_bytes("Tower"));
    QWidget& browser = open_at(rig);
    QCOMPARE(browser.windowTitle(), QStringLiteral("Library Browser"));
    for (const char* name : {"Command1", "Command5", "Command6"}) {
        QVERIFY(!control<QAbstractButton>(browser, name).isEnabled());
    }
    choose_file(browser, QStringLiteral("a.bgl"));
    for (const char* name : {"Command1", "Command5", "Command6"}) {
        QVERIFY(control<QAbstractButton>(browser, name).isEnabled());
    }
}

void LibraryTest::analyseReports() {
    Rig rig;
    const std::string path = rig.folder.write("a.bgl", library_bytes("Tower"));
    QWidget& browser = open_at(rig);
    choose_file(browser, QStringLiteral("a.bgl"));
    click(browser, "Command1");
    const QStringList lines = report(browser).split(QLatin1Char('\n'));
    QCOMPARE(lines.front(), QString::fromStdString(path));
    QVERIFY(lines.contains(QStringLiteral(" This is a Visual/Default data file")));
    QVERIFY(lines.contains(QStringLiteral("Library Objects : 1")));
    QVERIFY(lines.contains(
        QStringLiteral(" 0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h, 1.0 0 100 Tower")));
    QVERIFY(rig.settings.read("out.txt").find("Library Objects : 1") != std::string::npos);
    QCOMPARE(objects(browser).rowCount(), 1);
    QVERIFY(control<QListView>(browser, "File1").isEnabled());
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);
}

void LibraryTest::analyseOfAnInvalidFile() {
    Rig rig;
    rig.folder.write("bad.bgl", std::string(200, '\2'));
    QWidget& browser = open_at(rig);
    choose_file(browser, QStringLiteral("bad.bgl"));
    click(browser, "Command1");
    QVERIFY(report(browser).contains(QStringLiteral("This file has not a valid BGL format")));
    QVERIFY(report(browser).contains(QStringLiteral("Raw header data")));
    QVERIFY(rig.settings.has("error.txt"));
}

// bglunpack is beside the program on Windows, in lib/morvane elsewhere.
void LibraryTest::compressedFilesAreUnpackedAsInstalled_data() {
    QTest::addColumn<QString>("helper");
    QTest::newRow("beside the program") << QStringLiteral("prefix/bin/bglunpack.exe");
    QTest::newRow("in lib/morvane") << QStringLiteral("prefix/lib/morvane/bglunpack.exe");
}

void LibraryTest::compressedFilesAreUnpackedAsInstalled() {
#ifdef _WIN32
    QSKIP("the stand-in for wine is a script");
#endif
    QFETCH(const QString, helper);
    Rig rig;
    QCOMPARE(rig.desk.helpers, helper_folders(executable_folder()));
    rig.settings.write("prefix/bin/morvane", "");
    rig.settings.write(helper.toStdString(), "");
    rig.desk.helpers = helper_folders(rig.settings.file("prefix/bin"));
    // wine PROGRAM INPUT OUTPUT FOLDER
    const std::string unpacked = rig.settings.write("unpacked", library_bytes("Inside"));
    const std::string wine =
        rig.settings.write("bin/wine", "#!/bin/sh\nout=$(printf %s \"$3\" | tr '\\\\' /)\ncp '" +
                                           unpacked + "' \"${out#Z:}\"\n");
    std::filesystem::permissions(wine, std::filesystem::perms::owner_all);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QByteArray::fromStdString(rig.settings.file("bin")) + ":" + path);
    LibrarySpec packed{.objects = {{}}};
    packed.header.FL_spare2 = 1;
    rig.folder.write("packed.bgl", library_file(packed));
    QWidget& browser = open_at(rig);
    choose_file(browser, QStringLiteral("packed.bgl"));
    click(browser, "Command1");
    QCOMPARE(objects(browser).rowCount(), 1);
    QVERIFY(report(browser).contains(QStringLiteral(" 1.0 0 100 Inside")));
    // The shelf reads what was unpacked: code that nobody knows, up to its first command.
    control<QTabWidget>(browser, "tabs").setCurrentIndex(2);
    QTRY_VERIFY2(
        control<QLabel>(browser, "shelfAbout").text().contains(QStringLiteral("at offset 0")),
        qPrintable(control<QLabel>(browser, "shelfAbout").text()));
    click(browser, "Command3");
    QCOMPARE(objects(browser).rowCount(), 1);
    QVERIFY(report(browser).contains(QStringLiteral("Compressed lib BGL...: 1")));
    qputenv("PATH", path);
}

void LibraryTest::rawHeaderIsShownOnRequest() {
    Rig rig;
    rig.folder.write("a.bgl", library_bytes("Tower"));
    QWidget& browser = open_at(rig);
    choose_file(browser, QStringLiteral("a.bgl"));
    click(browser, "Command1");
    QVERIFY(!report(browser).contains(QStringLiteral("Raw header data")));
    click(browser, "chkShowRawHdr");
    click(browser, "Command1");
    QVERIFY(report(browser).contains(QStringLiteral("Raw header data")));
}

void LibraryTest::autoClearEmptiesTheReport() {
    Rig rig;
    rig.folder.write("a.bgl", library_bytes("Tower"));
    QWidget& browser = open_at(rig);
    choose_file(browser, QStringLiteral("a.bgl"));
    click(browser, "Command1");
    click(browser, "Command1");
    QCOMPARE(report(browser).count(QStringLiteral("Library Objects : 1")), 2);
    click(browser, "chkClrTb");
    click(browser, "Command1");
    QCOMPARE(report(browser).count(QStringLiteral("Library Objects : 1")), 1);
}

void LibraryTest::clearListEmptiesTheReport() {
    Rig rig;
    rig.folder.write("a.bgl", library_bytes("Tower"));
    QWidget& browser = open_at(rig);
    choose_file(browser, QStringLiteral("a.bgl"));
    click(browser, "Command1");
    click(browser, "Command4");
    QCOMPARE(report(browser), QString());
}

void LibraryTest::searchListsObjects() {
    Rig rig;
    const std::string first = rig.folder.write("one/a.bgl", library_bytes("Tower"));
    rig.folder.write("two/deep/b.BGL", library_bytes("Hangar", 2));
    rig.folder.write("two/c.bgl", object_file());
    QWidget& browser = open_at(rig);
    click(browser, "Command3");
    const QStringList lines = report(browser).split(QLatin1Char('\n'));
    QVERIFY(lines.contains(QString::fromStdString(first) + QStringLiteral(" :1")));
    QVERIFY(lines.contains(identifier + QStringLiteral(",1.0,0,Tower")));
    QVERIFY(lines.contains(QStringLiteral("BGL files scanned....: 3")));
    QVERIFY(lines.contains(QStringLiteral("Library objects......: 2")));
    QCOMPARE(objects(browser).rowCount(), 2);
    QVERIFY(rig.form->isEnabled());
    QVERIFY(!control<QWidget>(browser, "busyBar").isVisible());
}

namespace {

// Does something as soon as events are handled after a widget has been shown.
class WhenShown : public QObject {
  public:
    explicit WhenShown(std::function<void()> act) : act_(std::move(act)) {}

    bool eventFilter(QObject* widget, QEvent* event) override {
        if (event->type() == QEvent::Show) {
            QMetaObject::invokeMethod(this, act_, Qt::QueuedConnection);
        }
        return QObject::eventFilter(widget, event);
    }

  private:
    std::function<void()> act_;
};

} // namespace

void LibraryTest::searchCanBeStopped() {
    Rig rig;
    for (int folder = 0; folder < 150; ++folder) {
        for (int file = 0; file < 20; ++file) {
            rig.folder.write(std::to_string(folder) + "/" + std::to_string(file) + ".bgl",
                             library_bytes("Tower", folder));
        }
    }
    QWidget& browser = open_at(rig);
    bool form_was_held = false;
    auto& stop = control<QAbstractButton>(browser, "stopButton");
    WhenShown watch([&] {
        form_was_held = !rig.form->isEnabled();
        QVERIFY(!browser.close()); // not in the middle of it
        QTest::mouseClick(&stop, Qt::LeftButton);
    });
    stop.installEventFilter(&watch);
    click(browser, "Command3");
    QVERIFY(form_was_held);
    QVERIFY(rig.form->isEnabled());
    QVERIFY(objects(browser).rowCount() < 3000);
    QVERIFY(browser.close());
}

void LibraryTest::objectsAreSortedAndFiltered() {
    Rig rig;
    LibrarySpec library;
    library.objects = {{.guid = {1, 2, 3, 4}, .stored_scale = 32768, .name = "beta"},
                       {.guid = {9, 9, 9, 9}, .stored_scale = 6553, .name = "Alpha"},
                       {.guid = {5, 5, 5, 5}, .stored_scale = 65536, .name = "gamma"}};
    rig.folder.write("a.bgl", library_file(library));
    QWidget& browser = open_at(rig);
    choose_file(browser, QStringLiteral("a.bgl"));
    click(browser, "Command1");
    QCOMPARE(object(browser, 0, ObjectModel::Name), QStringLiteral("Alpha"));
    QCOMPARE(object(browser, 2, ObjectModel::Name), QStringLiteral("gamma"));
    auto& table = control<QTableView>(browser, "objectTable");
    table.sortByColumn(ObjectModel::Scale, Qt::AscendingOrder); // as numbers: 10 is behind 2
    QCOMPARE(object(browser, 0, ObjectModel::Scale), QStringLiteral("1.0"));
    QCOMPARE(object(browser, 1, ObjectModel::Scale), QStringLiteral("2.0"));
    QCOMPARE(object(browser, 2, ObjectModel::Scale), QStringLiteral("10.001"));
    control<QTabWidget>(browser, "tabs").setCurrentIndex(1);
    type(browser, "objectFilter", QStringLiteral("GAM"));
    QCOMPARE(objects(browser).rowCount(), 1);
    type(browser, "objectFilter", QStringLiteral("000000009h"));
    QCOMPARE(object(browser, 0, ObjectModel::Name), QStringLiteral("Alpha"));
    type(browser, "objectFilter", QString());
    QCOMPARE(objects(browser).rowCount(), 3);
}

void LibraryTest::identifierIsCopiedWithOneKey() {
    Rig rig;
    rig.folder.write("a.bgl", library_bytes("Tower"));
    QWidget& browser = open_at(rig);
    choose_file(browser, QStringLiteral("a.bgl"));
    click(browser, "Command1");
    control<QTabWidget>(browser, "tabs").setCurrentIndex(1);
    auto& table = control<QTableView>(browser, "objectTable");
    table.setCurrentIndex(objects(browser).index(0, 0));
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(&table, key);
        QCOMPARE(QGuiApplication::clipboard()->text(), identifier);
    }
    QGuiApplication::clipboard()->clear();
    QTest::keySequence(&table, QKeySequence::Copy);
    QCOMPARE(QGuiApplication::clipboard()->text(), identifier);
}

void LibraryTest::identifierGoesIntoTheOpenPlacer() {
    for (const bool browser_first : {false, true}) {
        Rig rig;
        rig.folder.write("a.bgl", library_bytes("Tower"));
        rig.settings.write("libview.ini", rig.folder.path() + "\r\n");
        if (browser_first) {
            click(*rig.form, "Command7");
        }
        choose(*rig.form, "typeOfObj", QStringLiteral("Library"));
        QWidget& dialog = rig.parameters();
        click(dialog, "Command1");
        QWidget& browser = rig.window("LibView");
        choose_file(browser, QStringLiteral("a.bgl"));
        click(browser, "Command1");
        control<QTabWidget>(browser, "tabs").setCurrentIndex(1);
        control<QTableView>(browser, "objectTable").setCurrentIndex(objects(browser).index(0, 0));
        click(browser, "copyIdentifier");
        QCOMPARE(text_of(dialog, "libGUID"), identifier);
        click(dialog, "Command3");
        QCOMPARE(text_of(*rig.form, "txtinfo"), identifier);
    }
}

void LibraryTest::makeUniversalAndRevert() {
    Rig rig;
    const std::string before = library_bytes("Tower");
    rig.folder.write("a.bgl", before);
    QWidget& browser = open_at(rig);
    choose_file(browser, QStringLiteral("a.bgl"));
    rig.dialogs.answer = false;
    click(browser, "Command5");
    QVERIFY(rig.folder.read("a.bgl") == before);
    rig.dialogs.answer = true;
    click(browser, "Command5");
    QCOMPARE(rig.dialogs.questions.size(), 2U);
    QVERIFY(rig.folder.read("a.bgl") != before);
    QVERIFY(rig.folder.read("a.bgl.bck") == before);
    choose_file(browser, QStringLiteral("a.bgl.bck"));
    click(browser, "Command6");
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("File restored."));
    QVERIFY(rig.folder.read("a.bgl") == before);
    QVERIFY(!rig.folder.has("a.bgl.bck"));
}

void LibraryTest::onlyBglFilesAreListed() {
    Rig rig;
    rig.folder.write("a.BGL", library_bytes("Tower"));
    rig.folder.write("a.BGL.bck", "x");
    rig.folder.write("notes.txt", "x");
    QWidget& browser = open_at(rig);
    const auto& list = control<QListView>(browser, "File1");
    QTRY_COMPARE(list.model()->rowCount(list.rootIndex()), 2);
    click(browser, "chkAllFiles");
    QTRY_COMPARE(list.model()->rowCount(list.rootIndex()), 3);
}

void LibraryTest::browseSelectsTheFile() {
    Rig rig;
    const QString path =
        QString::fromStdString(rig.folder.write("deep/a.bgl", library_bytes("Tower")));
    QWidget& browser = open_browser(rig);
    rig.dialogs.files = {path};
    click(browser, "Command2");
    QVERIFY(rig.dialogs.filters[0].startsWith(QStringLiteral("BGL file (*.bgl)")));
    QTRY_COMPARE(text_of(browser, "inpFilename"), path);
    QTRY_VERIFY(control<QAbstractButton>(browser, "Command1").isEnabled());
    click(browser, "Command1");
    QVERIFY(report(browser).startsWith(path));
}

void LibraryTest::folderIsRemembered() {
    Rig rig;
    rig.folder.write("deep/a.bgl", "x");
    QWidget& browser = open_browser(rig);
    rig.dialogs.files = {QString::fromStdString(rig.folder.file("deep/a.bgl"))};
    click(browser, "Command2");
    browser.close();
    QCOMPARE(rig.settings.read("libview.ini"), rig.folder.file("deep") + "\r\n");
}

void LibraryTest::tenThousandObjectsAreNoBurden() {
    Rig rig;
    std::mt19937 random(7);
    for (int file = 0; file < 5; ++file) {
        LibrarySpec library;
        library.objects = random_objects(random, 2000);
        rig.folder.write(std::to_string(file) + ".bgl", library_file(library));
    }
    QWidget& browser = open_at(rig);
    const std::clock_t start = std::clock(); // the processor's time: others may be busy too
    click(browser, "Command3");
    QCOMPARE(objects(browser).rowCount(), 10000);
    control<QTabWidget>(browser, "tabs").setCurrentIndex(1);
    type(browser, "objectFilter", QStringLiteral("a"));
    type(browser, "objectFilter", QString());
    QCoreApplication::processEvents();
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    QVERIFY2(seconds < 8, qPrintable(QString::number(seconds)));
}

namespace {
const Registration<LibraryTest> registration("library");
}

} // namespace morvane::test

#include "library_test.moc"
