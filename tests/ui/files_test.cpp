// SPDX-License-Identifier: GPL-3.0-or-later

// Backup, restore, compile, settings, and leaving the window.

#include "system/results_viewer.h"
#include "ui/registry.h"
#include "ui/rig.h"

#include <QLabel>
#include <QPalette>
#include <QPlainTextEdit>
#include <QTextBrowser>

#include <filesystem>

namespace morvane::test {

class FilesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void backupAndRestore();
    void backupAsksBeforeOverwriting();
    void declinedRestoreChangesNothing();
    void settingsAreWrittenOnClosing();
    void settingsAreReadOnOpening();
    void effectsComeFromTheList();
    void closingAsksForUnsavedWork();
    void closingCanSave();
    void openingAsksForUnsavedWork();
    void missingCompilerIsTold();
    void compilerOutputIsShown();
    void compilerOutputStaysInAPane();
    void searchResultsAreShownOnce();
    void theSystemsViewerIsUsedWhereThereIsOne();
    void colorsAreRemembered();
};

namespace {

void process_first(Rig& rig) {
    rig.select(1);
    click(*rig.form, "Command1");
}

// A stand-in for the compiler: says what it works on, takes its time, and ends with status 3.
void write_compiler(const QString& base) {
    const auto folder = std::filesystem::path(base.toStdString()).parent_path();
#ifdef Q_OS_WIN
    write_file((folder / "bglc.bat").string(),
               "@echo compiling %2\r\n@ping -n 2 127.0.0.1 >nul\r\n@echo finished\r\n@exit 3\r\n");
#else
    write_file((folder / "bglc").string(),
               "#!/bin/sh\necho compiling $2\nsleep 0.3\necho finished\nexit 3\n");
    std::filesystem::permissions(folder / "bglc", std::filesystem::perms::owner_all);
#endif
}

class RecordingViewer : public ResultsViewer {
  public:
    void show_file(const std::string& path) override { shown.push_back(path); }
    void follow(const std::string& path, std::unique_ptr<RunningProgram> /*program*/) override {
        shown.push_back("follow " + path);
    }
    std::vector<std::string> shown;
};

} // namespace

void FilesTest::backupAndRestore() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    const std::string model = read_file(base.toStdString() + "_0.asm");
    rig.open(base);
    click(*rig.form, "Command10");
    QVERIFY(rig.dialogs.questions.empty());
    QVERIFY(rig.folder.has("airport/airport_asm.bck"));
    QVERIFY(rig.folder.has("airport/airport_azm.bck"));
    process_first(rig);
    click(*rig.form, "Command3");
    QVERIFY(read_file(base.toStdString() + "_0.asm") != model);
    rig.dialogs.answer = true;
    click(*rig.form, "Command11");
    QCOMPARE(rig.dialogs.questions.size(), 1U);
    QCOMPARE(rig.dialogs.questions[0].text,
             QStringLiteral("Do you want to overwrite the working files ?"));
    // A line-wise copy has an empty line more at its end each time.
    QVERIFY(read_file(base.toStdString() + "_0.asm") == model + "\r\n\r\n");
}

void FilesTest::backupAsksBeforeOverwriting() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    type(*rig.form, "InputFile", base);
    rig.folder.write("airport/airport_azm.bck", "old");
    rig.dialogs.answer = false;
    click(*rig.form, "Command10");
    QCOMPARE(rig.dialogs.questions.size(), 1U);
    QVERIFY(rig.dialogs.questions[0].icon == Icon::Exclamation);
    QCOMPARE(rig.dialogs.questions[0].text,
             QStringLiteral("A previous backup of the file exists. Do you want to overwrite it ?"));
    QCOMPARE(rig.folder.read("airport/airport_azm.bck"), std::string("old"));
}

void FilesTest::declinedRestoreChangesNothing() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.folder.write("airport/airport_asm.bck", "old");
    const std::string model = read_file(base.toStdString() + "_0.asm");
    type(*rig.form, "InputFile", base);
    rig.dialogs.answer = false;
    trigger(*rig.form, "actionRestore");
    QVERIFY(read_file(base.toStdString() + "_0.asm") == model);
}

void FilesTest::settingsAreWrittenOnClosing() {
    Rig rig;
    QVERIFY(!rig.settings.has("morvane.ini"));
    type(*rig.form, "InputFile", QStringLiteral("/in/put"));
    type(*rig.form, "OutputFile", QStringLiteral("/out/put"));
    rig.form->close();
    QCOMPARE(rig.settings.read("morvane.ini"), std::string("/in/put\r\n/out/put\r\n"));
}

void FilesTest::settingsAreReadOnOpening() {
    Rig rig;
    rig.settings.write("morvane.ini", "/a b/c\r\n/d\r\n");
    rig.form.reset();
    rig.restart();
    QCOMPARE(text_of(*rig.form, "InputFile"), QStringLiteral("/a b/c"));
    QCOMPARE(text_of(*rig.form, "OutputFile"), QStringLiteral("/d"));
}

void FilesTest::effectsComeFromTheList() {
    Rig rig;
    rig.settings.write("fx_list.txt", "fx_mine\r\nfx_other\r\n\r\n");
    rig.restart();
    choose(*rig.form, "typeOfObj", QStringLiteral("Effects"));
    QVERIFY(text_of(*rig.form, "txtinfo").startsWith(QStringLiteral("FX_MINE/")));
    const auto& list = control<QComboBox>(rig.parameters(), "lstEffectType");
    QCOMPARE(list.count(), 3);
    QCOMPARE(list.itemText(2), QString());
}

void FilesTest::closingAsksForUnsavedWork() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    QVERIFY(rig.form->close());
    QCOMPARE(rig.dialogs.unsaved_asked, 0);
    rig.form->show();
    process_first(rig);
    rig.dialogs.unsaved = Unsaved::Cancel;
    QVERIFY(!rig.form->close());
    QVERIFY(rig.form->isVisible());
    rig.dialogs.unsaved = Unsaved::Discard;
    QVERIFY(rig.form->close());
    QCOMPARE(rig.dialogs.unsaved_asked, 2);
}

void FilesTest::closingCanSave() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    process_first(rig);
    rig.dialogs.unsaved = Unsaved::Save;
    QVERIFY(rig.form->close());
    QVERIFY(read_file(base.toStdString() + "_0.asm").find("LBL1 label BGLCODE") !=
            std::string::npos);
}

void FilesTest::openingAsksForUnsavedWork() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process_first(rig);
    rig.dialogs.unsaved = Unsaved::Cancel;
    click(*rig.form, "Command2");
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("12"));
    rig.dialogs.unsaved = Unsaved::Discard;
    click(*rig.form, "Command2");
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13"));
}

void FilesTest::missingCompilerIsTold() {
    Rig rig;
    type(*rig.form, "InputFile", rig.copy_example("airport"));
    click(*rig.form, "Command12");
    QVERIFY(rig.dialogs.take_box().contains(QStringLiteral("bglc")));
}

void FilesTest::compilerOutputIsShown() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    write_compiler(base);
    type(*rig.form, "InputFile", base);
    click(*rig.form, "Command12");
    QWidget& viewer = rig.window("TextViewer");
    QCOMPARE(viewer.windowTitle(), QStringLiteral("comp.txt"));
    const auto& text = control<QPlainTextEdit>(viewer, "viewerText");
    const auto& status = control<QLabel>(viewer, "viewerStatus");
    QTRY_COMPARE(status.text(), QStringLiteral("The compiler has ended with status 3."));
    QVERIFY(text.toPlainText().contains(QStringLiteral("compiling ") + base));
    QVERIFY(text.toPlainText().contains(QStringLiteral("finished")));
    QVERIFY(rig.settings.has("comp.txt"));
}

void FilesTest::searchResultsAreShownOnce() {
    Rig rig;
    rig.settings.write("out.txt", "found it\r\n");
    choose(*rig.form, "typeOfObj", QStringLiteral("Library"));
    QWidget& dialog = rig.parameters();
    click(dialog, "Command2");
    QWidget& viewer = rig.window("TextViewer");
    QCOMPARE(viewer.windowTitle(), QStringLiteral("out.txt"));
    QVERIFY(control<QPlainTextEdit>(viewer, "viewerText")
                .toPlainText()
                .startsWith(QStringLiteral("found it")));
    click(dialog, "Command2"); // comes back to the same window
    QCOMPARE(&rig.window("TextViewer"), &viewer);
}

void FilesTest::compilerOutputStaysInAPane() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    write_compiler(base);
    type(*rig.form, "InputFile", base);
    trigger(*rig.form, "actionCompile");
    const auto& text = control<QTextBrowser>(*rig.form, "compilerText");
    const auto& status = control<QLabel>(*rig.form, "compilerStatus");
    QVERIFY(text.isVisible());
    QTRY_COMPARE(status.text(), QStringLiteral("The compiler has ended with status 3."));
    QVERIFY(text.toPlainText().contains(QStringLiteral("compiling ") + base));
    QVERIFY(text.toPlainText().contains(QStringLiteral("finished")));
    QVERIFY(rig.settings.has("comp.txt"));
}

void FilesTest::theSystemsViewerIsUsedWhereThereIsOne() {
    Rig rig;
    RecordingViewer viewer;
    rig.desk.viewer = &viewer;
    const QString base = rig.copy_example("airport");
    write_compiler(base);
    type(*rig.form, "InputFile", base);
    click(*rig.form, "Command12");
    choose(*rig.form, "typeOfObj", QStringLiteral("Library"));
    click(rig.parameters(), "Command2");
    QCOMPARE(viewer.shown, (std::vector<std::string>{"follow " + rig.settings.file("comp.txt"),
                                                     rig.settings.file("out.txt")}));
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        QVERIFY(!widget->isVisible() || widget->objectName() != QLatin1String("TextViewer"));
    }
}

void FilesTest::colorsAreRemembered() {
    Rig rig;
    trigger(*rig.form, "actionColorsDark");
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 100);
    rig.restart();
    QVERIFY(rig.form->findChild<QAction*>(QStringLiteral("actionColorsDark"))->isChecked());
    trigger(*rig.form, "actionColorsLight");
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 200);
    trigger(*rig.form, "actionColorsSystem");
}

namespace {
const Registration<FilesTest> registration("files");
}

} // namespace morvane::test

#include "files_test.moc"
