// SPDX-License-Identifier: GPL-3.0-or-later

// Export, look, change: new exports read by themselves, the compiler's pane, and projects.

#include "support/source_folder.h"
#include "ui/project_window/project_plan.h"
#include "ui/project_window/project_window.h"
#include "ui/registry.h"
#include "ui/rig.h"

#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QToolBar>
#include <QTreeWidget>
#include <QUrl>

#include <filesystem>

namespace morvane::test {

class LoopTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void checkBoxesAreOffAndKept();
    void anExportIsReadByItselfAndTheSelectionStays();
    void unsavedWorkIsAskedAboutInABar();
    void workFromBeforeTheWatchIsAskedAboutToo();
    void keptWorkStays();
    void anIncompleteExportLeavesTheOldOne();
    void whatTheWindowSavesIsNoExport();
    void anExportIsAppliedSavedAndCompiled();
    void saveBacksUpAndCompiles();
    void aLineOfTheCompilerLeadsToTheSource();
    void labelsAreMadeUnique();
    void aSavedRecipeKeepsItsComments();
    void aProjectIsShownAndBuilt();
    void aProjectIsSeenFromAbove();
};

namespace {

constexpr int patience_ms = 30000;

bool is_checked(const Rig& rig, const char* name) {
    return rig.form->findChild<QAction*>(QString::fromLatin1(name))->isChecked();
}

QWidget& bar(const Rig& rig) {
    return control<QToolBar>(*rig.form, "exportBar");
}

// Both files anew, as an exporter writes them; the model file gets a line more.
void export_again(const QString& base, const std::string& line = "; exported again\r\n") {
    const std::string model = base.toStdString() + "_0.asm";
    const std::string frame = base.toStdString() + ".asm";
    write_file(model, read_file(model) + line);
    write_file(frame, read_file(frame));
}

std::size_t lines_of(Rig& rig) {
    return rig.form->document().set().model.count();
}

void process_row(Rig& rig, int row) {
    rig.select(row);
    click(*rig.form, "Command1");
}

void add_compiler(const QString& base) {
    const auto folder = std::filesystem::path(base.toStdString()).parent_path();
#ifdef Q_OS_WIN
    write_file((folder / "bglc.bat").string(), "@echo airport_0.asm(12) : error A2008: no\r\n");
#else
    write_file((folder / "bglc").string(),
               "#!/bin/sh\necho 'airport_0.asm(12) : error A2008: no'\n");
    std::filesystem::permissions(folder / "bglc", std::filesystem::perms::owner_all);
#endif
}

QString cell(const QTreeWidget& table, int row, int column) {
    return table.topLevelItem(row)->text(column);
}

} // namespace

void LoopTest::checkBoxesAreOffAndKept() {
    Rig rig;
    for (const char* name : {"actionWatchExport", "actionApplyAndSave", "actionCompileAfterSave",
                             "actionUniqueLabels"}) {
        QVERIFY2(!is_checked(rig, name), name);
    }
    trigger(*rig.form, "actionWatchExport");
    trigger(*rig.form, "actionCompileAfterSave");
    rig.restart();
    QVERIFY(is_checked(rig, "actionWatchExport"));
    QVERIFY(is_checked(rig, "actionCompileAfterSave"));
    QVERIFY(!is_checked(rig, "actionApplyAndSave"));
    trigger(*rig.form, "actionWatchExport");
    rig.restart();
    QVERIFY(!is_checked(rig, "actionWatchExport"));
}

void LoopTest::anExportIsReadByItselfAndTheSelectionStays() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    trigger(*rig.form, "actionWatchExport");
    rig.select(5);
    const std::size_t before = lines_of(rig);
    export_again(base);
    QTRY_COMPARE_WITH_TIMEOUT(lines_of(rig), before + 1, patience_ms);
    QCOMPARE(rig.form->selected_rows(), std::vector<std::size_t>{5});
    QVERIFY(!bar(rig).isVisible());
    QVERIFY(rig.dialogs.boxes.empty());
    trigger(*rig.form, "actionWatchExport");
    export_again(base);
    QTest::qWait(2000);
    QCOMPARE(lines_of(rig), before + 1);
}

void LoopTest::unsavedWorkIsAskedAboutInABar() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    trigger(*rig.form, "actionWatchExport");
    process_row(rig, 1);
    const std::size_t before = lines_of(rig);
    export_again(base);
    QTRY_VERIFY_WITH_TIMEOUT(bar(rig).isVisible(), patience_ms);
    QCOMPARE(lines_of(rig), before);
    click(*rig.form, "applyAssignments");
    QVERIFY(!bar(rig).isVisible());
    QCOMPARE(lines_of(rig), before + 1);
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("12"));
    QCOMPARE(rig.form->windowTitle(), QStringLiteral("Morvane - airport *"));
    QVERIFY(rig.dialogs.boxes.empty() && rig.dialogs.questions.empty());
}

void LoopTest::workFromBeforeTheWatchIsAskedAboutToo() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    process_row(rig, 1);
    trigger(*rig.form, "actionWatchExport");
    const std::size_t before = lines_of(rig);
    export_again(base);
    QTRY_VERIFY_WITH_TIMEOUT(bar(rig).isVisible(), patience_ms);
    QCOMPARE(lines_of(rig), before);
}

void LoopTest::keptWorkStays() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    trigger(*rig.form, "actionWatchExport");
    process_row(rig, 1);
    const std::size_t before = lines_of(rig);
    export_again(base);
    QTRY_VERIFY_WITH_TIMEOUT(bar(rig).isVisible(), patience_ms);
    click(*rig.form, "keepMine");
    QVERIFY(!bar(rig).isVisible());
    QCOMPARE(lines_of(rig), before);
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("12"));
}

void LoopTest::anIncompleteExportLeavesTheOldOne() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    trigger(*rig.form, "actionWatchExport");
    const std::size_t before = lines_of(rig);
    const std::string model = read_file(base.toStdString() + "_0.asm");
    write_file(base.toStdString() + "_0.asm", model.substr(0, model.size() / 2));
    QTRY_VERIFY_WITH_TIMEOUT(bar(rig).isVisible(), patience_ms);
    QVERIFY(control<QLabel>(*rig.form, "exportText")
                .text()
                .contains(QStringLiteral("airport_0.asm: the export is incomplete")));
    QVERIFY(!control<QPushButton>(*rig.form, "applyAssignments").isVisible());
    QCOMPARE(lines_of(rig), before);
    QVERIFY(rig.form->centralWidget()->graphicsEffect() != nullptr);
    write_file(base.toStdString() + "_0.asm", model + "; exported again\r\n");
    QTRY_COMPARE_WITH_TIMEOUT(lines_of(rig), before + 1, patience_ms);
    QVERIFY(!bar(rig).isVisible());
    QVERIFY(rig.form->centralWidget()->graphicsEffect() == nullptr);
    QVERIFY(rig.dialogs.boxes.empty());
}

void LoopTest::whatTheWindowSavesIsNoExport() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    trigger(*rig.form, "actionWatchExport");
    process_row(rig, 1);
    click(*rig.form, "Command3");
    rig.dialogs.boxes.clear();
    QTest::qWait(2000);
    QVERIFY(!bar(rig).isVisible());
    QVERIFY(rig.form->document().was_saved());
}

void LoopTest::anExportIsAppliedSavedAndCompiled() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    add_compiler(base);
    const std::string model = base.toStdString() + "_0.asm";
    const std::string exported = read_file(model) + "; exported again\r\n";
    rig.open(base);
    for (const char* name : {"actionWatchExport", "actionApplyAndSave", "actionCompileAfterSave"}) {
        trigger(*rig.form, name);
    }
    process_row(rig, 1);
    export_again(base);
    QTRY_VERIFY_WITH_TIMEOUT(read_file(model).find("LBL1 label BGLCODE") != std::string::npos,
                             patience_ms);
    QVERIFY(read_file(base.toStdString() + "_asm.bck") == exported + "\r\n");
    const auto& text = control<QTextBrowser>(*rig.form, "compilerText");
    QTRY_VERIFY_WITH_TIMEOUT(text.toPlainText().contains(QStringLiteral("error A2008")),
                             patience_ms);
    QVERIFY(rig.dialogs.boxes.empty() && rig.dialogs.questions.empty());
}

void LoopTest::saveBacksUpAndCompiles() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    add_compiler(base);
    const std::string exported = read_file(base.toStdString() + "_0.asm");
    rig.open(base);
    trigger(*rig.form, "actionCompileAfterSave");
    process_row(rig, 1);
    click(*rig.form, "Command3");
    QVERIFY(rig.dialogs.boxes.empty());
    QVERIFY(read_file(base.toStdString() + "_asm.bck") == exported + "\r\n");
    QVERIFY(rig.form->document().was_saved());
    const auto& status = control<QLabel>(*rig.form, "compilerStatus");
    QTRY_COMPARE(status.text(), QStringLiteral("The compiler has finished."));
}

void LoopTest::aLineOfTheCompilerLeadsToTheSource() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    add_compiler(base);
    type(*rig.form, "InputFile", base);
    trigger(*rig.form, "actionCompile");
    auto& text = control<QTextBrowser>(*rig.form, "compilerText");
    QTRY_VERIFY(text.toHtml().contains(QStringLiteral("href=\"#0\"")));
    QVERIFY(text.toPlainText().contains(QStringLiteral("airport_0.asm(12) : error A2008: no")));
    Q_EMIT text.anchorClicked(QUrl(QStringLiteral("#0")));
    QCOMPARE(rig.window("TextViewer").windowTitle(), QStringLiteral("airport_0.asm"));
}

void LoopTest::labelsAreMadeUnique() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    trigger(*rig.form, "actionUniqueLabels");
    choose(*rig.form, "typeOfObj", QStringLiteral("Effects"));
    process_row(rig, 1);
    process_row(rig, 2);
    const Document& document = rig.form->document().document();
    QVERIFY(document.recipe().unique_labels);
    const std::vector<std::string>& code = *document.code_of(2);
    QVERIFY(std::any_of(code.begin(), code.end(), [](const std::string& line) {
        return line.find("SKIP_FX2") != std::string::npos;
    }));
}

void LoopTest::aSavedRecipeKeepsItsComments() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process_row(rig, 1);
    const std::string kept = "# the author's own words\n[[assign]] # a colour of other sets\n"
                             "color = \"010203\"\noptional = true\nkind = \"Windsock\"\n";
    const std::string file = rig.folder.write("mine.toml", kept);
    rig.dialogs.files = {QString::fromStdString(file)};
    trigger(*rig.form, "actionSaveRecipe");
    QVERIFY(rig.dialogs.boxes.empty());
    const std::string text = read_file(file);
    QVERIFY(text.starts_with(kept));
    QVERIFY(text.find("[[assign]]") != std::string::npos);
    rig.folder.write("mine.toml", "not = [a recipe\n");
    rig.dialogs.files = {QString::fromStdString(file)};
    trigger(*rig.form, "actionSaveRecipe");
    QVERIFY(rig.dialogs.take_box().contains(QStringLiteral("mine.toml:1:")));
    QCOMPARE(read_file(file), std::string("not = [a recipe\n"));
}

namespace {

// The example project in a window.
QWidget& open_project(Rig& rig) {
    for (const char* name : {"project", "aircraft-flex", "library"}) {
        std::filesystem::copy(source_folder() + "/examples/" + name, rig.folder.file(name),
                              std::filesystem::copy_options::recursive);
    }
    std::filesystem::copy(source_folder() + "/share/morvane.inc",
                          rig.folder.file("project/morvane.inc"));
    rig.dialogs.files = {QString::fromStdString(rig.folder.file("project/morvane.toml"))};
    trigger(*rig.form, "actionOpenProject");
    return rig.window("ProjectWindow");
}

} // namespace

void LoopTest::aProjectIsShownAndBuilt() {
    Rig rig;
    QWidget& window = open_project(rig);
    auto& table = control<QTreeWidget>(window, "projectSteps");
    QCOMPARE(table.topLevelItemCount(), 5);
    QCOMPARE(cell(table, 0, 0), QStringLiteral("apron"));
    QCOMPARE(cell(table, 0, 1), QStringLiteral("set"));
    QCOMPARE(cell(table, 0, 2), QStringLiteral("new"));
    table.topLevelItem(1)->setSelected(true);
    click(window, "buildSteps");
    QCOMPARE(cell(table, 0, 2), QStringLiteral("new"));
    QCOMPARE(cell(table, 1, 2), QStringLiteral("up to date"));
    QCOMPARE(cell(table, 1, 6), QStringLiteral("made"));
    click(window, "buildAll");
    for (int row = 0; row < 5; ++row) {
        QCOMPARE(cell(table, row, 2), QStringLiteral("up to date"));
    }
    QVERIFY(rig.folder.has("project/build/objects.asm"));
    click(window, "watchProject");
    const std::string tower = rig.folder.file("project/exports/tower");
    export_again(QString::fromStdString(tower));
    QTRY_VERIFY_WITH_TIMEOUT(
        rig.folder.read("project/build/tower_0.asm").find("; exported again") != std::string::npos,
        patience_ms);
    click(window, "watchProject");
    Q_EMIT table.itemDoubleClicked(table.topLevelItem(2), 0);
    QCOMPARE(text_of(*rig.form, "InputFile"), QString::fromStdString(tower));
    QVERIFY(rig.form->document().set().opened);
}

void LoopTest::aProjectIsSeenFromAbove() {
    Rig rig;
    QWidget& window = open_project(rig);
    auto& table = control<QTreeWidget>(window, "projectSteps");
    auto& plan = control<ProjectPlan>(window, "projectPlan");
    const auto& troubles = control<QLabel>(window, "projectTroubles");
    QTRY_COMPARE(plan.plan().sites().size(), 3U); // neither the aircraft nor the library
    QVERIFY(!troubles.isVisible());
    QVERIFY(!table.topLevelItem(0)->icon(0).isNull());
    plan.grab(); // drawn, so that places are known
    // A click on a set selects its row.
    const auto place = plan.place_of(plan.plan().sites()[2]);
    QVERIFY(place);
    QTest::mouseClick(&plan, Qt::LeftButton, {}, place->toPoint());
    QCOMPARE(table.currentItem()->text(0), QStringLiteral("tower"));
    // A copy of the tower's export in the place of the terminal's: a double.
    for (const char* file : {"_0.asm", ".asm"}) {
        rig.folder.write(std::string("project/exports/terminal") + file,
                         rig.folder.read(std::string("project/exports/tower") + file));
    }
    QApplication::setActiveWindow(rig.form.get());
    QApplication::setActiveWindow(&window);
    QTRY_VERIFY2(troubles.text().contains(QStringLiteral("tower is in the place of terminal")),
                 qPrintable(troubles.text()));
    QVERIFY(troubles.isVisible());
}

namespace {
const Registration<LoopTest> registration("loop");
}

} // namespace morvane::test

#include "loop_test.moc"
