// SPDX-License-Identifier: GPL-3.0-or-later

// Panels, places and sizes of the windows.

#include "ui/registry.h"
#include "ui/rig.h"

#include <QDockWidget>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

namespace morvane::test {

class LayoutTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void everythingIsReachableOnASmallScreen_data();
    void everythingIsReachableOnASmallScreen();
    void noFormIsLargerThanASmallScreen();
    void windowsAreKeptOnTheScreen();
    void toolFormsOpenBesideTheMainWindow();
    void panelsCanBeHiddenAndReset();
    void layoutIsKept();
    void pictureStandsBetweenStepsAndPanels();
    void statusLineShowsTheWholePath();
};

namespace {

const QSize small_screens[] = {{1280, 720}, {960, 540}};

QDockWidget& messages_dock(const Rig& rig) {
    return control<QDockWidget>(*rig.form, "messagesDock");
}

// Whether a control is seen, at least after scrolling to it.
bool can_be_seen(QWidget& control, QScrollArea& area) {
    area.ensureWidgetVisible(&control, 0, 0);
    const QRect seen = control.visibleRegion().boundingRect();
    return seen.size() == control.size();
}

} // namespace

void LayoutTest::everythingIsReachableOnASmallScreen_data() {
    QTest::addColumn<QSize>("size");
    for (const QSize& size : small_screens) {
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }
}

void LayoutTest::everythingIsReachableOnASmallScreen() {
    QFETCH(QSize, size);
    Rig rig;
    rig.form->resize(size);
    QTest::qWait(30);
    QCOMPARE(rig.form->size(), size); // no minimum is in the way
    auto& steps = control<QScrollArea>(*rig.form, "stepsScroll");
    QCOMPARE(steps.horizontalScrollBar()->maximum(), 0);
    for (const char* name :
         {"InputFile",  "Command8", "Command2",  "lstMat2proc", "Text1",     "Text2",
          "Shape1",     "Shape2",   "typeOfObj", "Command4",    "txtinfo",   "Command1",
          "OutputFile", "Command3", "Command12", "Command10",   "Command11", "Command6",
          "Command7",   "Command9", "Command13"}) {
        QVERIFY2(can_be_seen(control<QWidget>(*rig.form, name), steps), name);
    }
    auto& log = control<QPlainTextEdit>(*rig.form, "MsgText");
    QVERIFY(log.visibleRegion().boundingRect().size() == log.size());
    QVERIFY2(log.width() > size.width() / 3, qPrintable(QString::number(log.width())));
}

void LayoutTest::noFormIsLargerThanASmallScreen() {
    Rig rig;
    for (const char* button : {"Command6", "Command7", "Command9", "Command13"}) {
        click(*rig.form, button);
    }
    for (const char* name : {"Form1", "frmModel", "LibView", "frmLabelRename", "frmLibComp"}) {
        const QSize smallest = rig.window(name).minimumSizeHint();
        QVERIFY2(smallest.width() <= 940 && smallest.height() <= 495,
                 qPrintable(QStringLiteral("%1: %2x%3")
                                .arg(QLatin1String(name))
                                .arg(smallest.width())
                                .arg(smallest.height())));
    }
    for (const char* kind : {"Lights", "Effects", "Windsock", "Library"}) {
        choose(*rig.form, "typeOfObj", QString::fromLatin1(kind));
        QWidget& dialog = rig.parameters();
        QVERIFY2(dialog.width() <= 940 && dialog.height() <= 500, kind);
        dialog.close();
    }
}

void LayoutTest::windowsAreKeptOnTheScreen() {
    Rig rig;
    const QRect screen = rig.form->screen()->availableGeometry();
    QVERIFY(screen.contains(rig.form->geometry()));
    rig.form->setGeometry(screen.right() - 50, screen.bottom() - 50, 4000, 3000);
    rig.restart();
    QVERIFY(screen.contains(rig.form->geometry()));
}

void LayoutTest::toolFormsOpenBesideTheMainWindow() {
    Rig rig;
    rig.form->setGeometry(10, 50, 300, 300);
    click(*rig.form, "Command9");
    const QWidget& tool = rig.window("frmLabelRename");
    const QRect screen = rig.form->screen()->availableGeometry();
    QVERIFY(screen.contains(tool.geometry()));
    if (rig.form->frameGeometry().right() + tool.width() < screen.right() - 20) {
        QVERIFY(!tool.geometry().intersects(rig.form->geometry()));
    }
}

void LayoutTest::panelsCanBeHiddenAndReset() {
    Rig rig;
    QDockWidget& dock = messages_dock(rig);
    QVERIFY(dock.isVisible());
    dock.toggleViewAction()->trigger();
    QVERIFY(!dock.isVisible());
    trigger(*rig.form, "actionResetLayout");
    QVERIFY(dock.isVisible());
    QVERIFY(!dock.isFloating());
}

void LayoutTest::layoutIsKept() {
    Rig rig;
    rig.form->addDockWidget(Qt::RightDockWidgetArea, &messages_dock(rig));
    rig.restart();
    QCOMPARE(rig.form->dockWidgetArea(&messages_dock(rig)), Qt::RightDockWidgetArea);
    messages_dock(rig).toggleViewAction()->trigger();
    rig.restart();
    QVERIFY(!messages_dock(rig).isVisible());
    trigger(*rig.form, "actionResetLayout");
    QVERIFY(messages_dock(rig).isVisible());
    QCOMPARE(rig.form->dockWidgetArea(&messages_dock(rig)), Qt::BottomDockWidgetArea);
}

void LayoutTest::pictureStandsBetweenStepsAndPanels() {
    Rig rig;
    rig.form->close();
    rig.form = std::make_unique<MainWindow>(rig.desk);
    auto* problems = new QPlainTextEdit;
    QDockWidget& dock =
        rig.form->add_panel(*problems, QStringLiteral("problemsDock"), QStringLiteral("Problems"));
    rig.form->show();
    rig.form->resize(1280, 720);
    QTest::qWait(30);
    trigger(*rig.form, "actionResetLayout");
    QTest::qWait(30);
    QVERIFY(control<QWidget>(*rig.form, "sceneView").isVisible());
    const QRect steps = control<QDockWidget>(*rig.form, "stepsDock").geometry();
    const QRect middle = rig.form->centralWidget()->geometry();
    const QRect messages = messages_dock(rig).geometry();
    QVERIFY(steps.right() < middle.left());
    QVERIFY(middle.bottom() < messages.top());
    QVERIFY(steps.right() < messages.left());
    QVERIFY2(middle.width() > 600, qPrintable(QString::number(middle.width())));
    QVERIFY2(middle.height() > 300, qPrintable(QString::number(middle.height())));
    const auto tabs = rig.form->tabifiedDockWidgets(&messages_dock(rig));
    for (const char* name : {"historyDock", "problemDock", "codeDock"}) {
        QVERIFY2(tabs.contains(&control<QDockWidget>(*rig.form, name)), name);
    }
    QVERIFY(tabs.contains(&dock));
}

void LayoutTest::statusLineShowsTheWholePath() {
    Rig rig;
    const auto& status = control<QLabel>(*rig.form, "statusText");
    QCOMPARE(status.text(), QStringLiteral("No source set is open."));
    const QString base = rig.copy_example("airport");
    type(*rig.form, "InputFile", base);
    QVERIFY(status.text().contains(base));
    click(*rig.form, "Command2");
    QCOMPARE(status.text(), base);
}

namespace {
const Registration<LayoutTest> registration("layout");
}

} // namespace morvane::test

#include "layout_test.moc"
