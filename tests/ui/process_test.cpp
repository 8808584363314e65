// SPDX-License-Identifier: GPL-3.0-or-later

// From Open to Save with all five kinds, against the command line given the same choices.

#include "ui/cli.h"
#include "ui/registry.h"
#include "ui/rig.h"
#include "ui/widgets/step_marker.h"

#include <QLabel>

namespace morvane::test {

class ProcessTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void kindsStandInTheirOrder();
    void parameterLineOfEveryKind();
    void wholeSessionEqualsTheCommandLine();
    void savedRecipeMakesTheSameAgain();
    void appliedRecipeEqualsTheCommandLine();
    void openedRecipeIsAppliedToItsSet();
    void recipeErrorsChangeNothing();
    void recipeNeedsAnOpenSet();
    void countersMarkersAndLabelFollow();
    void nextUnprocessedIsFound();
    void aircraftLightsRewriteTheFrame();
    void flatWindsockStaysUnprocessed();
    void nothingSelected();
    void alreadyProcessed();
    void alreadySaved();
    void nothingToSave();
};

namespace {

constexpr int last_material = 13;

bool is_done(const Rig& rig, const char* marker) {
    return control<StepMarker>(*rig.form, marker).is_done();
}

std::string bytes_of(const QString& base, const char* ending) {
    return read_file(base.toStdString() + ending);
}

void compare_sets(const QString& actual, const QString& expected) {
    QVERIFY(bytes_of(actual, "_0.asm") == bytes_of(expected, "_0.asm"));
    QVERIFY(bytes_of(actual, ".asm") == bytes_of(expected, ".asm"));
}

void process(Rig& rig, int row) {
    rig.select(row);
    click(*rig.form, "Command1");
}

// Chooses kind and parameters for a material as a person does, all five kinds in turn.
void choose_for(Rig& rig, int row) {
    switch (row) {
    case 1: {
        choose(*rig.form, "typeOfObj", QStringLiteral("Lights"));
        QWidget& dialog = rig.parameters();
        choose(dialog, "LightType", QStringLiteral("LIGHT_TAXI"));
        choose(dialog, "LightVariable", QStringLiteral("second_flash"));
        type(dialog, "LightInt", QStringLiteral("42"));
        click(dialog, "DayFlag");
        click(dialog, "Command1");
        break;
    }
    case 7: {
        choose(*rig.form, "typeOfObj", QStringLiteral("Windsock"));
        QWidget& dialog = rig.parameters();
        type(dialog, "ws_mastColor", QStringLiteral("F0E0D0"));
        click(dialog, "ws_lit");
        click(dialog, "Command1");
        break;
    }
    case 9: {
        choose(*rig.form, "typeOfObj", QStringLiteral("Library"));
        QWidget& dialog = rig.parameters();
        type(dialog, "libScale", QStringLiteral("3"));
        type(dialog, "lib_terrain_alt", QStringLiteral("100"));
        click(dialog, "Command3");
        break;
    }
    case 10:
        choose(*rig.form, "typeOfObj", QStringLiteral("Library New"));
        break;
    case 11: {
        choose(*rig.form, "typeOfObj", QStringLiteral("Effects"));
        QWidget& dialog = rig.parameters();
        choose(dialog, "lstEffectType", QStringLiteral("fx_smoke_w"));
        click(dialog, "fx_OTG");
        click(dialog, "Command1");
        break;
    }
    default:
        break; // the kind and the parameters stay as they are
    }
}

// The same choices, for the command line.
std::string same_choices() {
    const std::string lights = "kind = \"Lights\"\nLightType = \"LIGHT_TAXI\"\n"
                               "LightVariable = \"second_flash\"\nFlashMask = \"-1\"\n"
                               "LightInt = \"42\"\nDayFlag = true\n";
    const std::string windsock = "kind = \"Windsock\"\nws_mastColor = \"F0E0D0\"\nws_lit = true\n";
    const std::string library = "libScale = \"3\"\nlib_Terrain_alt = \"100\"\n";
    const std::string effects =
        "kind = \"Effects\"\nlstEffectType = \"fx_smoke_w\"\nfx_OTG = true\n";
    std::string recipe;
    for (int row = 1; row <= last_material; ++row) {
        recipe += "[[assign]]\nmaterial = " + std::to_string(row) + "\n";
        recipe += row <= 6    ? lights
                  : row <= 8  ? windsock
                  : row == 9  ? "kind = \"Library\"\n" + library
                  : row == 10 ? "kind = \"Library New\"\n" + library
                              : effects;
    }
    return recipe;
}

} // namespace

void ProcessTest::kindsStandInTheirOrder() {
    Rig rig;
    const auto& kinds = control<QComboBox>(*rig.form, "typeOfObj");
    QStringList items;
    for (int i = 0; i < kinds.count(); ++i) {
        items.append(kinds.itemText(i));
    }
    QCOMPARE(items, (QStringList{QStringLiteral("Lights"), QStringLiteral("Effects"),
                                 QStringLiteral("Library"), QStringLiteral("Library New"),
                                 QStringLiteral("Windsock")}));
    QCOMPARE(kinds.currentIndex(), 0);
}

void ProcessTest::parameterLineOfEveryKind() {
    Rig rig;
    QCOMPARE(text_of(*rig.form, "txtinfo"), QStringLiteral("LIGHT_STROBE/100/CCCC"));
    choose(*rig.form, "typeOfObj", QStringLiteral("Library"));
    const QString identifier = QStringLiteral("05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h");
    QCOMPARE(text_of(*rig.form, "txtinfo"), identifier);
    choose(*rig.form, "typeOfObj", QStringLiteral("Library New")); // leaves the line as it was
    QCOMPARE(text_of(*rig.form, "txtinfo"), identifier);
    choose(*rig.form, "typeOfObj", QStringLiteral("Windsock"));
    QCOMPARE(text_of(*rig.form, "txtinfo"), QString());
}

void ProcessTest::wholeSessionEqualsTheCommandLine() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    Rig other;
    const QString other_base = other.copy_example("airport");
    rig.open(base);
    for (int row = 1; row <= last_material; ++row) {
        choose_for(rig, row);
        process(rig, row);
    }
    QVERIFY2(rig.dialogs.boxes.empty(), qPrintable(rig.dialogs.take_box()));
    click(*rig.form, "Command3");
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::Information);
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("Finished. Use 'bglc /bgl airport.asm' to compile."));
    const std::string recipe = other.folder.write("choices.toml", same_choices());
    QCOMPARE(run_cli(QString::fromStdString(other.settings.path()),
                     {QStringLiteral("process"), other_base, QString::fromStdString(recipe)}),
             0);
    compare_sets(base, other_base);
}

void ProcessTest::savedRecipeMakesTheSameAgain() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    for (int row = 1; row <= last_material; ++row) {
        choose_for(rig, row);
        process(rig, row);
    }
    const QString recipe = QString::fromStdString(rig.folder.file("made.toml"));
    rig.dialogs.files = {recipe};
    trigger(*rig.form, "actionSaveRecipe");
    click(*rig.form, "Command3");

    Rig again;
    const QString again_base = again.copy_example("airport");
    again.open(again_base);
    again.dialogs.files = {recipe};
    trigger(*again.form, "actionApplyRecipe");
    QCOMPARE(text_of(*again.form, "Text2"), QStringLiteral("0"));
    click(*again.form, "Command3");
    compare_sets(again_base, base);
}

void ProcessTest::appliedRecipeEqualsTheCommandLine() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    Rig other;
    const QString other_base = other.copy_example("airport");
    rig.open(base);
    rig.dialogs.files = {base + QStringLiteral(".toml")};
    trigger(*rig.form, "actionApplyRecipe");
    QVERIFY2(rig.dialogs.boxes.empty(), qPrintable(rig.dialogs.take_box()));
    QVERIFY(is_done(rig, "Label10"));
    click(*rig.form, "Command3");
    QCOMPARE(run_cli(QString::fromStdString(other.settings.path()),
                     {QStringLiteral("process"), other_base, other_base + QStringLiteral(".toml")}),
             0);
    compare_sets(base, other_base);
}

void ProcessTest::openedRecipeIsAppliedToItsSet() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.form->open_file(base + QStringLiteral(".toml"));
    QVERIFY2(rig.dialogs.boxes.empty(), qPrintable(rig.dialogs.take_box()));
    QCOMPARE(text_of(*rig.form, "InputFile"), base);
    QVERIFY(is_done(rig, "Label10"));
    const std::string alone = rig.folder.write("alone.toml", "");
    rig.dialogs.unsaved = Unsaved::Discard;
    rig.form->open_file(QString::fromStdString(alone));
    QVERIFY(rig.dialogs.take_box().contains(QStringLiteral("alone")));
}

void ProcessTest::recipeErrorsChangeNothing() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    const std::string recipe =
        rig.folder.write("wrong.toml", "[[assign]]\nmaterial = 1\nkind = \"Lamps\"\n");
    rig.dialogs.files = {QString::fromStdString(recipe)};
    trigger(*rig.form, "actionApplyRecipe");
    QVERIFY(rig.dialogs.take_box().contains(QStringLiteral("wrong.toml")));
    rig.folder.write("far.toml", "[[assign]]\nmaterial = 99\nkind = \"Lights\"\n");
    rig.dialogs.files = {QString::fromStdString(rig.folder.file("far.toml"))};
    trigger(*rig.form, "actionApplyRecipe");
    QVERIFY(rig.dialogs.take_box().contains(QStringLiteral("far.toml")));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
}

void ProcessTest::recipeNeedsAnOpenSet() {
    Rig rig;
    trigger(*rig.form, "actionApplyRecipe");
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("Open a source set first."));
    trigger(*rig.form, "actionSaveRecipe");
    QVERIFY(rig.dialogs.take_box().startsWith(QStringLiteral("Process a material first")));
}

void ProcessTest::countersMarkersAndLabelFollow() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    const auto& processed = control<QLabel>(*rig.form, "Label16");
    for (int row = 1; row <= last_material; ++row) {
        rig.select(row);
        QVERIFY(!processed.isVisible());
        choose_for(rig, row);
        click(*rig.form, "Command1");
        QVERIFY(processed.isVisible());
        QCOMPARE(text_of(*rig.form, "Text1"), QStringLiteral("13"));
        QCOMPARE(text_of(*rig.form, "Text2"), QString::number(last_material - row));
        QCOMPARE(is_done(rig, "Label10"), row == last_material);
        QVERIFY(!is_done(rig, "Label12"));
    }
    QVERIFY(is_done(rig, "Label9"));
    rig.select(1);
    QVERIFY(processed.isVisible());
    const auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    QCOMPARE(list.model()->index(0, MaterialModel::Processed).data().toString(),
             QStringLiteral("\u2713 Lights"));
    click(*rig.form, "Command3");
    QVERIFY(is_done(rig, "Label12"));
    QCOMPARE(rig.messages().front(), QStringLiteral("Done. "));
}

void ProcessTest::nextUnprocessedIsFound() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    const auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    trigger(*rig.form, "actionNext");
    QCOMPARE(list.currentIndex().row(), 0);
    click(*rig.form, "Command1");
    process(rig, 2);
    rig.select(1);
    trigger(*rig.form, "actionNext");
    QCOMPARE(list.currentIndex().row(), 2);
    rig.select(13);
    trigger(*rig.form, "actionNext");
    QCOMPARE(list.currentIndex().row(), 2);
}

void ProcessTest::aircraftLightsRewriteTheFrame() {
    Rig rig;
    const QString base = rig.copy_example("aircraft-lights");
    const std::string frame = bytes_of(base, ".asm");
    rig.open(base);
    QWidget& dialog = rig.parameters();
    click(dialog, "AircraftFlag");
    click(dialog, "Command1");
    process(rig, 1);
    click(*rig.form, "Command3");
    QVERIFY(frame.find("dict_g_lightStates equ 152") == std::string::npos);
    QVERIFY(bytes_of(base, ".asm").find("dict_g_lightStates equ 152") != std::string::npos);
}

void ProcessTest::flatWindsockStaysUnprocessed() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    choose(*rig.form, "typeOfObj", QStringLiteral("Windsock"));
    process(rig, 1); // the runway lights lie flat
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::Exclamation);
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("The triangle used has zero height. It cannot be used for Windsock "
                            "object."));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
    QVERIFY(!control<QLabel>(*rig.form, "Label16").isVisible());
}

void ProcessTest::nothingSelected() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    click(*rig.form, "Command1");
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::None);
    QCOMPARE(
        rig.dialogs.take_box(),
        QStringLiteral("Error ! Please select material and set processing parameters first !!"));
}

void ProcessTest::alreadyProcessed() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 1);
    process(rig, 1);
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("This material is already processed. Please select another."));
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("12"));
}

void ProcessTest::alreadySaved() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 1);
    click(*rig.form, "Command3");
    rig.dialogs.boxes.clear();
    click(*rig.form, "Command3");
    QCOMPARE(rig.dialogs.take_box(),
             QStringLiteral("This file has already been saved. Reload or restore to continue "
                            "modifications"));
}

void ProcessTest::nothingToSave() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    click(*rig.form, "Command3");
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("No material matches"));
    QVERIFY(!is_done(rig, "Label12"));
}

namespace {
const Registration<ProcessTest> registration("process");
}

} // namespace morvane::test

#include "process_test.moc"
