// SPDX-License-Identifier: GPL-3.0-or-later

// Undo, redo and the history, and work on several materials at once.

#include "ui/models/document_model.h"
#include "ui/registry.h"
#include "ui/rig.h"
#include "ui/widgets/line_view.h"
#include "ui/widgets/step_marker.h"

#include <QClipboard>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QRegularExpression>

#include <algorithm>

namespace morvane::test {

class HistoryTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void nothingCanBeUndoneAfterOpen();
    void redoHasTheKeysThatPeopleExpect();
    void processIsUndoneAndRedone();
    void undoOfEverythingSavesNothing();
    void redoneWorkSavesTheSameBytes();
    void aRecipeIsOneStep();
    void parametersAreAStep();
    void historyJumps();
    void afterSaveTheReasonIsSaid();
    void severalMaterialsAreProcessed();
    void processedOnesAmongSeveralArePassedOver();
    void allOfAHighlightAreSelected();
    void allOfAColorAreSelected();
    void listIsSortedAndFiltered();
    void sortedListProcessesTheRowThatIsShown();
    void parametersOfARowAreShown();
    void rowsAreCopied();
    void sourceIsShownAtTheMaterial();
    void contextMenuOffersTheCommands();
    void rewrittenMaterialIsNotedAndAskedAbout();
    void blockThatHoldsMoreThanTrianglesIsNoted_data();
    void blockThatHoldsMoreThanTrianglesIsNoted();
    void windsockOnAFlatTriangleCanBecomeAnotherKind();
};

namespace {

QAction& action(const Rig& rig, const char* name) {
    return *rig.form->findChild<QAction*>(QString::fromLatin1(name));
}

void process(Rig& rig, int row) {
    rig.select(row);
    click(*rig.form, "Command1");
}

QTreeView& list(const Rig& rig) {
    return control<QTreeView>(*rig.form, "lstMat2proc");
}

QString cell(const Rig& rig, int row, int column) {
    return list(rig).model()->index(row - 1, column).data().toString();
}

bool is_done(const Rig& rig, const char* marker) {
    return control<StepMarker>(*rig.form, marker).is_done();
}

std::string bytes_of(const QString& base) {
    return read_file(base.toStdString() + "_0.asm");
}

QStringList history(const Rig& rig) {
    const auto& steps = control<QListWidget>(*rig.form, "historyList");
    QStringList names;
    for (int i = 0; i < steps.count(); ++i) {
        names.append(steps.item(i)->text());
    }
    return names;
}

void select_rows(Rig& rig, std::initializer_list<int> rows) {
    QTreeView& view = list(rig);
    view.clearSelection();
    for (const int row : rows) {
        const QModelIndex index = view.model()->index(row - 1, 0);
        view.scrollTo(index);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ControlModifier,
                          view.visualRect(index).center());
    }
}

} // namespace

void HistoryTest::nothingCanBeUndoneAfterOpen() {
    Rig rig;
    QVERIFY(!action(rig, "actionUndo").isEnabled());
    rig.open(rig.copy_example("airport"));
    QVERIFY(!action(rig, "actionUndo").isEnabled());
    QVERIFY(!action(rig, "actionRedo").isEnabled());
    QCOMPARE(history(rig), QStringList{QStringLiteral("Open")});
}

void HistoryTest::redoHasTheKeysThatPeopleExpect() {
    const QKeySequence with_shift(Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
    const QKeySequence with_y(Qt::CTRL | Qt::Key_Y);
    QCOMPARE(MainWindow::redo_keys(true), (QList<QKeySequence>{with_shift, with_y}));
    QCOMPARE(MainWindow::redo_keys(false), QList<QKeySequence>{with_shift});
    Rig rig;
#ifdef Q_OS_WIN
    QCOMPARE(action(rig, "actionRedo").shortcuts(), MainWindow::redo_keys(true));
#else
    QCOMPARE(action(rig, "actionRedo").shortcuts(), MainWindow::redo_keys(false));
#endif
}

void HistoryTest::processIsUndoneAndRedone() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 3);
    QVERIFY2(QRegularExpression(QStringLiteral("^&Undo Process of 3 \\(MATERIAL \\d+\\)$"))
                 .match(action(rig, "actionUndo").text())
                 .hasMatch(),
             qPrintable(action(rig, "actionUndo").text()));
    QTest::keyClick(&list(rig), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
    QCOMPARE(cell(rig, 3, MaterialModel::Processed), QString());
    QVERIFY(!control<QLabel>(*rig.form, "Label16").isVisible());
    QCOMPARE(rig.form->windowTitle(), QStringLiteral("Morvane - airport"));
    QTest::keyClick(&list(rig), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("12"));
    QCOMPARE(cell(rig, 3, MaterialModel::Processed), QStringLiteral("\u2713 Lights"));
    QVERIFY(control<QLabel>(*rig.form, "Label16").isVisible());
    QCOMPARE(rig.form->windowTitle(), QStringLiteral("Morvane - airport *"));
}

void HistoryTest::undoOfEverythingSavesNothing() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    rig.form->open_file(base + QStringLiteral(".toml"));
    QVERIFY(is_done(rig, "Label10"));
    trigger(*rig.form, "actionUndo");
    QVERIFY(!is_done(rig, "Label10"));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
    click(*rig.form, "Command3");
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("No material matches"));
    QVERIFY(rig.form->close()); // nothing is left to ask about
    QCOMPARE(rig.dialogs.unsaved_asked, 0);
}

void HistoryTest::redoneWorkSavesTheSameBytes() {
    Rig rig;
    Rig other;
    const QString base = rig.copy_example("airport");
    const QString other_base = other.copy_example("airport");
    for (Rig* each : {&rig, &other}) {
        each->open(each == &rig ? base : other_base);
        for (const int row : {1, 5, 2, 4}) {
            process(*each, row);
        }
    }
    for (int i = 0; i < 4; ++i) {
        trigger(*rig.form, "actionUndo");
    }
    for (int i = 0; i < 4; ++i) {
        trigger(*rig.form, "actionRedo");
    }
    click(*rig.form, "Command3");
    click(*other.form, "Command3");
    QVERIFY(bytes_of(base) == bytes_of(other_base));
}

void HistoryTest::aRecipeIsOneStep() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.form->open_file(base + QStringLiteral(".toml"));
    QCOMPARE(history(rig),
             (QStringList{QStringLiteral("Open"), QStringLiteral("recipe airport.toml")}));
}

void HistoryTest::parametersAreAStep() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    QWidget& dialog = rig.parameters();
    type(dialog, "LightInt", QStringLiteral("55"));
    click(dialog, "Command1");
    QCOMPARE(text_of(*rig.form, "txtinfo"), QStringLiteral("LIGHT_STROBE/55/CCCC"));
    trigger(*rig.form, "actionUndo");
    QCOMPARE(text_of(*rig.form, "txtinfo"), QStringLiteral("LIGHT_STROBE/100/CCCC"));
    trigger(*rig.form, "actionRedo");
    QCOMPARE(text_of(*rig.form, "txtinfo"), QStringLiteral("LIGHT_STROBE/55/CCCC"));
}

void HistoryTest::historyJumps() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    for (const int row : {1, 2, 3}) {
        process(rig, row);
    }
    auto& steps = control<QListWidget>(*rig.form, "historyList");
    QCOMPARE(steps.count(), 4);
    QCOMPARE(steps.currentRow(), 3);
    Q_EMIT steps.itemActivated(steps.item(1));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("12"));
    QCOMPARE(steps.count(), 4); // the others can be done again
    QCOMPARE(steps.currentRow(), 1);
    Q_EMIT steps.itemActivated(steps.item(3));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("10"));
    Q_EMIT steps.itemActivated(steps.item(0));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
}

void HistoryTest::afterSaveTheReasonIsSaid() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 1);
    click(*rig.form, "Command3");
    QVERIFY(!action(rig, "actionUndo").isEnabled());
    QVERIFY(action(rig, "actionUndo").toolTip().contains(QStringLiteral("saved")));
    QCOMPARE(history(rig).size(), 2); // it can still be read
}

void HistoryTest::severalMaterialsAreProcessed() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    select_rows(rig, {1, 2, 4});
    click(*rig.form, "Command1");
    QVERIFY2(rig.dialogs.boxes.empty(), qPrintable(rig.dialogs.take_box()));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("10"));
    for (const int row : {1, 2, 4}) {
        QCOMPARE(cell(rig, row, MaterialModel::Processed), QStringLiteral("\u2713 Lights"));
    }
    QCOMPARE(cell(rig, 3, MaterialModel::Processed), QString());
}

void HistoryTest::processedOnesAmongSeveralArePassedOver() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 2);
    select_rows(rig, {1, 2, 3});
    click(*rig.form, "Command1");
    QVERIFY(rig.dialogs.boxes.empty());
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("10"));
}

void HistoryTest::allOfAHighlightAreSelected() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    rig.select(2); // red, as are others
    trigger(*rig.form, "actionSelectHighlight");
    const QModelIndexList rows = list(rig).selectionModel()->selectedRows();
    QVERIFY(rows.size() > 1);
    int red = 0;
    for (int row = 1; row <= 13; ++row) {
        red += cell(rig, row, MaterialModel::Highlight) == QLatin1String("Red") ? 1 : 0;
    }
    QCOMPARE(rows.size(), red);
}

void HistoryTest::allOfAColorAreSelected() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    rig.select(4);
    trigger(*rig.form, "actionSelectColor");
    for (const QModelIndex& index : list(rig).selectionModel()->selectedRows()) {
        QCOMPARE(index.siblingAtColumn(MaterialModel::Color).data().toString(),
                 QStringLiteral("1F3FFF"));
    }
}

void HistoryTest::listIsSortedAndFiltered() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    QCOMPARE(cell(rig, 1, MaterialModel::Number), QStringLiteral("1"));
    list(rig).sortByColumn(MaterialModel::Triangles, Qt::DescendingOrder);
    QCOMPARE(cell(rig, 1, MaterialModel::Triangles), QStringLiteral("22"));
    int last = 1000;
    for (int row = 1; row <= 13; ++row) {
        const int triangles = cell(rig, row, MaterialModel::Triangles).toInt();
        QVERIFY(triangles <= last);
        last = triangles;
    }
    type(*rig.form, "materialFilter", QStringLiteral("blue"));
    QVERIFY(list(rig).model()->rowCount() < 13);
    QCOMPARE(cell(rig, 1, MaterialModel::Highlight), QStringLiteral("Blue"));
    type(*rig.form, "materialFilter", QString());
    QCOMPARE(list(rig).model()->rowCount(), 13);
}

void HistoryTest::sortedListProcessesTheRowThatIsShown() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    list(rig).sortByColumn(MaterialModel::Number, Qt::DescendingOrder);
    process(rig, 13); // which is material 1
    list(rig).sortByColumn(MaterialModel::Number, Qt::AscendingOrder);
    QCOMPARE(cell(rig, 1, MaterialModel::Processed), QStringLiteral("\u2713 Lights"));
    QCOMPARE(cell(rig, 13, MaterialModel::Processed), QString());
}

void HistoryTest::parametersOfARowAreShown() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 1);
    QCOMPARE(cell(rig, 1, MaterialModel::Parameters), QStringLiteral("LIGHT_STROBE/100/CCCC"));
    QCOMPARE(list(rig).model()->index(0, 4).data(Qt::ToolTipRole).toString(),
             QStringLiteral("Processed as Lights: LIGHT_STROBE/100/CCCC"));
    QVERIFY(!list(rig).model()->index(1, 4).data(Qt::ToolTipRole).isValid());
}

void HistoryTest::rowsAreCopied() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    select_rows(rig, {2, 4});
    QTest::keyClick(&list(rig), Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QGuiApplication::clipboard()->text().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines[0].startsWith(QStringLiteral("2\tFF0000\tRed\t8")));
    QVERIFY(lines[1].startsWith(QStringLiteral("4\t1F3FFF\tBlue\t6")));
}

void HistoryTest::sourceIsShownAtTheMaterial() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    rig.select(2);
    trigger(*rig.form, "actionShowSource");
    const auto& lines = control<LineView>(rig.window("SourceWindow"), "sourceNow");
    const QString text = lines.text(lines.current_row()).trimmed();
    QVERIFY2(text.startsWith(QStringLiteral("MATERIAL ")), qPrintable(text));
}

void HistoryTest::contextMenuOffersTheCommands() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    rig.select(1);
    Q_EMIT list(rig).customContextMenuRequested(QPoint(10, 10));
    auto& menu = control<QMenu>(*rig.form, "materialMenu");
    QStringList texts;
    for (const QAction* entry : menu.actions()) {
        texts.append(entry->text().remove(QLatin1Char('&')));
    }
    for (const char* wanted : {"Process", "Parameters", "Undo", "Show Source", "Copy"}) {
        QVERIFY2(texts.contains(QLatin1String(wanted)), wanted);
    }
    menu.close();
}

void HistoryTest::rewrittenMaterialIsNotedAndAskedAbout() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    process(rig, 3);
    click(*rig.form, "Command3");
    rig.dialogs.boxes.clear();
    rig.open(base); // the first material was left, so the set can be opened
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
    rig.select(3);
    QVERIFY(
        !rig.messages().filter(QStringLiteral("Note: ")).filter(QStringLiteral("row 3")).isEmpty());
    rig.dialogs.answer = false;
    click(*rig.form, "Command1");
    QCOMPARE(rig.dialogs.questions.size(), 1U);
    QVERIFY(rig.dialogs.questions[0].text.contains(QStringLiteral("rewritten before")));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
}

void HistoryTest::blockThatHoldsMoreThanTrianglesIsNoted_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("after"); // so many lines of the block, its opening line the first
    QTest::newRow("a comment") << QByteArray("    ; by hand") << 2;
    QTest::newRow("a blank line") << QByteArray() << 2;
    QTest::newRow("another opening") << QByteArray("    DRAW_TRI_BEGIN 0, 3") << 2;
    QTest::newRow("a line before the block") << QByteArray("    ; by hand") << 0;
}

// Process does what it does, and its message log says which line ends the work.
void HistoryTest::blockThatHoldsMoreThanTrianglesIsNoted() {
    QFETCH(QByteArray, line);
    QFETCH(int, after);
    Rig rig;
    const QString base = rig.copy_example("airport");
    QList<QByteArray> lines = QByteArray::fromStdString(bytes_of(base)).split('\n');
    qsizetype at = 0;
    while (!lines[at].trimmed().startsWith("MATERIAL 3,")) {
        ++at;
    }
    lines.insert(at + 1 + after, line + '\r');
    write_file(base.toStdString() + "_0.asm", lines.join('\n').toStdString());
    rig.open(base);
    process(rig, 2);
    const qsizetype number = at + 2 + after; // lines count from 1
    const QString note =
        QStringLiteral("Note: %1_0.asm:%2: row 2 (MATERIAL 3) has ").arg(base).arg(number);
    const QStringList log = rig.messages();
    QVERIFY2(std::any_of(log.begin(), log.end(),
                         [&](const QString& said) { return said.startsWith(note); }),
             qPrintable(log.join(QLatin1Char('\n'))));
    QCOMPARE(cell(rig, 2, MaterialModel::Processed), QStringLiteral("\u2713 Lights"));
    QVERIFY(rig.dialogs.boxes.empty());
}

// The aborted attempt leaves lines commented out, which the next kind must not stumble over.
void HistoryTest::windsockOnAFlatTriangleCanBecomeAnotherKind() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    process(rig, 1);
    click(*rig.form, "Command3");
    const std::string at_first = bytes_of(base);
    Rig other;
    const QString again = other.copy_example("airport");
    other.open(again);
    choose(*other.form, "typeOfObj", QStringLiteral("Windsock"));
    process(other, 1); // flat
    other.dialogs.boxes.clear();
    QVERIFY(!other.messages().filter(QStringLiteral("commented out")).isEmpty());
    choose(*other.form, "typeOfObj", QStringLiteral("Lights"));
    click(*other.form, "Command1");
    click(*other.form, "Command3");
    QVERIFY(other.dialogs.questions.empty());
    QVERIFY(bytes_of(again) == at_first);
}

namespace {
const Registration<HistoryTest> registration("history");
}

} // namespace morvane::test

#include "history_test.moc"
