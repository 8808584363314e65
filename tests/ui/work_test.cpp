// SPDX-License-Identifier: GPL-3.0-or-later

// Work that could be lost or written to the wrong place, and errors that nobody expects.

#include "support/faulty_disk.h"
#include "ui/registry.h"
#include "ui/rig.h"

#include <QDir>
#include <QLabel>
#include <QMenu>

#include <filesystem>
#include <new>
#include <stdexcept>

namespace morvane::test {

class WorkTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void savingOverAnotherSetAsks();
    void savingOverAnotherSetCanBeAnsweredYes();
    void savingTheOpenSetByAnotherNameOfItsFolderAsksNothing();
    void savingUnderANewNameAsksNothing();
    void workAfterSaveIsNotDroppedSilently();
    void workAfterSaveIsNotedOnce();
    void theTitleMarksUnsavedWork();
    void compilingAsksToSaveFirst();
    void compilingWithoutSavingLeavesTheFiles();
    void compilingCanBeGivenUp();
    void compilingByKeySavesFirstWithoutABox();
    void compilingByKeyDoesNotReplaceAnotherSetUnasked();
    void failingCompilerLeavesALineInTheLog();
    void deadRecentSetsAreRemoved();
    void boxesAreExplainedByTheNotesOfTheirCommand();
    void unexpectedErrorsEndInABox_data();
    void unexpectedErrorsEndInABox();
    void closingGoesOnAfterAnUnexpectedError();
    void unexpectedErrorsInDialogsEndInABox_data();
    void unexpectedErrorsInDialogsEndInABox();
    void unexpectedErrorsOutsideOfCommandsEndInABox_data();
    void unexpectedErrorsOutsideOfCommandsEndInABox();
};

namespace {

void process(Rig& rig, int row) {
    rig.select(row);
    click(*rig.form, "Command1");
}

std::string bytes_of(const QString& base) {
    return read_file(base.toStdString() + "_0.asm");
}

// A second set beside the example, and its base path.
QString copy_set(const QString& base, const QString& name) {
    const QString copy = QDir(QFileInfo(base).path()).filePath(name);
    for (const char* ending : {"_0.asm", ".asm"}) {
        std::filesystem::copy_file(base.toStdString() + ending, copy.toStdString() + ending);
    }
    return copy;
}

bool log_has(Rig& rig, const QString& part) {
    return !rig.messages().filter(part).isEmpty();
}

void write_compiler(const QString& base, const std::string& status) {
    const auto folder = std::filesystem::path(base.toStdString()).parent_path();
#ifdef Q_OS_WIN
    write_file((folder / "bglc.bat").string(), "@exit " + status + "\r\n");
#else
    write_file((folder / "bglc").string(), "#!/bin/sh\nexit " + status + "\n");
    std::filesystem::permissions(folder / "bglc", std::filesystem::perms::owner_all);
#endif
}

void throw_unexpected(const std::string& what) {
    if (what == "memory") {
        throw std::bad_alloc();
    }
    if (what == "logic") {
        throw std::logic_error("the moon is full");
    }
    if (what == "number") {
        throw 42;
    }
}

// What throw_unexpected throws, and the text of the box.
void add_unexpected_errors() {
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("text");
    QTest::newRow("memory") << QStringLiteral("memory")
                            << QStringLiteral("There is not enough memory for this command.");
    QTest::newRow("logic") << QStringLiteral("logic")
                           << QStringLiteral("The command has failed: the moon is full");
    QTest::newRow("number") << QStringLiteral("number")
                            << QStringLiteral("The command has failed for an unknown reason.");
}

// A disk that has lost its mind: every question about a file throws what no operation expects.
class StrangeDisk final : public FaultyDisk {
  public:
    bool is_file(const std::string& path) override {
        throw_unexpected(what);
        return FaultyDisk::is_file(path);
    }
    std::string what;
};

} // namespace

void WorkTest::savingOverAnotherSetAsks() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    const QString other = copy_set(base, QStringLiteral("other"));
    const std::string before = bytes_of(other);
    rig.open(base);
    process(rig, 1);
    type(*rig.form, "InputFile", other); // the output follows; Open is forgotten
    rig.dialogs.answer = false;
    click(*rig.form, "Command3");
    QCOMPARE(rig.dialogs.questions.size(), 1U);
    QCOMPARE(rig.dialogs.questions[0].text,
             other + QStringLiteral("_0.asm is not the set that is open. Replace it?"));
    QVERIFY(bytes_of(other) == before);
    QVERIFY(rig.dialogs.boxes.empty());
}

void WorkTest::savingOverAnotherSetCanBeAnsweredYes() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    const QString other = copy_set(base, QStringLiteral("other"));
    rig.open(base);
    process(rig, 1);
    type(*rig.form, "OutputFile", other);
    rig.dialogs.answer = true;
    click(*rig.form, "Command3");
    QVERIFY(bytes_of(other).find("LBL1 label BGLCODE") != std::string::npos);
}

void WorkTest::savingTheOpenSetByAnotherNameOfItsFolderAsksNothing() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    process(rig, 1);
    type(*rig.form, "OutputFile",
         QFileInfo(base).path() + QStringLiteral("/./") + QFileInfo(base).fileName());
    click(*rig.form, "Command3");
    QVERIFY(rig.dialogs.questions.empty());
    QVERIFY(bytes_of(base).find("LBL1 label BGLCODE") != std::string::npos);
}

void WorkTest::savingUnderANewNameAsksNothing() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    process(rig, 1);
    type(*rig.form, "OutputFile", base + QStringLiteral("_new"));
    click(*rig.form, "Command3");
    QVERIFY(rig.dialogs.questions.empty());
    QVERIFY(rig.folder.has("airport/airport_new_0.asm"));
}

void WorkTest::workAfterSaveIsNotDroppedSilently() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    process(rig, 1);
    click(*rig.form, "Command3");
    process(rig, 2);
    rig.dialogs.unsaved = Unsaved::Cancel;
    QVERIFY(!rig.form->close());
    QCOMPARE(rig.dialogs.unsaved_asked, 1);
    QVERIFY(!rig.dialogs.save_offered); // a set is not saved twice
    click(*rig.form, "Command2");
    QCOMPARE(rig.dialogs.unsaved_asked, 2);
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("11"));
    rig.dialogs.unsaved = Unsaved::Discard;
    QVERIFY(rig.form->close());
}

void WorkTest::workAfterSaveIsNotedOnce() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 1);
    QVERIFY(!log_has(rig, QStringLiteral("Restore and Open")));
    click(*rig.form, "Command3");
    process(rig, 2);
    process(rig, 3);
    QCOMPARE(rig.messages().filter(QStringLiteral("Restore and Open")).size(), 1);
}

void WorkTest::theTitleMarksUnsavedWork() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    QCOMPARE(rig.form->windowTitle(), QStringLiteral("Morvane - airport"));
    process(rig, 1);
    QCOMPARE(rig.form->windowTitle(), QStringLiteral("Morvane - airport *"));
    click(*rig.form, "Command3");
    QCOMPARE(rig.form->windowTitle(), QStringLiteral("Morvane - airport"));
}

void WorkTest::compilingAsksToSaveFirst() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    write_compiler(base, "0");
    rig.open(base);
    process(rig, 1);
    rig.dialogs.unsaved = Unsaved::Save;
    click(*rig.form, "Command12");
    QCOMPARE(rig.dialogs.unsaved_asked, 1);
    QVERIFY(rig.dialogs.unsaved_text.startsWith(QStringLiteral("Save first?")));
    QVERIFY(bytes_of(base).find("LBL1 label BGLCODE") != std::string::npos);
    QVERIFY(rig.settings.has("comp.txt"));
    click(*rig.form, "Command12"); // nothing is unsaved now
    QCOMPARE(rig.dialogs.unsaved_asked, 1);
}

void WorkTest::compilingWithoutSavingLeavesTheFiles() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    write_compiler(base, "0");
    const std::string before = bytes_of(base);
    rig.open(base);
    process(rig, 1);
    rig.dialogs.unsaved = Unsaved::Discard;
    click(*rig.form, "Command12");
    QVERIFY(bytes_of(base) == before);
    QVERIFY(rig.settings.has("comp.txt"));
}

void WorkTest::compilingCanBeGivenUp() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    write_compiler(base, "0");
    rig.open(base);
    process(rig, 1);
    rig.dialogs.unsaved = Unsaved::Cancel;
    click(*rig.form, "Command12");
    QVERIFY(!rig.settings.has("comp.txt"));
}

void WorkTest::compilingByKeySavesFirstWithoutABox() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    write_compiler(base, "0");
    rig.open(base);
    process(rig, 1);
    trigger(*rig.form, "actionCompile");
    QCOMPARE(rig.dialogs.unsaved_asked, 0);
    QVERIFY(rig.dialogs.boxes.empty());
    QVERIFY(bytes_of(base).find("LBL1 label BGLCODE") != std::string::npos);
    QVERIFY(rig.settings.has("comp.txt"));
    QVERIFY(log_has(rig, QStringLiteral("Finished. Use 'bglc /bgl airport.asm' to compile.")));
    trigger(*rig.form, "actionCompile"); // nothing is unsaved now
    QVERIFY(rig.dialogs.boxes.empty());
}

void WorkTest::compilingByKeyDoesNotReplaceAnotherSetUnasked() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    write_compiler(base, "0");
    const QString other = rig.copy_example("aircraft-lights");
    const std::string before = bytes_of(other);
    rig.open(base);
    process(rig, 1);
    type(*rig.form, "OutputFile", other);
    rig.dialogs.answer = false;
    trigger(*rig.form, "actionCompile");
    QCOMPARE(rig.dialogs.questions.size(), 1U);
    QVERIFY(bytes_of(other) == before);
    QVERIFY(!rig.settings.has("comp.txt"));
}

void WorkTest::failingCompilerLeavesALineInTheLog() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    write_compiler(base, "3");
    type(*rig.form, "InputFile", base);
    click(*rig.form, "Command12");
    QTRY_VERIFY(log_has(rig, QStringLiteral("The compiler has failed: it ended with status 3.")));
}

void WorkTest::deadRecentSetsAreRemoved() {
    Rig rig;
    const QString airport = rig.copy_example("airport");
    const QString aircraft = rig.copy_example("aircraft-lights");
    rig.open(airport);
    rig.open(aircraft);
    std::filesystem::remove(airport.toStdString() + "_0.asm");
    auto& menu = control<QMenu>(*rig.form, "menuRecent");
    Q_EMIT menu.aboutToShow();
    QCOMPARE(menu.actions().size(), 1);
    QCOMPARE(menu.actions()[0]->text(), aircraft);
}

void WorkTest::boxesAreExplainedByTheNotesOfTheirCommand() {
    Rig rig;
    rig.log.add(QStringLiteral("Note: an older one"));
    QtReporter reporter(rig.log, rig.dialogs, rig.form.get());
    run_command(reporter, [&] {
        reporter.note({"the list begins with tabs", "airport_0.asm", 12});
        reporter.message_box("This file cannot be used. (Already processed ?)", Icon::Critical);
        reporter.message_box("Error : 5", Icon::Critical);
    });
    QCOMPARE(rig.dialogs.boxes.size(), 2U);
    QCOMPARE(rig.dialogs.boxes[0].text,
             QStringLiteral("This file cannot be used. (Already processed ?)"));
    QCOMPARE(rig.dialogs.boxes[0].explanation,
             QStringLiteral("airport_0.asm:12: the list begins with tabs"));
    QCOMPARE(rig.dialogs.boxes[1].explanation, QString());
    QCOMPARE(rig.messages().front(),
             QStringLiteral("Note: airport_0.asm:12: the list begins with tabs"));
    run_command(reporter, [&] { reporter.note({"of no concern"}); });
    run_command(reporter, [&] { reporter.message_box("No material matches", Icon::None); });
    QCOMPARE(rig.dialogs.boxes[2].explanation, QString());
}

void WorkTest::unexpectedErrorsEndInABox_data() {
    add_unexpected_errors();
}

void WorkTest::unexpectedErrorsEndInABox() {
    QFETCH(QString, what);
    QFETCH(QString, text);
    StrangeDisk disk;
    Rig rig;
    Desk desk{disk, rig.dialogs, *rig.programs, rig.log, rig.settings.path()};
    MainWindow window(desk);
    window.show();
    disk.what = what.toStdString();
    for (const char* button : {"Command2", "Command10", "Command11", "Command12"}) {
        type(window, "InputFile", QStringLiteral("/some/set"));
        click(window, button);
        QCOMPARE(rig.dialogs.take_box(), text);
        QVERIFY(QGuiApplication::overrideCursor() == nullptr);
    }
}

void WorkTest::closingGoesOnAfterAnUnexpectedError() {
    StrangeDisk disk;
    Rig rig;
    Desk desk{disk, rig.dialogs, *rig.programs, rig.log, rig.settings.path()};
    MainWindow window(desk);
    window.show();
    click(window, "Command13");
    QWidget& compiler = rig.window("frmLibComp");
    disk.what = "logic";
    click(compiler, "Command2");
    QCOMPARE(rig.dialogs.take_box(), QStringLiteral("The command has failed: the moon is full"));
    disk.what.clear();
    QVERIFY(window.close());
}

void WorkTest::unexpectedErrorsInDialogsEndInABox_data() {
    add_unexpected_errors();
}

// The O.K. of both dialogs refuses what was typed with a box, which throws here.
void WorkTest::unexpectedErrorsInDialogsEndInABox() {
    QFETCH(QString, what);
    QFETCH(QString, text);
    Rig rig;
    for (const auto& [kind, field] :
         {std::pair{"Effects", "fx_params"}, {"Windsock", "ws_mastColor"}}) {
        choose(*rig.form, "typeOfObj", QLatin1String(kind));
        QWidget& dialog = rig.parameters();
        type(dialog, field, QStringLiteral("short"));
        rig.dialogs.before_box = [&] { throw_unexpected(what.toStdString()); };
        click(dialog, "Command1");
        QCOMPARE(rig.dialogs.take_box(), text);
        QVERIFY(dialog.isVisible()); // what was typed is still there
        click(dialog, "Command1");
        QVERIFY(rig.dialogs.take_box() != text);
        click(dialog, "Command2");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QVERIFY(rig.form->close());
}

void WorkTest::unexpectedErrorsOutsideOfCommandsEndInABox_data() {
    add_unexpected_errors();
}

void WorkTest::unexpectedErrorsOutsideOfCommandsEndInABox() {
    QFETCH(QString, what);
    QFETCH(QString, text);
    Rig rig;
    QMetaObject::invokeMethod(
        rig.form.get(), [&] { throw_unexpected(what.toStdString()); }, Qt::QueuedConnection);
    QCoreApplication::processEvents();
    QCOMPARE(rig.dialogs.take_box(), text);
    rig.open(rig.copy_example("airport")); // the program goes on
    QCOMPARE(text_of(*rig.form, "Text1"), QStringLiteral("13"));
}

namespace {
const Registration<WorkTest> registration("work");
}

} // namespace morvane::test

#include "work_test.moc"
