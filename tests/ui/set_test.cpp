// SPDX-License-Identifier: GPL-3.0-or-later

// Opening a set, selecting its materials, leaving it.

#include "ui/registry.h"
#include "ui/rig.h"
#include "ui/widgets/color_swatch.h"
#include "ui/widgets/step_marker.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QUrl>

namespace morvane::test {

class SetTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void inputIsCopiedToOutput();
    void openListsTheMarkedMaterials();
    void openTellsTheLog();
    void openSetsTheMarkers();
    void missingModelFile();
    void missingFrameFile();
    void missingFilesKeepTheOpenSet();
    void processedSetIsRefused();
    void selectionShowsColors();
    void nothingSelectedShowsNothing();
    void browseTakesTheExtensionOff();
    void browseGivenUpChangesNothing();
    void returnKeyOpens();
    void recentSetsAreOffered();
    void droppedFileOpensItsSet();
    void otherDroppedFilesAreRefused();
    void fileOrBaseIsOpened();
    void messagesAreShownNewestFirst();
    void messagesCanBeCopied();
};

namespace {

bool is_done(const Rig& rig, const char* marker) {
    return control<StepMarker>(*rig.form, marker).is_done();
}

int material_count(const Rig& rig) {
    return control<QTreeView>(*rig.form, "lstMat2proc").model()->rowCount();
}

QString cell(const Rig& rig, int row, int column) {
    const auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    return list.model()->index(row - 1, column).data().toString();
}

bool drop(Rig& rig, const QString& file) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file)});
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QApplication::sendEvent(rig.form.get(), &enter);
    if (!enter.isAccepted()) {
        return false;
    }
    QDropEvent event(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(rig.form.get(), &event);
    return true;
}

} // namespace

void SetTest::inputIsCopiedToOutput() {
    Rig rig;
    type(*rig.form, "InputFile", QStringLiteral("/some/where"));
    QCOMPARE(text_of(*rig.form, "OutputFile"), QStringLiteral("/some/where"));
    type(*rig.form, "OutputFile", QStringLiteral("/else"));
    QCOMPARE(text_of(*rig.form, "InputFile"), QStringLiteral("/some/where"));
}

void SetTest::openListsTheMarkedMaterials() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    QCOMPARE(material_count(rig), 13);
    QCOMPARE(text_of(*rig.form, "Text1"), QStringLiteral("13"));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
    QCOMPARE(cell(rig, 2, MaterialModel::Color), QStringLiteral("FF0000"));
    QCOMPARE(cell(rig, 2, MaterialModel::Highlight), QStringLiteral("Red"));
    QCOMPARE(cell(rig, 2, MaterialModel::Processed), QString());
    QCOMPARE(rig.form->windowTitle(), QStringLiteral("Morvane - airport"));
}

void SetTest::openTellsTheLog() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    const QStringList newest_first = rig.messages();
    const QStringList oldest_first(newest_first.rbegin(), newest_first.rend());
    QVERIFY(oldest_first.at(0).startsWith(QStringLiteral("ASM file:")));
    QVERIFY(oldest_first.at(1).startsWith(QStringLiteral("AZM file:")));
    QVERIFY(rig.messages().contains(QStringLiteral("Materials for translation : 13")));
    QVERIFY(rig.messages().contains(QStringLiteral("Rotation is 45 degrees")));
}

void SetTest::openSetsTheMarkers() {
    Rig rig;
    const auto& marker = control<StepMarker>(*rig.form, "Label6");
    QCOMPARE(marker.color(), QColor(0xFF, 0, 0));
    rig.open(rig.copy_example("airport"));
    QCOMPARE(marker.color(), QColor(0, 0x80, 0));
    QVERIFY(marker.accessibleName().contains(QStringLiteral("done")));
    for (const char* pending : {"Label7", "Label9", "Label10", "Label12"}) {
        QVERIFY2(!is_done(rig, pending), pending);
    }
    QVERIFY(!control<QLabel>(*rig.form, "Label16").isVisible());
}

void SetTest::missingModelFile() {
    Rig rig;
    rig.open(QString::fromStdString(rig.folder.file("none")));
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QCOMPARE(rig.dialogs.boxes[0].text,
             QStringLiteral("Please enter valid input file. %1_0.asm file not found")
                 .arg(QString::fromStdString(rig.folder.file("none"))));
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::Critical);
    QVERIFY(!is_done(rig, "Label6"));
}

void SetTest::missingFrameFile() {
    Rig rig;
    rig.folder.write("half_0.asm", "x\r\n");
    const QString base = QString::fromStdString(rig.folder.file("half"));
    rig.open(base);
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("Please enter valid input file. %1.asm file not found").arg(base));
}

void SetTest::missingFilesKeepTheOpenSet() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    rig.select(2);
    rig.open(QStringLiteral("/none"));
    QCOMPARE(material_count(rig), 13);
    QVERIFY(is_done(rig, "Label6"));
    QVERIFY(is_done(rig, "Label7"));
    QCOMPARE(rig.form->windowTitle(), QStringLiteral("Morvane - airport"));
}

void SetTest::processedSetIsRefused() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    rig.select(1);
    click(*rig.form, "Command1");
    click(*rig.form, "Command3");
    rig.dialogs.boxes.clear();
    rig.open(base);
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("This file cannot be used. (Already processed ?)"));
    QCOMPARE(material_count(rig), 0);
    QVERIFY(!is_done(rig, "Label6"));
    click(*rig.form, "Command1");
    QCOMPARE(
        rig.dialogs.take_box(),
        QStringLiteral("Error ! Please select material and set processing parameters first !!"));
}

void SetTest::selectionShowsColors() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    rig.select(4); // highlight blue, own colour 1F3FFF
    QCOMPARE(control<ColorSwatch>(*rig.form, "Shape1").color(), QColor(0, 0, 255));
    QCOMPARE(control<ColorSwatch>(*rig.form, "Shape2").color(), QColor(0x1F, 0x3F, 0xFF));
    QVERIFY(is_done(rig, "Label7"));
    rig.select(2); // highlight red, own colour FF0000
    QCOMPARE(control<ColorSwatch>(*rig.form, "Shape1").color(), QColor(255, 0, 0));
    QCOMPARE(control<ColorSwatch>(*rig.form, "Shape2").color(), QColor(255, 0, 0));
}

void SetTest::nothingSelectedShowsNothing() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    QVERIFY(!control<ColorSwatch>(*rig.form, "Shape1").color().isValid());
    QVERIFY(!control<ColorSwatch>(*rig.form, "Shape2").color().isValid());
}

void SetTest::browseTakesTheExtensionOff() {
    Rig rig;
    type(*rig.form, "InputFile", QStringLiteral("/old/place/set"));
    rig.dialogs.files = {QStringLiteral("/new/place/tower.asm")};
    click(*rig.form, "Command8");
    QCOMPARE(rig.dialogs.folders, QStringList{QStringLiteral("/old/place")});
    QVERIFY(rig.dialogs.filters[0].startsWith(QStringLiteral(".asm/.azm file (*.a?m)")));
    QCOMPARE(text_of(*rig.form, "InputFile"), QStringLiteral("/new/place/tower"));
}

void SetTest::browseGivenUpChangesNothing() {
    Rig rig;
    type(*rig.form, "InputFile", QStringLiteral("/old/place/set"));
    click(*rig.form, "Command8");
    QCOMPARE(text_of(*rig.form, "InputFile"), QStringLiteral("/old/place/set"));
    QVERIFY(rig.dialogs.boxes.empty());
}

void SetTest::returnKeyOpens() {
    Rig rig;
    type(*rig.form, "InputFile", rig.copy_example("airport"));
    QTest::keyClick(&control<QLineEdit>(*rig.form, "InputFile"), Qt::Key_Return);
    QCOMPARE(material_count(rig), 13);
}

void SetTest::recentSetsAreOffered() {
    Rig rig;
    const QString airport = rig.copy_example("airport");
    const QString aircraft = rig.copy_example("aircraft-lights");
    rig.open(airport);
    rig.open(aircraft);
    rig.restart();
    const QList<QAction*> recent = control<QMenu>(*rig.form, "menuRecent").actions();
    QCOMPARE(recent.size(), 2);
    QCOMPARE(recent[0]->text(), aircraft);
    recent[1]->trigger();
    QCOMPARE(text_of(*rig.form, "InputFile"), airport);
    QCOMPARE(material_count(rig), 13);
}

void SetTest::droppedFileOpensItsSet() {
    for (const QString& ending : {QStringLiteral(".asm"), QStringLiteral("_0.asm")}) {
        Rig rig;
        const QString base = rig.copy_example("airport");
        QVERIFY(drop(rig, base + ending));
        QCOMPARE(text_of(*rig.form, "InputFile"), base);
        QCOMPARE(material_count(rig), 13);
    }
}

void SetTest::otherDroppedFilesAreRefused() {
    Rig rig;
    QVERIFY(!drop(rig, QStringLiteral("/some/picture.png")));
}

void SetTest::fileOrBaseIsOpened() {
    for (const QString& ending : {QString(), QStringLiteral(".asm"), QStringLiteral("_0.asm")}) {
        Rig rig;
        const QString base = rig.copy_example("airport");
        rig.form->open_file(base + ending);
        QCOMPARE(text_of(*rig.form, "InputFile"), base);
        QCOMPARE(material_count(rig), 13);
    }
}

void SetTest::messagesAreShownNewestFirst() {
    Rig rig;
    rig.log.add(QStringLiteral("first"));
    rig.log.add(QStringLiteral("second"));
    const auto& view = control<QPlainTextEdit>(*rig.form, "MsgText");
    QTRY_COMPARE(view.toPlainText(), QStringLiteral("second\nfirst"));
    rig.log.add(QStringLiteral("third"));
    QTRY_COMPARE(view.toPlainText(), QStringLiteral("third\nsecond\nfirst"));
    rig.log.clear();
    rig.log.add(QStringLiteral("new"));
    QTRY_COMPARE(view.toPlainText(), QStringLiteral("new"));
}

void SetTest::messagesCanBeCopied() {
    Rig rig;
    rig.log.add(QStringLiteral("first"));
    rig.log.add(QStringLiteral("second"));
    trigger(*rig.form, "actionCopyAllMessages");
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("second\nfirst"));
}

namespace {
const Registration<SetTest> registration("set");
}

} // namespace morvane::test

#include "set_test.moc"
