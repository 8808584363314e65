// SPDX-License-Identifier: GPL-3.0-or-later

// The shelf of the library browser: objects as pictures, and their way to a material.

#include "bgl/bgl_files.h"
#include "scene/drawing_code.h"
#include "ui/library_browser/shape_view.h"
#include "ui/library_browser/shelf.h"
#include "ui/models/object_model.h"
#include "ui/picture_rig.h"
#include "ui/registry.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QLabel>
#include <QListView>
#include <QMimeData>
#include <QPushButton>
#include <QTabWidget>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace morvane::test {

class ShelfTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void isEmptyAtFirst();
    void picturesAreMadeWhileIdle();
    void whatCannotBeDrawnSaysHowFarItIsUnderstood();
    void isFilteredAndSorted();
    void selectedObjectIsShownLargeAndTurns();
    void enterMakesLibraryNewWithTheObjectsOwnScale();
    void enterWithNothingSelectedSaysSo();
    void enterFillsTheOpenPlacer();
    void objectIsDraggedOntoAMaterial();
    void twoThousandObjectsOpenAtOnce();
    void foundObjectsAreDrawnInThePicture();
    void keepsTheRulesOfModels();
    void isReachedByTheKeyboard();
};

namespace {

constexpr Guid128 hangar_guid{0x11111111, 0x22222222, 0x33333333, 0x44444444};
const QString hangar_text = QStringLiteral("011111111h,022222222h,033333333h,044444444h");

std::string box_code(float width, float height) {
    return DrawingCode()
        .materials({{{0.8F, 0.5F, 0.3F, 1}, {0.8F, 0.5F, 0.3F}}})
        .material(0)
        .box(width, height, width)
        .end()
        .bytes();
}

ObjectSpec object_of(const std::string& name, const Guid128& guid, const std::string& code,
                     std::int32_t stored_scale = 65536) {
    ObjectSpec object;
    object.name = name;
    object.guid = guid;
    object.code = code;
    object.stored_scale = stored_scale;
    return object;
}

// A hangar at half its size, a mast, and an object with a command that nobody knows.
void write_three(const Rig& rig) {
    LibrarySpec library;
    library.objects = {
        object_of("Hangar", hangar_guid, box_code(20, 8), 131072),
        object_of("Antenna", {1, 2, 3, 5}, box_code(1, 30), 65536),
        object_of("Broken", {1, 2, 3, 6}, DrawingCode().word(0x7777).bytes(), 32768)};
    rig.folder.write("three.bgl", library_file(library));
}

QWidget& open_shelf(Rig& rig, const QString& file) {
    rig.dialogs.files = {QString::fromStdString(rig.folder.file(file.toStdString()))};
    click(*rig.form, "Command7");
    QWidget& browser = rig.window("LibView");
    click(browser, "Command2"); // Browse
    const auto& analyse = control<QPushButton>(browser, "Command1");
    if (!QTest::qWaitFor([&] { return analyse.isEnabled(); })) {
        qFatal("the file is not in the list");
    }
    control<QTabWidget>(browser, "tabs").setCurrentIndex(2);
    click(browser, "Command1");
    return browser;
}

QListView& shelf_list(const QWidget& browser) {
    return control<QListView>(browser, "shelfList");
}

QStringList names(const QWidget& browser) {
    QStringList result;
    const QAbstractItemModel& model = *shelf_list(browser).model();
    for (int row = 0; row < model.rowCount(); ++row) {
        result.append(model.index(row, ObjectModel::Name).data().toString());
    }
    return result;
}

QString about(const QWidget& browser) {
    return control<QLabel>(browser, "shelfAbout").text();
}

void select_object(const QWidget& browser, const QString& name) {
    shelf_list(browser).setCurrentIndex(
        shelf_list(browser).model()->index(static_cast<int>(names(browser).indexOf(name)), 0));
}

const Translation& material(const Rig& rig, std::size_t row) {
    return rig.form->document().set().translation(row);
}

} // namespace

void ShelfTest::isEmptyAtFirst() {
    Rig rig;
    click(*rig.form, "Command7");
    QWidget& browser = rig.window("LibView");
    control<QTabWidget>(browser, "tabs").setCurrentIndex(2);
    QVERIFY2(about(browser).contains(QStringLiteral("Analyse")), qPrintable(about(browser)));
    QVERIFY(!control<QPushButton>(browser, "useObject").isEnabled());
}

void ShelfTest::picturesAreMadeWhileIdle() {
    Rig rig;
    write_three(rig);
    QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    const Shelf& shelf = control<Shelf>(browser, "shelf");
    QTRY_COMPARE(shelf.pictures().made_count(), 3);
    // The list shows more colours than its ground, text and frames have: the hangar is in it.
    const QImage shown = shelf_list(browser).grab().toImage();
    int orange = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QColor c = shown.pixelColor(x, y);
            orange += c.red() > c.green() + 30 && c.green() > c.blue() + 20 ? 1 : 0;
        }
    }
    QVERIFY2(orange > 500, qPrintable(QString::number(orange)));
    select_object(browser, QStringLiteral("Hangar"));
    QVERIFY2(about(browser).contains(QStringLiteral("4.0 m high, 10.0 m wide, scale 0.5")),
             qPrintable(about(browser)));
}

void ShelfTest::whatCannotBeDrawnSaysHowFarItIsUnderstood() {
    Rig rig;
    write_three(rig);
    QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    select_object(browser, QStringLiteral("Broken"));
    QVERIFY2(about(browser).contains(QStringLiteral("command 7777h at offset 0")),
             qPrintable(about(browser)));
    // Its box is in the large view, in the colour of what is wrong.
    auto& large = control<ShapeView>(browser, "shapeView");
    const QImage shown = large.grab().toImage();
    int red = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QColor c = shown.pixelColor(x, y);
            red += c.red() > 2 * c.green() ? 1 : 0;
        }
    }
    QVERIFY(red > 50);
}

void ShelfTest::isFilteredAndSorted() {
    Rig rig;
    write_three(rig);
    QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    QCOMPARE(names(browser), (QStringList{QStringLiteral("Antenna"), QStringLiteral("Broken"),
                                          QStringLiteral("Hangar")}));
    choose(browser, "shelfOrder", QStringLiteral("Scale"));
    QCOMPARE(names(browser), (QStringList{QStringLiteral("Hangar"), QStringLiteral("Antenna"),
                                          QStringLiteral("Broken")}));
    type(browser, "shelfFilter", QStringLiteral("TENNA"));
    QCOMPARE(names(browser), QStringList{QStringLiteral("Antenna")});
    type(browser, "shelfFilter", QStringLiteral("022222222h"));
    QCOMPARE(names(browser), QStringList{QStringLiteral("Hangar")});
}

void ShelfTest::selectedObjectIsShownLargeAndTurns() {
    Rig rig;
    write_three(rig);
    QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    auto& large = control<ShapeView>(browser, "shapeView");
    select_object(browser, QStringLiteral("Hangar"));
    QCOMPARE(large.shape().name, std::string("Hangar"));
    const double heading = large.camera().heading;
    QTRY_VERIFY(large.camera().heading != heading);
    click(browser, "turnObject");
    const double stopped = large.camera().heading;
    QTest::qWait(120);
    QCOMPARE(large.camera().heading, stopped);
    QTest::keyClick(&large, Qt::Key_Right);
    QCOMPARE(large.camera().heading, std::fmod(stopped + 5, 360.0));
}

void ShelfTest::enterMakesLibraryNewWithTheObjectsOwnScale() {
    Rig rig;
    write_three(rig);
    rig.open(rig.copy_example("airport"));
    rig.select(3);
    QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    select_object(browser, QStringLiteral("Hangar"));
    QTest::keyClick(&shelf_list(browser), Qt::Key_Return);
    QCOMPARE(material(rig, 3).processed, std::string("Library New"));
    const auto* code = rig.form->document().document().code_of(3);
    QVERIFY(code != nullptr);
    const std::string call = "    KZM_LIBRARY_CALL " + hangar_text.toStdString();
    QVERIFY(std::find(code->begin(), code->end(), call) != code->end());
    QVERIFY(std::any_of(code->begin(), code->end(), [](const std::string& line) {
        return line.starts_with("    BGL_TRANSFORM_MAT ") &&
               line.ends_with(", 0.5, 0.0, 0.0, 0.0, 0.5, 0.0, 0.0, 0.0, 0.5");
    }));
    QCOMPARE(material(rig, 2).processed, std::string());
    trigger(*rig.form, "actionUndo");
    QCOMPARE(material(rig, 3).processed, std::string());
}

void ShelfTest::enterWithNothingSelectedSaysSo() {
    Rig rig;
    write_three(rig);
    rig.open(rig.copy_example("airport"));
    QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    const Parameters before = rig.form->document().document().parameters();
    select_object(browser, QStringLiteral("Hangar"));
    click(browser, "useObject");
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.form->document().document().parameters() == before);
    QCOMPARE(rig.form->document().set().unprocessed(), 13U);
}

void ShelfTest::enterFillsTheOpenPlacer() {
    Rig rig;
    write_three(rig);
    rig.open(rig.copy_example("airport"));
    rig.select(3);
    QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    choose(*rig.form, "typeOfObj", QStringLiteral("Library"));
    QWidget& placer = rig.parameters();
    select_object(browser, QStringLiteral("Hangar"));
    QTest::keyClick(&shelf_list(browser), Qt::Key_Return);
    QCOMPARE(text_of(placer, "libGUID"), hangar_text);
    QCOMPARE(text_of(placer, "libScale"), QStringLiteral("0.5"));
    QCOMPARE(material(rig, 3).processed, std::string()); // that is for the placer's user to do
}

void ShelfTest::objectIsDraggedOntoAMaterial() {
    Rig rig;
    write_three(rig);
    rig.open(rig.copy_example("airport"));
    const QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    select_object(browser, QStringLiteral("Hangar"));
    QListView& shelf = shelf_list(browser);
    QVERIFY(shelf.dragEnabled());
    QVERIFY((shelf.currentIndex().flags() & Qt::ItemIsDragEnabled) != 0);
    const std::unique_ptr<QMimeData> mime(shelf.model()->mimeData({shelf.currentIndex()}));
    auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    list.scrollTo(list.model()->index(1, 0));
    const QPoint place = list.visualRect(list.model()->index(1, 0)).center();
    QDragEnterEvent enter(place, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list.viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list.viewport(), &drop);
    QVERIFY(drop.isAccepted());
    QCOMPARE(material(rig, 2).processed, std::string("Library New"));
    QCOMPARE(rig.form->document().document().parameters().library.libGUID,
             hangar_text.toStdString());
    QCOMPARE(rig.form->document().document().parameters().library.libScale, std::string("0.5"));
}

void ShelfTest::twoThousandObjectsOpenAtOnce() {
    Rig rig;
    LibrarySpec library;
    const std::string code = box_code(4, 3);
    for (std::int32_t i = 0; i < 2000; ++i) {
        library.objects.push_back(object_of("Object", {i, 7, 7, 7}, code));
    }
    rig.folder.write("many.bgl", library_file(library));
    QWidget& browser = open_shelf(rig, QStringLiteral("many.bgl"));
    const Shelf& shelf = control<Shelf>(browser, "shelf");
    QVERIFY(shelf.pictures().made_count() < 100); // nothing was waited for
    QCOMPARE(shelf_list(browser).model()->rowCount(), 2000);
    QElapsedTimer watch;
    watch.start();
    QTRY_VERIFY(shelf.pictures().made_count() > 0);
    int made = -1;
    const auto is_still = [&] {
        const int before = std::exchange(made, shelf.pictures().made_count());
        return before == made;
    };
    QTRY_VERIFY(is_still());
    qInfo("first page of 2,000 objects: %d pictures in %lld ms", made, watch.elapsed());
    QVERIFY2(made < 200, qPrintable(QString::number(made))); // those that are seen, not all
    shelf_list(browser).scrollToBottom();
    QTRY_VERIFY(shelf.pictures().made_count() > made);
}

void ShelfTest::foundObjectsAreDrawnInThePicture() {
    Rig rig;
    write_three(rig);
    rig.open(rig.copy_example("airport"));
    rig.select(3);
    QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    select_object(browser, QStringLiteral("Hangar"));
    QTest::keyClick(&shelf_list(browser), Qt::Key_Return);
    QTRY_VERIFY(scene_view(rig).catalogue().contains(hangar_guid));
    QVERIFY(!scene_view(rig).catalogue().contains({1, 2, 3, 5})); // is called by nobody
    // It is known in the next session too.
    rig.dialogs.unsaved = Unsaved::Discard;
    rig.restart();
    rig.open(QString::fromStdString(rig.folder.file("airport/airport")));
    rig.select(4);
    choose(*rig.form, "typeOfObj", QStringLiteral("Library New"));
    Parameters parameters;
    parameters.library.libGUID = hangar_text.toStdString();
    rig.form->document().document().set_parameters(parameters);
    QTRY_VERIFY(scene_view(rig).catalogue().contains(hangar_guid)); // for the ghost
}

void ShelfTest::keepsTheRulesOfModels() {
    ObjectModel objects;
    ShelfModel shown;
    shown.setSourceModel(&objects);
    const QAbstractItemModelTester tester(&shown,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    LibraryObject object;
    object.guid = hangar_guid;
    object.stored_scale = 0;
    objects.add("a.bgl", {object, object});
    QCOMPARE(shown.object(shown.index(0, 0)).identifier, hangar_text);
    QCOMPARE(shown.object(shown.index(0, 0)).scale, QStringLiteral("1.0")); // none is said
    objects.clear();
    object.stored_scale = 39322;
    objects.add("a.bgl", {object});
    QCOMPARE(shown.object(shown.index(0, 0)).scale, QStringLiteral("1.66665"));
}

void ShelfTest::isReachedByTheKeyboard() {
    Rig rig;
    write_three(rig);
    QWidget& browser = open_shelf(rig, QStringLiteral("three.bgl"));
    QApplication::setActiveWindow(&browser);
    control<QLineEdit>(browser, "shelfFilter").setFocus();
    QStringList reached;
    for (int press = 0; press < 5; ++press) {
        QTest::keyClick(browser.focusWidget(), Qt::Key_Tab);
        reached.append(browser.focusWidget()->objectName());
    }
    QCOMPARE(reached, (QStringList{QStringLiteral("shelfOrder"), QStringLiteral("shelfList"),
                                   QStringLiteral("shapeView"), QStringLiteral("turnObject"),
                                   QStringLiteral("useObject")}));
}

namespace {
const Registration<ShelfTest> registration("shelf");
}

} // namespace morvane::test

#include "shelf_test.moc"
