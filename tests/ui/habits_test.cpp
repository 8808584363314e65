// SPDX-License-Identifier: GPL-3.0-or-later

// What people expect of a window: dropping files, access letters, things that are remembered.

#include "ui/registry.h"
#include "ui/rig.h"
#include "ui/widgets/color_swatch.h"
#include "ui/widgets/note_strip.h"
#include "ui/widgets/step_marker.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>

#include <cmath>

namespace morvane::test {

class HabitsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void fileDroppedOnAPathBoxReplacesTheText();
    void recipeDroppedOnTheWindowIsApplied();
    void toolFormsTakeDroppedFiles();
    void modelFileTypedIsUnderstood();
    void modelFileBrowsedIsUnderstood();
    void namesOfNoSetStayAsTyped();
    void afterOpenTheListHasTheFocus();
    void backupSaysWhatItCopied();
    void restorePutsTheStepsBack();
    void reportsOfAToolAreShownInItsForm();
    void everyButtonHasALetter_data();
    void everyButtonHasALetter();
    void letterPressesTheButton();
    void captionsStayAsTheyAre();
    void textHasContrast_data();
    void textHasContrast();
    void uncheckedBoxesHaveAnEdge_data();
    void uncheckedBoxesHaveAnEdge();
    void columnsAreKept();
    void guideIsOpened();
    void missingGuideIsSaid();
    void keysAreListed();
    void mastColorOfTheSimulatorIsShown();
    void swatchShowsTheColorOfGmax();
};

namespace {

bool drop(QWidget& target, const QStringList& files) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files) {
        urls.append(QUrl::fromLocalFile(file));
    }
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted()) {
        return false;
    }
    QDropEvent event(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &event);
    return true;
}

int material_count(const Rig& rig) {
    return control<QTreeView>(*rig.form, "lstMat2proc").model()->rowCount();
}

bool is_done(const Rig& rig, const char* marker) {
    return control<StepMarker>(*rig.form, marker).is_done();
}

void add_forms() {
    QTest::addColumn<QString>("name");
    for (const char* name : {"Form1", "frmLights", "frmEffects", "frmWindsock", "frmLibrary",
                             "frmModel", "LibView", "frmLabelRename", "frmLibComp"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

QWidget& form_named(Rig& rig, const QString& name) {
    const std::pair<const char*, const char*> kinds[] = {{"frmLights", "Lights"},
                                                         {"frmEffects", "Effects"},
                                                         {"frmWindsock", "Windsock"},
                                                         {"frmLibrary", "Library"}};
    for (const auto& [form, kind] : kinds) {
        if (name == QLatin1String(form)) {
            choose(*rig.form, "typeOfObj", QString::fromLatin1(kind));
            return rig.parameters();
        }
    }
    const std::pair<const char*, const char*> buttons[] = {{"frmModel", "Command6"},
                                                           {"LibView", "Command7"},
                                                           {"frmLabelRename", "Command9"},
                                                           {"frmLibComp", "Command13"}};
    for (const auto& [form, button] : buttons) {
        if (name == QLatin1String(form)) {
            click(*rig.form, button);
            return rig.window(form);
        }
    }
    return *rig.form;
}

// Luminance and contrast as the accessibility guidelines define them.
double luminance(const QColor& color) {
    const auto part = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) +
           0.0722 * part(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const double bright = std::max(luminance(a), luminance(b));
    const double dark = std::min(luminance(a), luminance(b));
    return (bright + 0.05) / (dark + 0.05);
}

// The best contrast of any pixel of a picture with one in its corner.
double best_contrast(const QImage& image, const QColor& ground) {
    double best = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            best = std::max(best, contrast(image.pixelColor(x, y), ground));
        }
    }
    return best;
}

void add_forms_in_both_themes() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("theme");
    for (const char* theme : {"actionColorsLight", "actionColorsDark"}) {
        for (const char* name : {"Form1", "frmLights", "frmEffects", "frmWindsock", "frmLibrary",
                                 "frmModel", "LibView", "frmLabelRename", "frmLibComp"}) {
            QTest::addRow("%s %s", name, theme)
                << QString::fromLatin1(name) << QString::fromLatin1(theme);
        }
    }
}

} // namespace

void HabitsTest::fileDroppedOnAPathBoxReplacesTheText() {
    Rig rig;
    type(*rig.form, "InputFile", QStringLiteral("/old/set"));
    auto& input = control<QLineEdit>(*rig.form, "InputFile");
    QVERIFY(drop(input, {QStringLiteral("/new/tower_0.asm")}));
    QCOMPARE(input.text(), QStringLiteral("/new/tower"));
    auto& output = control<QLineEdit>(*rig.form, "OutputFile");
    QVERIFY(drop(output, {QStringLiteral("/new/hangar.asm")}));
    QCOMPARE(output.text(), QStringLiteral("/new/hangar"));
    QCOMPARE(input.text(), QStringLiteral("/new/tower"));
    QVERIFY(!drop(output, {QStringLiteral("/a.asm"), QStringLiteral("/b.asm")}));
    QVERIFY(!drop(output, {QStringLiteral("/picture.png")}));
    QCOMPARE(output.text(), QStringLiteral("/new/hangar"));
}

void HabitsTest::recipeDroppedOnTheWindowIsApplied() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    QVERIFY(drop(*rig.form, {base + QStringLiteral(".toml")})); // nothing is open: its own set is
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("0"));
    rig.dialogs.unsaved = Unsaved::Discard;
    rig.open(base);
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
    QVERIFY(drop(*rig.form, {base + QStringLiteral(".toml")}));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("0"));
}

void HabitsTest::toolFormsTakeDroppedFiles() {
    Rig rig;
    QWidget& labels = form_named(rig, QStringLiteral("frmLabelRename"));
    QVERIFY(drop(labels, {QStringLiteral("/x/tower.asm")}));
    QCOMPARE(text_of(labels, "InputFile"), QStringLiteral("/x/tower.asm"));
    QWidget& modifier = form_named(rig, QStringLiteral("frmModel"));
    QVERIFY(drop(control<QLineEdit>(modifier, "fnModel_0"), {QStringLiteral("/x/glider_0.asm")}));
    QCOMPARE(text_of(modifier, "fnModel_0"), QStringLiteral("/x/glider"));
    QWidget& browser = form_named(rig, QStringLiteral("LibView"));
    const std::string file = rig.folder.write("a/b/some.bgl", "x");
    QVERIFY(drop(browser, {QString::fromStdString(file)}));
    QVERIFY(text_of(browser, "folderPath").endsWith(QStringLiteral("b")));
}

void HabitsTest::modelFileTypedIsUnderstood() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base + QStringLiteral("_0.asm"));
    QCOMPARE(text_of(*rig.form, "InputFile"), base);
    QCOMPARE(material_count(rig), 13);
}

void HabitsTest::modelFileBrowsedIsUnderstood() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.dialogs.files = {base + QStringLiteral("_0.asm")};
    click(*rig.form, "Command8");
    QCOMPARE(text_of(*rig.form, "InputFile"), base + QStringLiteral("_0"));
    click(*rig.form, "Command2");
    QCOMPARE(text_of(*rig.form, "InputFile"), base);
    QCOMPARE(material_count(rig), 13);
}

void HabitsTest::namesOfNoSetStayAsTyped() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base + QStringLiteral(".asm"));
    QCOMPARE(
        rig.dialogs.take_box(),
        QStringLiteral("Please enter valid input file. %1.asm_0.asm file not found").arg(base));
    rig.open(QStringLiteral("/none_0.asm"));
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("Please enter valid input file. /none_0.asm_0.asm file not found"));
    QCOMPARE(text_of(*rig.form, "InputFile"), QStringLiteral("/none_0.asm"));
}

void HabitsTest::afterOpenTheListHasTheFocus() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    QVERIFY(list.hasFocus());
    QVERIFY(list.selectionModel()->selectedRows().isEmpty());
    QTest::keyClick(&list, Qt::Key_Down);
    QCOMPARE(list.selectionModel()->selectedRows().size(), 1);
    QCOMPARE(list.currentIndex().row(), 0);
    QTest::keyClick(&list, Qt::Key_Down);
    QCOMPARE(list.currentIndex().row(), 1);
}

void HabitsTest::backupSaysWhatItCopied() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    click(*rig.form, "Command10");
    const QString model = QStringLiteral("copied %1_0.asm to %1_asm.bck").arg(base);
    const QString frame = QStringLiteral("copied %1.asm to %1_azm.bck").arg(base);
    QCOMPARE(rig.messages().filter(model).size(), 1);
    QCOMPARE(rig.messages().filter(frame).size(), 1);
}

void HabitsTest::restorePutsTheStepsBack() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    click(*rig.form, "Command10");
    rig.select(1);
    click(*rig.form, "Command1");
    click(*rig.form, "Command3");
    QVERIFY(is_done(rig, "Label12"));
    click(*rig.form, "Command11");
    for (const char* marker : {"Label6", "Label7", "Label9", "Label10", "Label12"}) {
        QVERIFY2(!is_done(rig, marker), marker);
    }
    QCOMPARE(rig.messages().filter(QStringLiteral("press Open")).size(), 1);
    click(*rig.form, "Command2");
    QVERIFY(is_done(rig, "Label6"));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
}

void HabitsTest::reportsOfAToolAreShownInItsForm() {
    Rig rig;
    QWidget& labels = form_named(rig, QStringLiteral("frmLabelRename"));
    auto& strip = control<NoteStrip>(labels, "noteStrip");
    QVERIFY(!strip.isVisible());
    type(labels, "InputFile",
         QString::fromStdString(rig.folder.write("a.asm", "one label BGLCODE\r\n")));
    type(labels, "lblAdition", QStringLiteral("G2"));
    click(labels, "lblOpen");
    QVERIFY(strip.isVisible());
    QVERIFY(strip.text().contains(QStringLiteral("Labels mofilied : 1")));
}

void HabitsTest::everyButtonHasALetter_data() {
    add_forms();
}

void HabitsTest::everyButtonHasALetter() {
    QFETCH(QString, name);
    Rig rig;
    QWidget& form = form_named(rig, name);
    QStringList seen;
    for (const QAbstractButton* button : form.findChildren<QAbstractButton*>()) {
        const bool counts = qobject_cast<const QPushButton*>(button) != nullptr ||
                            qobject_cast<const QCheckBox*>(button) != nullptr;
        if (!counts || button->window() != &form) {
            continue;
        }
        const QString keys = button->shortcut().toString();
        QVERIFY2(keys.startsWith(QLatin1String("Alt+")), qPrintable(button->objectName()));
        QVERIFY2(!seen.contains(keys), qPrintable(button->objectName()));
        seen.append(keys);
    }
    if (const auto* bar = form.findChild<QMenuBar*>()) {
        for (const QAction* menu : bar->actions()) {
            const QString letter = menu->text().mid(menu->text().indexOf(QLatin1Char('&')) + 1, 1);
            QVERIFY2(!seen.contains(QStringLiteral("Alt+") + letter.toUpper()),
                     qPrintable(menu->text()));
        }
    }
}

void HabitsTest::letterPressesTheButton() {
    Rig rig;
    type(*rig.form, "InputFile", rig.copy_example("airport"));
    const QString keys = control<QPushButton>(*rig.form, "Command2").shortcut().toString();
    QTest::keyClick(rig.form.get(), keys.back().toLatin1(), Qt::AltModifier);
    QTRY_COMPARE(material_count(rig), 13); // a button is pressed for a moment
}

void HabitsTest::captionsStayAsTheyAre() {
    Rig rig;
    const std::pair<const char*, const char*> captions[] = {
        {"Command2", "Open"},    {"Command1", "Process"},  {"Command3", "Save"},
        {"Command10", "Backup"}, {"Command11", "Restore"}, {"Command6", "Wings - Shadow"}};
    for (const auto& [name, caption] : captions) {
        QCOMPARE(control<QPushButton>(*rig.form, name).text(), QString::fromLatin1(caption));
    }
}

void HabitsTest::textHasContrast_data() {
    add_forms_in_both_themes();
}

void HabitsTest::textHasContrast() {
    QFETCH(QString, name);
    QFETCH(QString, theme);
    Rig rig;
    trigger(*rig.form, theme.toLatin1().constData());
    QWidget& form = form_named(rig, name);
    QTest::qWait(20);
    int looked_at = 0;
    for (QLabel* label : form.findChildren<QLabel*>()) {
        if (!label->isVisible() || label->text().isEmpty() || label->window() != &form) {
            continue;
        }
        ++looked_at;
        const QImage image = label->grab().toImage();
        const double found = best_contrast(image, image.pixelColor(0, 0));
        QVERIFY2(found >= 4.5,
                 qPrintable(QStringLiteral("%1: %2").arg(label->objectName()).arg(found)));
    }
    QVERIFY(looked_at > 0);
    trigger(*rig.form, "actionColorsSystem");
}

void HabitsTest::uncheckedBoxesHaveAnEdge_data() {
    add_forms_in_both_themes();
}

void HabitsTest::uncheckedBoxesHaveAnEdge() {
    QFETCH(QString, name);
    QFETCH(QString, theme);
    Rig rig;
    trigger(*rig.form, theme.toLatin1().constData());
    QWidget& form = form_named(rig, name);
    QTest::qWait(20);
    for (QCheckBox* box : form.findChildren<QCheckBox*>()) {
        if (!box->isVisible() || box->window() != &form) {
            continue;
        }
        box->setChecked(false);
        const QImage image = box->grab(QRect(0, 0, 18, box->height())).toImage();
        const double found = best_contrast(image, image.pixelColor(0, 0));
        QVERIFY2(found >= 3,
                 qPrintable(QStringLiteral("%1: %2").arg(box->objectName()).arg(found)));
    }
    trigger(*rig.form, "actionColorsSystem");
}

void HabitsTest::columnsAreKept() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    list.header()->resizeSection(0, 90);
    const int width = list.columnWidth(0);
    rig.restart();
    rig.open(rig.copy_example("aircraft-lights"));
    QCOMPARE(control<QTreeView>(*rig.form, "lstMat2proc").columnWidth(0), width);
}

void HabitsTest::guideIsOpened() {
    Rig rig;
    std::string opened;
    rig.desk.guide_folders = {rig.folder.file("none"), rig.folder.file("docs")};
    rig.desk.open_document = [&](const std::string& path) { opened = path; };
    const std::string guide = rig.folder.write("docs/window.md", "# A tour of the window");
    trigger(*rig.form, "actionGuide");
    QCOMPARE(opened, guide);
}

void HabitsTest::missingGuideIsSaid() {
    Rig rig;
    rig.desk.guide_folders = {"/none/docs"};
    trigger(*rig.form, "actionGuide");
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.dialogs.boxes[0].explanation.contains(QStringLiteral("/none/docs")));
}

void HabitsTest::keysAreListed() {
    Rig rig;
    trigger(*rig.form, "actionKeys");
    const QString text = control<QTextBrowser>(*rig.form, "keysText").toPlainText();
    for (const char* part : {"Ctrl+S", "Save", "F5", "Ctrl+Z", "Undo", "F1"}) {
        QVERIFY2(text.contains(QLatin1String(part)), part);
    }
}

void HabitsTest::mastColorOfTheSimulatorIsShown() {
    Rig rig;
    QWidget& dialog = form_named(rig, QStringLiteral("frmWindsock"));
    type(dialog, "ws_mastColor", QStringLiteral("ff8000"));
    QCOMPARE(control<ColorSwatch>(dialog, "Shape1").color(), QColor(0x00, 0x80, 0xFF));
    QCOMPARE(control<ColorSwatch>(dialog, "simulatorColor").color(), QColor(0xFF, 0x80, 0x00));
    QCOMPARE(control<QLabel>(dialog, "simulatorText").text(), QStringLiteral("FF8000"));
    type(dialog, "ws_mastColor", QStringLiteral("red"));
    QVERIFY(!control<ColorSwatch>(dialog, "simulatorColor").color().isValid());
}

// The list cuts a part off, gmax rounds it: 0.250980 is 63.9999 of 255.
void HabitsTest::swatchShowsTheColorOfGmax() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    std::string model = read_file(base.toStdString() + "_0.asm");
    rig.open(base);
    rig.select(4); // 1F3FFF in the list
    const auto& swatch = control<ColorSwatch>(*rig.form, "Shape2");
    QVERIFY2(swatch.toolTip().contains(QStringLiteral("1F3FFF in the list")),
             qPrintable(swatch.toolTip()));
    QVERIFY2(swatch.toolTip().contains(QStringLiteral("2040FF in gmax")),
             qPrintable(swatch.toolTip()));
}

namespace {
const Registration<HabitsTest> registration("habits");
}

} // namespace morvane::test

#include "habits_test.moc"
