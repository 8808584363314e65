// SPDX-License-Identifier: GPL-3.0-or-later

// Every rule of the parameter dialogs.

#include "ui/registry.h"
#include "ui/rig.h"
#include "ui/widgets/color_swatch.h"
#include "ui/widgets/step_marker.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>

namespace morvane::test {

class DialogsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void lightDefaults();
    void lightLists();
    void flashVariableSetsTheMask_data();
    void flashVariableSetsTheMask();
    void openingKeepsATypedMask();
    void lightBoxesClearEachOther();
    void lightsAreHandedOverOnOk();
    void lightsAreForgottenOnCancel();
    void panelLightIsHandedOverByPosition();
    void lightsSetTheStepMarker();
    void effectDefaults();
    void effectNeedsFortyCharacters();
    void doubleClickRestoresTheConstraints();
    void onTheGroundDisablesTheElevation();
    void effectsAreHandedOverOnOk();
    void windsockDefaults();
    void windsockPreviewFollowsTheText();
    void windsockNeedsSixDigits();
    void libraryIsHandedOverOnOk();
    void libraryIsForgottenOnCancel();
    void charactersThatFilesCannotHoldAreNotTaken();
    void parametersThatBreakTheSourceAreNoted();
};

namespace {

QWidget& open_dialog(Rig& rig, const QString& kind) {
    choose(*rig.form, "typeOfObj", kind);
    return rig.parameters();
}

// Each item's text and item data.
QStringList entries(const QComboBox& list) {
    QStringList texts;
    for (int i = 0; i < list.count(); ++i) {
        texts.append(list.itemText(i) + QLatin1Char(' ') + list.itemData(i).toString());
    }
    return texts;
}

QString line(const Rig& rig) {
    return text_of(*rig.form, "txtinfo");
}

bool checked(const QWidget& dialog, const char* name) {
    return control<QCheckBox>(dialog, name).isChecked();
}

const QString lights = QStringLiteral("Lights");
const QString effects = QStringLiteral("Effects");
const QString windsock = QStringLiteral("Windsock");
const QString library = QStringLiteral("Library");

} // namespace

void DialogsTest::lightDefaults() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, lights);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Light Properties"));
    QVERIFY(dialog.isModal());
    QCOMPARE(control<QComboBox>(dialog, "LightType").currentText(), QStringLiteral("LIGHT_STROBE"));
    QCOMPARE(control<QComboBox>(dialog, "LightVariable").currentText(), QString());
    QCOMPARE(text_of(dialog, "LightInt"), QStringLiteral("100"));
    QCOMPARE(text_of(dialog, "LightAttnL"), QStringLiteral("0.4"));
    QCOMPARE(text_of(dialog, "LightAttS"), QStringLiteral("0.04"));
    QCOMPARE(text_of(dialog, "FlashMask"), QStringLiteral("CCCC"));
    QVERIFY(!checked(dialog, "DayFlag"));
    QVERIFY(!checked(dialog, "AircraftFlag"));
}

void DialogsTest::lightLists() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, lights);
    // Both lists pass over the value 32, on purpose; the last entry's own is never written.
    QCOMPARE(entries(control<QComboBox>(dialog, "LightType")),
             QStringList({QStringLiteral("LIGHT_NAV 1"), QStringLiteral("LIGHT_BEACON 2"),
                          QStringLiteral("LIGHT_LANDING 4"), QStringLiteral("LIGHT_TAXI 8"),
                          QStringLiteral("LIGHT_STROBE 16"), QStringLiteral("LIGHT_RECOGNITION 64"),
                          QStringLiteral("LIGHT_WING 128"), QStringLiteral("LIGHT_LOGO 256"),
                          QStringLiteral("LIGHT_NONE 0"), QStringLiteral("PANEL*A/C ONLY* 32")}));
    QCOMPARE(entries(control<QComboBox>(dialog, "LightVariable")),
             QStringList({QStringLiteral("six_second_beacon 1"), QStringLiteral("second_flash 2"),
                          QStringLiteral("becon2 4"), QStringLiteral("becon3 8"),
                          QStringLiteral("becon4 16"), QStringLiteral("becon5 64"),
                          QStringLiteral("beacnt 128")}));
}

void DialogsTest::flashVariableSetsTheMask_data() {
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("mask");
    const char* rows[][2] = {{"six_second_beacon", "0800"},
                             {"second_flash", "-1"},
                             {"becon2", "0100"},
                             {"becon3", "CCCC"},
                             {"becon4", "CCCC"},
                             {"becon5", "CCCC"},
                             {"beacnt", "2"}};
    for (const auto& row : rows) {
        QTest::newRow(row[0]) << QString::fromLatin1(row[0]) << QString::fromLatin1(row[1]);
    }
}

void DialogsTest::flashVariableSetsTheMask() {
    QFETCH(QString, variable);
    QFETCH(QString, mask);
    Rig rig;
    QWidget& dialog = open_dialog(rig, lights);
    type(dialog, "FlashMask", QStringLiteral("ABCD"));
    choose(dialog, "LightVariable", variable);
    QCOMPARE(text_of(dialog, "FlashMask"), mask);
}

void DialogsTest::openingKeepsATypedMask() {
    Rig rig;
    QWidget& first = open_dialog(rig, lights);
    choose(first, "LightVariable", QStringLiteral("beacnt"));
    type(first, "FlashMask", QStringLiteral("0F0F"));
    click(first, "Command1");
    QWidget& second = rig.parameters();
    QCOMPARE(text_of(second, "FlashMask"), QStringLiteral("0F0F"));
    QCOMPARE(control<QComboBox>(second, "LightVariable").currentText(), QStringLiteral("beacnt"));
}

void DialogsTest::lightBoxesClearEachOther() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, lights);
    click(dialog, "AircraftFlag");
    QVERIFY(checked(dialog, "AircraftFlag"));
    click(dialog, "DayFlag");
    QVERIFY(checked(dialog, "DayFlag"));
    QVERIFY(!checked(dialog, "AircraftFlag"));
    click(dialog, "AircraftFlag");
    QVERIFY(!checked(dialog, "DayFlag"));
    // Clearing a box clears the other one too.
    control<QCheckBox>(dialog, "DayFlag").setChecked(true);
    click(dialog, "AircraftFlag");
    QVERIFY(!checked(dialog, "AircraftFlag"));
    QVERIFY(!checked(dialog, "DayFlag"));
}

void DialogsTest::lightsAreHandedOverOnOk() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, lights);
    choose(dialog, "LightType", QStringLiteral("LIGHT_NAV"));
    type(dialog, "LightInt", QStringLiteral("55"));
    type(dialog, "FlashMask", QStringLiteral("1234"));
    click(dialog, "AircraftFlag");
    click(dialog, "Command1");
    QVERIFY(!dialog.isVisible());
    QCOMPARE(line(rig), QStringLiteral("LIGHT_NAV/55/1234-A/C"));
}

void DialogsTest::lightsAreForgottenOnCancel() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, lights);
    type(dialog, "LightInt", QStringLiteral("55"));
    click(dialog, "Command2");
    QVERIFY(!dialog.isVisible());
    QCOMPARE(line(rig), QStringLiteral("LIGHT_STROBE/100/CCCC"));
}

void DialogsTest::panelLightIsHandedOverByPosition() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, lights);
    choose(dialog, "LightType", QStringLiteral("PANEL*A/C ONLY*"));
    click(dialog, "Command1");
    QCOMPARE(line(rig), QStringLiteral("*LIGHT_PANEL*/100/CCCC"));
}

void DialogsTest::lightsSetTheStepMarker() {
    Rig rig;
    const auto& marker = control<StepMarker>(*rig.form, "Label9");
    click(open_dialog(rig, lights), "Command2");
    QVERIFY(!marker.is_done());
    click(rig.parameters(), "Command1");
    QVERIFY(marker.is_done());
}

void DialogsTest::effectDefaults() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, effects);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Effect properties"));
    QCOMPARE(control<QComboBox>(dialog, "lstEffectType").currentText(),
             QStringLiteral("fx_beacon"));
    QCOMPARE(text_of(dialog, "fx_params"),
             QStringLiteral("MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;"));
    QCOMPARE(text_of(dialog, "fx_terrain_alt"), QStringLiteral("0"));
    QCOMPARE(line(rig), QStringLiteral("FX_BEACON/MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;"));
}

void DialogsTest::effectNeedsFortyCharacters() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, effects);
    type(dialog, "fx_params", QStringLiteral("MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59"));
    click(dialog, "Command1");
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::Critical);
    QCOMPARE(
        rig.dialogs.take_box(),
        QStringLiteral("The values of the parameters are incorect. Double click in the textbox for "
                       "default values. Do not change the overall length."));
    QVERIFY(dialog.isVisible());
    type(dialog, "fx_params", QString(40, QLatin1Char('x'))); // only the length counts
    click(dialog, "Command1");
    QVERIFY(!dialog.isVisible());
}

void DialogsTest::doubleClickRestoresTheConstraints() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, effects);
    type(dialog, "fx_params", QStringLiteral("what?"));
    QTest::mouseDClick(&control<QLineEdit>(dialog, "fx_params"), Qt::LeftButton);
    QCOMPARE(text_of(dialog, "fx_params"),
             QStringLiteral("MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;"));
}

void DialogsTest::onTheGroundDisablesTheElevation() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, effects);
    const auto& elevation = control<QLineEdit>(dialog, "fx_terrain_alt");
    QVERIFY(elevation.isEnabled());
    click(dialog, "fx_OTG");
    QVERIFY(!elevation.isEnabled());
    click(dialog, "fx_OTG");
    QVERIFY(elevation.isEnabled());
}

void DialogsTest::effectsAreHandedOverOnOk() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, effects);
    choose(dialog, "lstEffectType", QStringLiteral("fx_smoke_w"));
    type(dialog, "fx_params", QStringLiteral("MOY=10,12;DOM=01,31;HOD=06,22;MOH=00,59;"));
    type(dialog, "fx_terrain_alt", QStringLiteral("120"));
    click(dialog, "fx_OTG");
    click(dialog, "Command1");
    QCOMPARE(line(rig), QStringLiteral("FX_SMOKE_W/MOY=10,12;DOM=01,31;HOD=06,22;MOH=00,59;"));
    QWidget& again = rig.parameters();
    QVERIFY(checked(again, "fx_OTG"));
    QVERIFY(!control<QLineEdit>(again, "fx_terrain_alt").isEnabled());
    QCOMPARE(text_of(again, "fx_terrain_alt"), QStringLiteral("120"));
}

void DialogsTest::windsockDefaults() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, windsock);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Windsock Properties"));
    QCOMPARE(text_of(dialog, "ws_mastColor"), QStringLiteral("10F0F0"));
    QVERIFY(!checked(dialog, "ws_lit"));
    QCOMPARE(line(rig), QString());
}

void DialogsTest::windsockPreviewFollowsTheText() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, windsock);
    const auto& preview = control<ColorSwatch>(dialog, "Shape1");
    QCOMPARE(preview.color(), QColor(0xF0, 0xF0, 0x10)); // the low byte is red
    type(dialog, "ws_mastColor", QStringLiteral("FF8000"));
    QCOMPARE(preview.color(), QColor(0x00, 0x80, 0xFF));
    control<QLineEdit>(dialog, "ws_mastColor").setText(QStringLiteral("no color"));
    QCOMPARE(preview.color(), QColor(0x00, 0x80, 0xFF));
    QVERIFY(rig.dialogs.boxes.empty());
}

void DialogsTest::windsockNeedsSixDigits() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, windsock);
    type(dialog, "ws_mastColor", QStringLiteral("12345"));
    click(dialog, "Command1");
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::Critical);
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("The format of mast color must be in RRGGBB format."));
    QVERIFY(dialog.isVisible());
    type(dialog, "ws_mastColor", QStringLiteral("zzzzzz")); // only the length counts
    click(dialog, "ws_lit");
    click(dialog, "Command1");
    QVERIFY(!dialog.isVisible());
    QVERIFY(checked(rig.parameters(), "ws_lit"));
}

void DialogsTest::libraryIsHandedOverOnOk() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, QStringLiteral("Library New"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Library Placer"));
    QCOMPARE(text_of(dialog, "libScale"), QStringLiteral("0.5"));
    type(dialog, "libGUID", QStringLiteral("01h,02h,03h,04h"));
    type(dialog, "libScale", QStringLiteral("3"));
    click(dialog, "lib_OTG");
    click(dialog, "Command3");
    choose(*rig.form, "typeOfObj", library);
    QCOMPARE(line(rig), QStringLiteral("01h,02h,03h,04h"));
    QWidget& again = rig.parameters();
    QCOMPARE(text_of(again, "libScale"), QStringLiteral("3"));
    QVERIFY(checked(again, "lib_OTG"));
}

void DialogsTest::libraryIsForgottenOnCancel() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, library);
    type(dialog, "libGUID", QStringLiteral("1"));
    click(dialog, "Command4");
    QCOMPARE(line(rig), QStringLiteral("05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h"));
}

void DialogsTest::charactersThatFilesCannotHoldAreNotTaken() {
    Rig rig;
    QWidget& dialog = open_dialog(rig, lights);
    type(dialog, "LightInt", QStringLiteral("5"));
    for (const QString& pasted : {QStringLiteral("\u20ac"), QStringLiteral("\u4e2d")}) {
        QGuiApplication::clipboard()->setText(pasted);
        QTest::keySequence(&control<QLineEdit>(dialog, "LightInt"), QKeySequence::Paste);
    }
    QCOMPARE(text_of(dialog, "LightInt"), QStringLiteral("5\u20ac"));
}

// When they are confirmed, and again when they are used.
void DialogsTest::parametersThatBreakTheSourceAreNoted() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    const auto notes = [&](const char* key) {
        return rig.messages().filter(QStringLiteral("Note: ")).filter(QLatin1String(key)).size();
    };
    QWidget& dialog = open_dialog(rig, lights);
    click(dialog, "Command1"); // no flash variable is chosen, as at first
    QCOMPARE(notes("LightVariable"), 1);
    rig.select(1);
    click(*rig.form, "Command1");
    QCOMPARE(notes("LightVariable"), 2);
    QWidget& again = open_dialog(rig, lights);
    choose(again, "LightVariable", QStringLiteral("beacnt"));
    click(again, "Command1");
    QCOMPARE(notes("LightVariable"), 2);
    QWidget& placer = open_dialog(rig, QStringLiteral("Library New"));
    type(placer, "libScale", QStringLiteral("0.25"));
    click(placer, "Command3");
    QCOMPARE(notes("libScale"), 1); // written as 0.3
}

namespace {
const Registration<DialogsTest> registration("dialogs");
}

} // namespace morvane::test

#include "dialogs_test.moc"
