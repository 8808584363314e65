// SPDX-License-Identifier: GPL-3.0-or-later

// The list of problems, the source side by side, and the code of a material.

#include "ui/dialogs/source_window.h"
#include "ui/hourglass.h"
#include "ui/main_window/code_panel.h"
#include "ui/main_window/problem_panel.h"
#include "ui/registry.h"
#include "ui/rig.h"
#include "ui/widgets/line_view.h"
#include "ui/widgets/quiet_timer.h"

#include <QClipboard>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabBar>
#include <QToolButton>

#include <ctime>

namespace morvane::test {

class ViewsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void problemsAreListedWorstFirstAndCountedInTheTab();
    void listFollowsProcessAndUndo();
    void severitiesAreFiltered();
    void clickSelectsTheMaterialAndShowsTheSource();
    void enterShowsTheSourceToo();
    void f8GoesThroughTheProblems();
    void allowedCodeGoesAndComesBack();
    void allowedCodesAreSavedWithTheRecipe();
    void allowedCodesAreARecipeOfTheirOwn();
    void longChecksWaitUntilNobodyTypes();
    void checksWaitForTheEndOfACommand();
    void problemIsCopied();
    void problemOfTheFrameFileOpensIt();
    void sourceShowsBothFilesSideBySide();
    void sourceFollowsTheDocument();
    void textIsFoundInTheSource();
    void lineIsGoneTo();
    void bothSidesScrollTogether();
    void linesAreCopied();
    void sourceOfAnotherSetReplacesTheOld();
    void aMillionLinesOpenAtOnce();
    void codeOfAMaterialIsShownBeforeItIsMade();
    void codeFollowsKindSelectionAndParameters();
    void codeThatCannotBeMadeSaysWhy();
    void codeIsFoundByText();
};

namespace {

QTreeView& problems(const Rig& rig) {
    return control<QTreeView>(*rig.form, "problemList");
}

QString problem_cell(const Rig& rig, int row, int column) {
    return problems(rig).model()->index(row, column).data().toString();
}

QStringList codes(const Rig& rig) {
    QStringList result;
    for (int row = 0; row < problems(rig).model()->rowCount(); ++row) {
        result.append(problem_cell(rig, row, ProblemModel::Code));
    }
    return result;
}

// After a change the list is made anew a moment later, or longer on a busy machine.
constexpr int patience_ms = 60000;

bool comes(const Rig& rig, const char* code) {
    return QTest::qWaitFor([&] { return codes(rig).contains(QLatin1String(code)); }, patience_ms);
}

bool goes(const Rig& rig, const char* code) {
    return QTest::qWaitFor([&] { return !codes(rig).contains(QLatin1String(code)); }, patience_ms);
}

// The list of a set of which nothing is processed yet.
void wait_for_check(const Rig& rig) {
    if (!comes(rig, "unprocessed-material")) {
        qFatal("the set was not checked");
    }
}

// Of the processor, which other programs do not count for.
double milliseconds_since(std::clock_t start) {
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

int row_of_code(const Rig& rig, const char* code) {
    return static_cast<int>(codes(rig).indexOf(QLatin1String(code)));
}

void raise(const Rig& rig, const char* dock) {
    auto& panel = control<QDockWidget>(*rig.form, dock);
    panel.show();
    panel.raise();
    QTest::qWait(20);
}

void click_problem(const Rig& rig, int row) {
    raise(rig, "problemDock");
    QTreeView& list = problems(rig);
    const QModelIndex index = list.model()->index(row, 0);
    list.scrollTo(index);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(index).center());
}

void process(Rig& rig, int row) {
    rig.select(row);
    click(*rig.form, "Command1");
}

QString selected_material(const Rig& rig) {
    const QModelIndexList rows =
        control<QTreeView>(*rig.form, "lstMat2proc").selectionModel()->selectedRows();
    return rows.isEmpty() ? QString() : rows.front().data().toString();
}

LineView& view(QWidget& window, const char* name) {
    return control<LineView>(window, name);
}

QString current_text(const LineView& lines) {
    return lines.text(lines.current_row()).trimmed();
}

QStringList all_text(const LineView& lines) {
    QStringList texts;
    for (std::size_t row = 0; row < lines.count(); ++row) {
        texts.append(lines.text(row));
    }
    return texts;
}

QWidget& show_source(Rig& rig, int row) {
    rig.select(row);
    trigger(*rig.form, "actionShowSource");
    QWidget& source = rig.window("SourceWindow");
    QApplication::setActiveWindow(&source);
    return source;
}

LineView& show_code(Rig& rig) {
    raise(rig, "codeDock");
    return view(*rig.form, "codeLines");
}

QString code_says(const Rig& rig) {
    return control<QLabel>(*rig.form, "codeWhat").text();
}

} // namespace

void ViewsTest::problemsAreListedWorstFirstAndCountedInTheTab() {
    Rig rig;
    auto& dock = control<QDockWidget>(*rig.form, "problemDock");
    QCOMPARE(dock.windowTitle(), QStringLiteral("Problems"));
    rig.open(rig.copy_example("airport"));
    wait_for_check(rig);
    rig.select(1);
    choose(*rig.form, "typeOfObj", QStringLiteral("Effects"));
    click(*rig.form, "Command1");
    process(rig, 2); // two materials of effects make one label twice
    QVERIFY(comes(rig, "skip-label"));
    QTRY_VERIFY_WITH_TIMEOUT(codes(rig).count(QStringLiteral("unprocessed-material")) == 11,
                             patience_ms);
    const auto& list = problems(rig);
    int worst = 3;
    int errors = 0;
    int warnings = 0;
    for (int row = 0; row < list.model()->rowCount(); ++row) {
        const QString spoken = list.model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
        const int severity = spoken.startsWith(QLatin1String("error"))     ? 2
                             : spoken.startsWith(QLatin1String("warning")) ? 1
                                                                           : 0;
        QVERIFY2(severity <= worst, qPrintable(spoken));
        worst = severity;
        errors += severity == 2 ? 1 : 0;
        warnings += severity == 1 ? 1 : 0;
    }
    QVERIFY(errors > 0);
    QVERIFY2(dock.windowTitle().startsWith(QStringLiteral("Problems (%1 error").arg(errors)),
             qPrintable(dock.windowTitle()));
    QCOMPARE(dock.windowTitle().contains(QStringLiteral("%1 warning").arg(warnings)), warnings > 0);
}

void ViewsTest::listFollowsProcessAndUndo() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    wait_for_check(rig);
    const auto unprocessed = codes(rig).count(QStringLiteral("unprocessed-material"));
    QVERIFY(unprocessed > 0);
    QVERIFY(!codes(rig).contains(QStringLiteral("light-variable")));
    process(rig, 1); // by default no flash variable is chosen
    QVERIFY(comes(rig, "light-variable"));
    trigger(*rig.form, "actionUndo");
    QVERIFY(goes(rig, "light-variable"));
    QCOMPARE(codes(rig).count(QStringLiteral("unprocessed-material")), unprocessed);
}

void ViewsTest::severitiesAreFiltered() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 1);
    QVERIFY(comes(rig, "light-variable"));
    raise(rig, "problemDock");
    const int all = problems(rig).model()->rowCount();
    int left = all;
    for (const char* name : {"showNotes", "showWarnings", "showErrors"}) {
        auto& button = control<QToolButton>(*rig.form, name);
        const int count = button.text().section(QLatin1Char(' '), 0, 0).toInt();
        click(*rig.form, name);
        left -= count;
        QCOMPARE(problems(rig).model()->rowCount(), left);
    }
    QCOMPARE(left, 0);
    for (const char* name : {"showNotes", "showWarnings", "showErrors"}) {
        click(*rig.form, name);
    }
    QCOMPARE(problems(rig).model()->rowCount(), all);
}

void ViewsTest::clickSelectsTheMaterialAndShowsTheSource() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 3);
    QVERIFY(comes(rig, "light-variable"));
    const int row = row_of_code(rig, "light-variable");
    rig.select(1);
    click_problem(rig, row);
    QCOMPARE(selected_material(rig), QStringLiteral("3"));
    QWidget& source = rig.window("SourceWindow");
    const QString text = current_text(view(source, "sourceNow"));
    QVERIFY2(text.startsWith(QStringLiteral("MATERIAL ")), qPrintable(text));
}

void ViewsTest::enterShowsTheSourceToo() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 1); // of the others each is listed at its line
    QVERIFY(comes(rig, "light-variable"));
    raise(rig, "problemDock");
    const int row = row_of_code(rig, "unprocessed-material");
    problems(rig).setCurrentIndex(problems(rig).model()->index(row, 0));
    problems(rig).setFocus();
    QTest::keyClick(&problems(rig), Qt::Key_Return);
    QCOMPARE(selected_material(rig), problem_cell(rig, row, ProblemModel::Material));
    const QString text = current_text(view(rig.window("SourceWindow"), "sourceNow"));
    QVERIFY2(text.startsWith(QStringLiteral("MATERIAL ")), qPrintable(text));
}

void ViewsTest::f8GoesThroughTheProblems() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    wait_for_check(rig);
    auto& list = problems(rig);
    const int last = list.model()->rowCount() - 1;
    QTest::keyClick(rig.form.get(), Qt::Key_F8);
    QVERIFY(list.isVisible());
    QCOMPARE(list.currentIndex().row(), 0);
    QCOMPARE(selected_material(rig), problem_cell(rig, 0, ProblemModel::Material));
    QTest::keyClick(rig.form.get(), Qt::Key_F8);
    QCOMPARE(list.currentIndex().row(), 1);
    QTest::keyClick(rig.form.get(), Qt::Key_F8, Qt::ShiftModifier);
    QTest::keyClick(rig.form.get(), Qt::Key_F8, Qt::ShiftModifier);
    QCOMPARE(list.currentIndex().row(), last);
    QTest::keyClick(rig.form.get(), Qt::Key_F8);
    QCOMPARE(list.currentIndex().row(), 0);
}

void ViewsTest::allowedCodeGoesAndComesBack() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    wait_for_check(rig);
    raise(rig, "problemDock");
    const auto chosen = [&](const QString& text) {
        Q_EMIT problems(rig).customContextMenuRequested(QPoint(10, 10));
        QMenu* menu = nullptr;
        for (QMenu* found : rig.form->findChildren<QMenu*>(QStringLiteral("problemMenu"))) {
            menu = found->isVisible() ? found : menu;
        }
        for (QAction* entry : menu->actions()) {
            if (entry->text().remove(QLatin1Char('&')) == text) {
                entry->trigger();
                menu->close();
                return true;
            }
        }
        menu->close();
        return false;
    };
    problems(rig).setCurrentIndex(
        problems(rig).model()->index(row_of_code(rig, "unprocessed-material"), 0));
    QVERIFY(chosen(QStringLiteral("Allow unprocessed-material in This Set")));
    QVERIFY(goes(rig, "unprocessed-material"));
    QVERIFY(chosen(QStringLiteral("unprocessed-material Is Allowed")));
    QVERIFY(comes(rig, "unprocessed-material"));
}

void ViewsTest::allowedCodesAreSavedWithTheRecipe() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 1);
    QVERIFY(comes(rig, "light-variable"));
    rig.form->document().document().set_allowed({"light-variable"});
    const QString file = QString::fromStdString(rig.folder.file("kept.toml"));
    rig.dialogs.files = {file};
    trigger(*rig.form, "actionSaveRecipe");
    QVERIFY(read_file(file.toStdString()).find("\"light-variable\"") != std::string::npos);
    QVERIFY(goes(rig, "light-variable"));
}

void ViewsTest::allowedCodesAreARecipeOfTheirOwn() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    QVERIFY(comes(rig, "unprocessed-material"));
    rig.form->document().document().set_allowed({"unprocessed-material"});
    const QString file = QString::fromStdString(rig.folder.file("kept.toml"));
    rig.dialogs.files = {file};
    trigger(*rig.form, "actionSaveRecipe");
    QVERIFY(rig.dialogs.boxes.empty());
    QVERIFY(read_file(file.toStdString()).find("[\"unprocessed-material\"]") != std::string::npos);
    rig.open(base);
    QVERIFY(comes(rig, "unprocessed-material"));
    rig.dialogs.files = {file};
    trigger(*rig.form, "actionApplyRecipe");
    QVERIFY(rig.dialogs.boxes.empty());
    QVERIFY(goes(rig, "unprocessed-material"));
}

void ViewsTest::longChecksWaitUntilNobodyTypes() {
    Rig rig;
    QuietTimer quiet;
    int came = 0;
    connect(&quiet, &QuietTimer::came, this, [&] { ++came; });
    quiet.expect(1000);
    quiet.start();
    QElapsedTimer watch;
    watch.start();
    auto& field = control<QLineEdit>(*rig.form, "InputFile");
    while (watch.elapsed() < 2500) {
        QTest::keyClick(&field, Qt::Key_X);
        QTest::qWait(20);
    }
    QCOMPARE(came, 0);
    QTRY_COMPARE(came, 1);
    QVERIFY(!quiet.is_waiting());
}

void ViewsTest::checksWaitForTheEndOfACommand() {
    QuietTimer quiet;
    int came = 0;
    connect(&quiet, &QuietTimer::came, this, [&] { ++came; });
    quiet.start();
    {
        const Hourglass hourglass;
        QTest::qWait(300);
        QCOMPARE(came, 0);
    }
    QTRY_COMPARE(came, 1);
}

void ViewsTest::problemIsCopied() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    wait_for_check(rig);
    raise(rig, "problemDock");
    const int row = row_of_code(rig, "unprocessed-material");
    problems(rig).setCurrentIndex(problems(rig).model()->index(row, 0));
    problems(rig).setFocus();
    QTest::keyClick(&problems(rig), Qt::Key_C, Qt::ControlModifier);
    const QString copied = QApplication::clipboard()->text();
    QVERIFY2(copied.endsWith(QStringLiteral("[unprocessed-material]")), qPrintable(copied));
    QVERIFY2(copied.contains(QStringLiteral("airport_0.asm:")), qPrintable(copied));
}

void ViewsTest::problemOfTheFrameFileOpensIt() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    QFile frame(base + QStringLiteral(".asm"));
    QVERIFY(frame.open(QIODevice::ReadOnly));
    QByteArray bytes = frame.readAll();
    frame.close();
    bytes.prepend("    include lost_0.asm\r\n");
    QVERIFY(frame.open(QIODevice::WriteOnly));
    frame.write(bytes);
    frame.close();
    rig.open(base);
    QVERIFY(comes(rig, "include-missing"));
    const int row = row_of_code(rig, "include-missing");
    click_problem(rig, row);
    QWidget& source = rig.window("SourceWindow");
    QCOMPARE(control<QTabBar>(source, "sourceFiles").currentIndex(), 1);
    QCOMPARE(current_text(view(source, "sourceNow")), QStringLiteral("include lost_0.asm"));
}

void ViewsTest::sourceShowsBothFilesSideBySide() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 2);
    QWidget& source = show_source(rig, 2);
    const LineView& now = view(source, "sourceNow");
    const LineView& then = view(source, "sourceThen");
    QVERIFY(current_text(now).startsWith(QStringLiteral("MATERIAL ")));
    QCOMPARE(current_text(then), current_text(now));
    QCOMPARE(now.count(), then.count());
    const std::size_t next = now.current_row() + 1;
    QCOMPARE(now.text(next), QString()); // the code is not on the disk
    QVERIFY(all_text(then).filter(QStringLiteral("BGL_LIGHT")).size() > 0);
    QCOMPARE(all_text(now).filter(QStringLiteral("BGL_LIGHT")).size(), 0);
    QVERIFY(now.font().family() == then.font().family());
    QVERIFY(QFontInfo(now.font()).fixedPitch());
    auto& files = control<QTabBar>(source, "sourceFiles");
    QCOMPARE(files.tabText(0), QStringLiteral("airport_0.asm"));
    QCOMPARE(files.tabText(1), QStringLiteral("airport.asm"));
}

void ViewsTest::sourceFollowsTheDocument() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    QWidget& source = show_source(rig, 2);
    const std::size_t rows = view(source, "sourceThen").count();
    click(*rig.form, "Command1");
    QVERIFY(view(source, "sourceThen").count() > rows);
    trigger(*rig.form, "actionUndo");
    QCOMPARE(view(source, "sourceThen").count(), rows);
    trigger(*rig.form, "actionRedo");
    click(*rig.form, "Command3");
    QVERIFY(all_text(view(source, "sourceNow")) == all_text(view(source, "sourceThen")));
}

void ViewsTest::textIsFoundInTheSource() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    process(rig, 2);
    QWidget& source = show_source(rig, 1);
    QTest::keyClick(&source, Qt::Key_F, Qt::ControlModifier);
    auto& wanted = control<QLineEdit>(source, "sourceFind");
    QVERIFY(wanted.hasFocus());
    QTest::keyClicks(&wanted, QStringLiteral("bgl_light"));
    QTest::keyClick(&wanted, Qt::Key_Return);
    const LineView& then = view(source, "sourceThen");
    QVERIFY2(current_text(then).contains(QStringLiteral("BGL_LIGHT")),
             qPrintable(current_text(then)));
    const std::size_t first = then.current_row();
    QTest::keyClick(&source, Qt::Key_F3);
    QVERIFY(then.current_row() > first);
    QTest::keyClick(&source, Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(then.current_row(), first);
    wanted.setText(QStringLiteral("not in there"));
    QTest::keyClick(&wanted, Qt::Key_Return);
    QCOMPARE(then.current_row(), first);
    QCOMPARE(control<QLabel>(source, "sourceStatus").text(),
             QStringLiteral("not in there was not found."));
}

void ViewsTest::lineIsGoneTo() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    QWidget& source = show_source(rig, 1);
    QTest::keyClick(&source, Qt::Key_G, Qt::ControlModifier);
    auto& line = control<QSpinBox>(source, "sourceLine");
    QVERIFY(line.hasFocus());
    QTest::keyClicks(&line, QStringLiteral("7"));
    QTest::keyClick(&line, Qt::Key_Return);
    QCOMPARE(view(source, "sourceNow").current_row(), std::size_t(6));
    QCOMPARE(view(source, "sourceThen").current_row(), std::size_t(6));
}

void ViewsTest::bothSidesScrollTogether() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    QWidget& source = show_source(rig, 1);
    LineView& now = view(source, "sourceNow");
    LineView& then = view(source, "sourceThen");
    QTest::keyClick(&now, Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(now.current_row(), now.count() - 1);
    QCOMPARE(then.current_row(), now.current_row());
    QCOMPARE(then.verticalScrollBar()->value(), now.verticalScrollBar()->value());
    QVERIFY(then.verticalScrollBar()->value() > 0);
    QTest::keyClick(&then, Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(now.current_row(), std::size_t(0));
    QCOMPARE(now.verticalScrollBar()->value(), 0);
}

void ViewsTest::linesAreCopied() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    LineView& now = view(show_source(rig, 1), "sourceNow");
    now.go_to(2);
    QTest::keyClick(&now, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&now, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), now.text(2) + QLatin1Char('\n') + now.text(3));
}

void ViewsTest::sourceOfAnotherSetReplacesTheOld() {
    Rig rig;
    rig.open(rig.copy_example("regional"));
    QWidget& source = show_source(rig, 1);
    const QStringList regional = all_text(view(source, "sourceNow"));
    source.close();
    rig.open(rig.copy_example("airport"));
    QWidget& again = show_source(rig, 1);
    QVERIFY(all_text(view(again, "sourceNow")) != regional);
    QCOMPARE(again.windowTitle(), QStringLiteral("Source of airport"));
}

void ViewsTest::aMillionLinesOpenAtOnce() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    constexpr int added = 1000000;
    QFile model(base + QStringLiteral("_0.asm"));
    QVERIFY(model.open(QIODevice::Append));
    model.write(QByteArray("; a line\r\n").repeated(added));
    model.close();
    rig.open(base);
    rig.select(2);
    std::clock_t start = std::clock();
    trigger(*rig.form, "actionShowSource");
    QWidget& source = rig.window("SourceWindow");
    source.grab();
    QVERIFY2(milliseconds_since(start) < 5000,
             qPrintable(QString::number(milliseconds_since(start))));
    LineView& now = view(source, "sourceNow");
    QVERIFY(now.count() > added);
    now.go_to(now.count() - 1);
    QCOMPARE(current_text(now), QStringLiteral("; a line"));
    start = std::clock();
    source.grab();
    QVERIFY2(milliseconds_since(start) < 500,
             qPrintable(QString::number(milliseconds_since(start))));
}

void ViewsTest::codeOfAMaterialIsShownBeforeItIsMade() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    const LineView& code = show_code(rig);
    QCOMPARE(code_says(rig), QStringLiteral("Select a material to see its code."));
    QCOMPARE(code.count(), std::size_t(0));
    rig.select(3);
    QCOMPARE(code_says(rig), QStringLiteral("What Process would make of 3 as Lights"));
    const QStringList planned = all_text(code);
    QVERIFY(planned.filter(QStringLiteral("BGL_LIGHT")).size() > 0);
    QVERIFY(planned.filter(QStringLiteral("; ")).filter(QStringLiteral("DRAW_TRI")).size() > 0);
    QCOMPARE(text_of(*rig.form, "Text2"), QStringLiteral("13")); // nothing was processed
    click(*rig.form, "Command1");
    QCOMPARE(code_says(rig), QStringLiteral("What Process made of 3"));
    QCOMPARE(all_text(code), planned);
    trigger(*rig.form, "actionUndo");
    QCOMPARE(code_says(rig), QStringLiteral("What Process would make of 3 as Lights"));
}

void ViewsTest::codeFollowsKindSelectionAndParameters() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    const LineView& code = show_code(rig);
    rig.select(3);
    const QStringList third = all_text(code);
    rig.select(4);
    const QStringList lights = all_text(code);
    QVERIFY(lights != third);
    QWidget& dialog = rig.parameters();
    type(dialog, "LightInt", QStringLiteral("55"));
    click(dialog, "Command1");
    QVERIFY(all_text(code) != lights);
    choose(*rig.form, "typeOfObj", QStringLiteral("Effects"));
    QVERIFY(all_text(code).filter(QStringLiteral("KZM_FX1")).size() > 0);
    QCOMPARE(code_says(rig), QStringLiteral("What Process would make of 4 as Effects"));
}

void ViewsTest::codeThatCannotBeMadeSaysWhy() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    show_code(rig);
    rig.select(1);
    Parameters wrong = rig.form->document().document().parameters();
    wrong.library.libScale = "1e999";
    rig.form->document().document().set_default_parameters(wrong);
    choose(*rig.form, "typeOfObj", QStringLiteral("Library New"));
    QVERIFY2(code_says(rig).startsWith(QStringLiteral("1 cannot become Library New: ")),
             qPrintable(code_says(rig)));
}

void ViewsTest::codeIsFoundByText() {
    Rig rig;
    rig.open(rig.copy_example("airport"));
    LineView& code = show_code(rig);
    rig.select(3);
    code.setFocus();
    QTest::keyClick(&code, Qt::Key_F, Qt::ControlModifier);
    auto& wanted = control<QLineEdit>(*rig.form, "codeFind");
    QVERIFY(wanted.hasFocus());
    QTest::keyClicks(&wanted, QStringLiteral("bgl_light"));
    QVERIFY(current_text(code).contains(QStringLiteral("BGL_LIGHT")));
    const std::size_t first = code.current_row();
    QTest::keyClick(&wanted, Qt::Key_Return);
    QVERIFY(current_text(code).contains(QStringLiteral("BGL_LIGHT")));
    const bool one = all_text(code).filter(QStringLiteral("BGL_LIGHT")).size() == 1;
    QCOMPARE(code.current_row() == first, one);
}

namespace {
const Registration<ViewsTest> registration("views");
}

} // namespace morvane::test

#include "views_test.moc"
