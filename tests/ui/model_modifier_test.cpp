// SPDX-License-Identifier: GPL-3.0-or-later

// The model modifier and the label tool.

#include "ui/cli.h"
#include "ui/registry.h"
#include "ui/rig.h"

#include <QCheckBox>

#include <filesystem>

namespace morvane::test {

class ModelModifierTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void boxesEnableTheirPaths();
    void nothingToDo();
    void browseSetsTheBase();
    void assemblyEqualsTheCommandLine();
    void backupAndRestoreOfAllSets();
    void pathsAreRemembered();
    void labelToolTakesTheOpenSet();
    void labelToolKeepsABrowsedFile();
    void labelsAreRenamed();
    void labelsOfAMissingFile();
    void lettersOutsideAsciiAreWrittenAsTheCommandLineDoes();
    void lettersThatSourceFilesCannotHoldAreRefused();
};

namespace {

const QStringList parts{QStringLiteral("complete"), QStringLiteral("fuselage"),
                        QStringLiteral("wings_high"), QStringLiteral("wings_low"),
                        QStringLiteral("shadow")};

QWidget& open_modifier(Rig& rig) {
    click(*rig.form, "Command6");
    return rig.window("frmModel");
}

QString aircraft(const Rig& rig, const QString& part) {
    return QString::fromStdString(rig.folder.file("aircraft-flex/")) + part;
}

void fill_paths(const Rig& rig, QWidget& modifier) {
    for (int i = 0; i < parts.size(); ++i) {
        type(modifier, qPrintable(QStringLiteral("fnModel_%1").arg(i)), aircraft(rig, parts[i]));
    }
}

QWidget& open_labels(Rig& rig) {
    click(*rig.form, "Command9");
    return rig.window("frmLabelRename");
}

} // namespace

void ModelModifierTest::boxesEnableTheirPaths() {
    Rig rig;
    QWidget& modifier = open_modifier(rig);
    QCOMPARE(modifier.windowTitle(), QStringLiteral("Model Modifier"));
    const auto enabled = [&](int part) {
        const QByteArray field = QStringLiteral("fnModel_%1").arg(part).toLatin1();
        const QByteArray button = QStringLiteral("Command8_%1").arg(part).toLatin1();
        return control<QLineEdit>(modifier, field).isEnabled() &&
               control<QAbstractButton>(modifier, button).isEnabled();
    };
    QVERIFY(enabled(0) && !enabled(1) && !enabled(2) && !enabled(3) && !enabled(4));
    click(modifier, "chkWings");
    QVERIFY(enabled(1) && enabled(2) && enabled(3) && !enabled(4));
    click(modifier, "chkShadow");
    QVERIFY(enabled(4));
    click(modifier, "chkWings");
    QVERIFY(enabled(0) && !enabled(1) && !enabled(2) && !enabled(3) && enabled(4));
    click(modifier, "chkShadow");
    QVERIFY(!enabled(4));
}

void ModelModifierTest::nothingToDo() {
    Rig rig;
    click(open_modifier(rig), "Command2");
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::Exclamation);
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("Nothing to do !"));
}

void ModelModifierTest::browseSetsTheBase() {
    Rig rig;
    QWidget& modifier = open_modifier(rig);
    click(modifier, "chkWings");
    type(modifier, "fnModel_2", QStringLiteral("/planes/high"));
    rig.dialogs.files = {QStringLiteral("/planes/other.asm"), QStringLiteral("a.b")};
    click(modifier, "Command8_2");
    QCOMPARE(rig.dialogs.folders.front(), QStringLiteral("/planes"));
    QCOMPARE(text_of(modifier, "fnModel_2"), QStringLiteral("/planes/other"));
    click(modifier, "Command8_2"); // too short a name changes nothing
    click(modifier, "Command8_2"); // nor does giving up
    QCOMPARE(text_of(modifier, "fnModel_2"), QStringLiteral("/planes/other"));
}

void ModelModifierTest::assemblyEqualsTheCommandLine() {
    Rig rig;
    rig.copy_example("aircraft-flex");
    QWidget& modifier = open_modifier(rig);
    click(modifier, "chkWings");
    click(modifier, "chkShadow");
    fill_paths(rig, modifier);
    click(modifier, "Command3");
    click(modifier, "Command2");
    QCOMPARE(rig.dialogs.boxes.size(), 1U);
    QVERIFY(rig.dialogs.boxes[0].icon == Icon::Information);
    QVERIFY(rig.dialogs.take_box().startsWith(
        QStringLiteral("The modification seems to be successful. Output file is ")));
    std::vector<std::string> made;
    for (const QString& part : parts) {
        made.push_back(read_file(aircraft(rig, part).toStdString() + ".asm"));
        made.push_back(read_file(aircraft(rig, part).toStdString() + "_0.asm"));
    }
    // The same once more in the same place by the command line: includes carry full paths.
    std::filesystem::remove_all(rig.folder.file("aircraft-flex"));
    rig.copy_example("aircraft-flex");
    QCOMPARE(
        run_cli(QString::fromStdString(rig.settings.path()),
                {QStringLiteral("assemble"), QStringLiteral("--flexing-wings"),
                 QStringLiteral("--shadow-optimization"), QStringLiteral("--complete"),
                 aircraft(rig, parts[0]), QStringLiteral("--fuselage"), aircraft(rig, parts[1]),
                 QStringLiteral("--wings-high"), aircraft(rig, parts[2]),
                 QStringLiteral("--wings-low"), aircraft(rig, parts[3]), QStringLiteral("--shadow"),
                 aircraft(rig, parts[4])}),
        0);
    std::size_t file = 0;
    for (const QString& part : parts) {
        QVERIFY2(read_file(aircraft(rig, part).toStdString() + ".asm") == made[file++],
                 qPrintable(part));
        QVERIFY2(read_file(aircraft(rig, part).toStdString() + "_0.asm") == made[file++],
                 qPrintable(part));
    }
}

void ModelModifierTest::backupAndRestoreOfAllSets() {
    Rig rig;
    rig.copy_example("aircraft-flex");
    QWidget& modifier = open_modifier(rig);
    click(modifier, "chkWings");
    click(modifier, "chkShadow");
    fill_paths(rig, modifier);
    click(modifier, "chkWings"); // all five count, whether or not their boxes are set
    click(modifier, "chkShadow");
    click(modifier, "Command3");
    for (const QString& part : parts) {
        QVERIFY(rig.folder.has("aircraft-flex/" + part.toStdString() + "_azm.bck"));
        QVERIFY(rig.folder.has("aircraft-flex/" + part.toStdString() + "_asm.bck"));
    }
    QVERIFY(rig.dialogs.questions.empty());
    click(modifier, "Command3");
    QCOMPARE(rig.dialogs.questions.size(), 1U);
    QCOMPARE(rig.dialogs.questions[0].text,
             QStringLiteral("A previous backup of the selected files exists. Do you want to "
                            "overwrite it ?"));
    rig.folder.write("aircraft-flex/wings_low.asm", "damaged");
    click(modifier, "Command4");
    QVERIFY(rig.folder.read("aircraft-flex/wings_low.asm") != "damaged");
}

void ModelModifierTest::pathsAreRemembered() {
    Rig rig;
    rig.settings.write("model.ini", "anything\r\n  /one  \r\n/two\r\n\r\n\r\n/five\r\n");
    QWidget& modifier = open_modifier(rig);
    QCOMPARE(text_of(modifier, "fnModel_0"), QStringLiteral("/one"));
    QCOMPARE(text_of(modifier, "fnModel_1"), QStringLiteral("/two"));
    QCOMPARE(text_of(modifier, "fnModel_4"), QStringLiteral("/five"));
    type(modifier, "fnModel_0", QStringLiteral(" /new"));
    click(modifier, "Command1");
    QVERIFY(!modifier.isVisible());
    QCOMPARE(rig.settings.read("model.ini"),
             std::string("md001\r\n /new\r\n/two\r\n\r\n\r\n/five\r\n"));
}

void ModelModifierTest::labelToolTakesTheOpenSet() {
    Rig rig;
    type(*rig.form, "InputFile", QStringLiteral("/sets/tower"));
    QWidget& labels = open_labels(rig);
    QCOMPARE(labels.windowTitle(), QStringLiteral("Labels Rename tool"));
    QTRY_COMPARE(text_of(labels, "InputFile"), QStringLiteral("/sets/tower_0.asm"));
    type(labels, "InputFile", QStringLiteral("typed"));
    rig.form->activateWindow();
    QTRY_VERIFY(rig.form->isActiveWindow());
    type(*rig.form, "InputFile", QStringLiteral("/sets/hangar"));
    click(*rig.form, "Command9");
    QTRY_COMPARE(text_of(labels, "InputFile"), QStringLiteral("/sets/hangar_0.asm"));
}

void ModelModifierTest::labelToolKeepsABrowsedFile() {
    Rig rig;
    QWidget& labels = open_labels(rig);
    QTRY_COMPARE(text_of(labels, "InputFile"), QStringLiteral("_0.asm"));
    rig.dialogs.files = {QStringLiteral("/sets/other.asm")};
    click(labels, "Command8");
    QCoreApplication::processEvents();
    QCOMPARE(text_of(labels, "InputFile"), QStringLiteral("/sets/other.asm"));
    click(labels, "Command8"); // given up
    QCOMPARE(text_of(labels, "InputFile"), QStringLiteral("/sets/other.asm"));
}

void ModelModifierTest::labelsAreRenamed() {
    Rig rig;
    const std::string file =
        rig.folder.write("m.asm", "wing label BGLCODE\r\n  JUMP wing, other\r\n");
    QWidget& labels = open_labels(rig);
    QTRY_COMPARE(text_of(labels, "InputFile"), QStringLiteral("_0.asm"));
    type(labels, "InputFile", QString::fromStdString(file));
    type(labels, "lblAdition", QStringLiteral("G7"));
    rig.dialogs.answer = true;
    click(labels, "lblOpen");
    QCOMPARE(rig.dialogs.questions.size(), 1U);
    QCOMPARE(rig.dialogs.questions[0].text, QStringLiteral("Do you want to save the changes ? "));
    QCOMPARE(rig.dialogs.questions[0].title, QStringLiteral("File replace"));
    QCOMPARE(rig.folder.read("m.asm"),
             std::string("wingG7 label BGLCODE\r\n  JUMP wingG7, other\r\n\r\n"));
    QCOMPARE(rig.messages().mid(0, 3),
             (QStringList{QStringLiteral("File saved"), QStringLiteral("Labels mofilied : 1"),
                          QStringLiteral("Open file returned 3 lines of code")}));
}

void ModelModifierTest::labelsOfAMissingFile() {
    Rig rig;
    QWidget& labels = open_labels(rig);
    QTRY_COMPARE(text_of(labels, "InputFile"), QStringLiteral("_0.asm"));
    type(labels, "InputFile", QStringLiteral("/none.asm"));
    click(labels, "lblOpen");
    QCOMPARE(rig.dialogs.boxes.size(), 2U);
    QCOMPARE(rig.dialogs.boxes[0].text,
             QStringLiteral("Error ! File does not exist: (/none.asm)."));
    QCOMPARE(rig.dialogs.boxes[1].text, QStringLiteral("File returns no lines."));
}

void ModelModifierTest::lettersOutsideAsciiAreWrittenAsTheCommandLineDoes() {
    Rig rig;
    const std::string source = "wing label BGLCODE\r\n  JUMP wing, other ; caf\xE9\r\n";
    const QString ours = QString::fromStdString(rig.folder.write("ours.asm", source));
    const QString theirs = QString::fromStdString(rig.folder.write("theirs.asm", source));
    const QString suffix = QString::fromUtf8("G\xC3\xA9");
    QWidget& labels = open_labels(rig);
    QTRY_COMPARE(text_of(labels, "InputFile"), QStringLiteral("_0.asm"));
    type(labels, "InputFile", ours);
    control<QLineEdit>(labels, "lblAdition").setText(suffix);
    click(labels, "lblOpen");
    QCOMPARE(run_cli(QString::fromStdString(rig.settings.path()),
                     {QStringLiteral("--yes"), QStringLiteral("rename-labels"), theirs, suffix}),
             0);
    QVERIFY(
        rig.folder.read("ours.asm").starts_with("wingG\xE9 label BGLCODE\r\n  JUMP wingG\xE9,"));
    QVERIFY(rig.folder.read("ours.asm") == rig.folder.read("theirs.asm"));
}

void ModelModifierTest::lettersThatSourceFilesCannotHoldAreRefused() {
    Rig rig;
    const std::string source = "wing label BGLCODE\r\n";
    const QString file = QString::fromStdString(rig.folder.write("m.asm", source));
    const QString greek = QString::fromUtf8("G\xCE\xA9");
    QWidget& labels = open_labels(rig);
    QTRY_COMPARE(text_of(labels, "InputFile"), QStringLiteral("_0.asm"));
    type(labels, "InputFile", file);
    control<QLineEdit>(labels, "lblAdition").setText(greek);
    click(labels, "lblOpen");
    QVERIFY(rig.folder.read("m.asm") == source);
    QVERIFY(run_cli(QString::fromStdString(rig.settings.path()),
                    {QStringLiteral("--yes"), QStringLiteral("rename-labels"), file, greek}) > 0);
    QVERIFY(rig.folder.read("m.asm") == source);
}

namespace {
const Registration<ModelModifierTest> registration("model_modifier");
}

} // namespace morvane::test

#include "model_modifier_test.moc"
