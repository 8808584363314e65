// SPDX-License-Identifier: GPL-3.0-or-later

// Every control of every window can be reached by keyboard, in an order that follows the steps, and
// has a name for those who cannot see it.

#include "ui/registry.h"
#include "ui/rig.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QLabel>
#include <QMap>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTextBlock>
#include <QTimer>

namespace morvane::test {

class AccessTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init() { rig_ = std::make_unique<Rig>(); }
    void cleanup() { rig_.reset(); }
    void everyControlHasAName_data();
    void everyControlHasAName();
    void everyControlIsReachedByTab_data();
    void everyControlIsReachedByTab();
    void mainWindowOrderFollowsTheSteps();
    void everyMenuCommandHasAShortcut();
    void shortcutsAreUnique();
    void everyButtonHasAToolTipOrCaption();
    void boxesLookAsTheyShould();
    void questionsAreAnswered();
    void theProgramHasItsIcon();
    void aLongLogIsNoBurden();

  private:
    QWidget& window(const QString& name);
    std::unique_ptr<Rig> rig_;
};

namespace {

void add_windows() {
    QTest::addColumn<QString>("name");
    for (const char* name : {"Form1", "frmLights", "frmEffects", "frmWindsock", "frmLibrary",
                             "frmModel", "LibView", "frmLabelRename", "frmLibComp"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

bool takes_tab(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.focusProxy() == nullptr &&
           widget.isVisible() && widget.isEnabled();
}

// What a widget is made of inside (the field of a list, the bar of a tab) is its own affair.
bool is_own(const QWidget& widget) {
    return !widget.objectName().isEmpty() && !widget.objectName().startsWith(QLatin1String("qt_"));
}

QList<QWidget*> controls_of(const QWidget& window) {
    QList<QWidget*> result;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (takes_tab(*widget) && is_own(*widget) && widget->window() == &window) {
            result.append(widget);
        }
    }
    return result;
}

QString spoken_name(QWidget& widget) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&widget);
    return interface == nullptr ? QString() : interface->text(QAccessible::Name);
}

// Presses Tab until the focus is back where it began; names in their order.
QStringList tab_round(QWidget& window) {
    QStringList names;
    QWidget* first = window.focusWidget();
    for (int press = 0; press < 200; ++press) {
        QWidget* focused = window.focusWidget();
        if (focused == nullptr || (focused == first && press > 0)) {
            break;
        }
        names.append(focused->objectName());
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    return names;
}

QString open_by(const QString& name) {
    static const QMap<QString, QString> kinds{
        {QStringLiteral("frmLights"), QStringLiteral("Lights")},
        {QStringLiteral("frmEffects"), QStringLiteral("Effects")},
        {QStringLiteral("frmWindsock"), QStringLiteral("Windsock")},
        {QStringLiteral("frmLibrary"), QStringLiteral("Library")}};
    return kinds.value(name);
}

const char* button_for(const QString& name) {
    if (name == QLatin1String("frmModel")) {
        return "Command6";
    }
    if (name == QLatin1String("LibView")) {
        return "Command7";
    }
    return name == QLatin1String("frmLabelRename") ? "Command9" : "Command13";
}

// Answers the next real message box with a button, and tells what it looked like.
struct BoxWatch {
    explicit BoxWatch(QMessageBox::StandardButton answer) {
        QTimer::singleShot(0, [this, answer] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box != nullptr) {
                icon = box->icon();
                title = box->windowTitle();
                text = box->text();
                explanation = box->informativeText();
                pointer_is_plain = QGuiApplication::overrideCursor() == nullptr ||
                                   QGuiApplication::overrideCursor()->shape() == Qt::ArrowCursor;
                box->button(answer)->click();
            }
        });
    }
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QString title;
    QString text;
    QString explanation;
    bool pointer_is_plain = false;
};

} // namespace

QWidget& AccessTest::window(const QString& name) {
    if (name == QLatin1String("Form1")) {
        return *rig_->form;
    }
    if (!open_by(name).isEmpty()) {
        choose(*rig_->form, "typeOfObj", open_by(name));
        return rig_->parameters();
    }
    click(*rig_->form, button_for(name));
    QWidget& tool = rig_->window(qPrintable(name));
    if (name == QLatin1String("frmModel")) {
        click(tool, "chkWings");
        click(tool, "chkShadow");
    }
    return tool;
}

void AccessTest::everyControlHasAName_data() {
    add_windows();
}

void AccessTest::everyControlHasAName() {
    QFETCH(QString, name);
    QWidget& shown = window(name);
    const QList<QWidget*> controls = controls_of(shown);
    QVERIFY(controls.size() >= 4);
    for (QWidget* widget : controls) {
        QVERIFY2(!spoken_name(*widget).trimmed().isEmpty(), qPrintable(widget->objectName()));
    }
}

void AccessTest::everyControlIsReachedByTab_data() {
    add_windows();
}

void AccessTest::everyControlIsReachedByTab() {
    QFETCH(QString, name);
    QWidget& shown = window(name);
    QApplication::setActiveWindow(&shown);
    controls_of(shown).front()->setFocus();
    const QStringList reached = tab_round(shown);
    for (const QWidget* widget : controls_of(shown)) {
        QVERIFY2(reached.contains(widget->objectName()),
                 qPrintable(widget->objectName() + QStringLiteral(" not in ") +
                            reached.join(QLatin1Char(' '))));
    }
}

void AccessTest::mainWindowOrderFollowsTheSteps() {
    QApplication::setActiveWindow(rig_->form.get());
    control<QLineEdit>(*rig_->form, "InputFile").setFocus();
    const QStringList reached = tab_round(*rig_->form);
    const QStringList steps{QStringLiteral("InputFile"), QStringLiteral("Command8"),
                            QStringLiteral("Command2"),  QStringLiteral("lstMat2proc"),
                            QStringLiteral("typeOfObj"), QStringLiteral("Command4"),
                            QStringLiteral("Command1"),  QStringLiteral("OutputFile"),
                            QStringLiteral("Command3"),  QStringLiteral("Command12")};
    QStringList found;
    for (const QString& name : reached) {
        if (steps.contains(name)) {
            found.append(name);
        }
    }
    QCOMPARE(found, steps);
}

void AccessTest::everyMenuCommandHasAShortcut() {
    for (QAction* action : rig_->form->findChildren<QAction*>()) {
        const bool is_command = !action->objectName().isEmpty() && !action->isSeparator() &&
                                action->menu() == nullptr && !action->isCheckable() &&
                                action->objectName() != QLatin1String("actionAbout");
        if (is_command && action->objectName().startsWith(QLatin1String("action"))) {
            QVERIFY2(!action->shortcut().isEmpty(), qPrintable(action->objectName()));
        }
    }
}

void AccessTest::shortcutsAreUnique() {
    QStringList seen;
    for (QAction* action : rig_->form->findChildren<QAction*>()) {
        const QString keys = action->shortcut().toString();
        QVERIFY2(keys.isEmpty() || !seen.contains(keys), qPrintable(keys));
        seen.append(keys);
    }
}

void AccessTest::everyButtonHasAToolTipOrCaption() {
    for (const char* name : {"Form1", "frmModel", "LibView", "frmLabelRename", "frmLibComp"}) {
        QWidget& shown = window(QString::fromLatin1(name));
        for (const QPushButton* button : shown.findChildren<QPushButton*>()) {
            QVERIFY2(!button->text().isEmpty(), qPrintable(button->objectName()));
        }
    }
}

void AccessTest::boxesLookAsTheyShould() {
    SystemDialogs dialogs;
    const std::pair<Icon, QMessageBox::Icon> icons[] = {
        {Icon::None, QMessageBox::NoIcon},
        {Icon::Critical, QMessageBox::Critical},
        {Icon::Exclamation, QMessageBox::Warning},
        {Icon::Information, QMessageBox::Information}};
    for (const auto& [icon, shown] : icons) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        BoxWatch watch(QMessageBox::Ok);
        dialogs.show_box(rig_->form.get(), QStringLiteral("<b>as it is</b>"), icon,
                         QStringLiteral("a < b"));
        QCOMPARE(watch.icon, shown);
        QCOMPARE(watch.title, QStringLiteral("Morvane"));
        QCOMPARE(watch.text, QStringLiteral("<b>as it is</b>"));
        QCOMPARE(watch.explanation, QStringLiteral("a < b"));
        QVERIFY(watch.pointer_is_plain);
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QGuiApplication::restoreOverrideCursor();
    }
}

void AccessTest::questionsAreAnswered() {
    SystemDialogs dialogs;
    {
        BoxWatch watch(QMessageBox::Yes);
        QVERIFY(dialogs.ask(rig_->form.get(), QStringLiteral("Sure?"), Icon::None,
                            QStringLiteral("File replace")));
        QCOMPARE(watch.title, QStringLiteral("File replace"));
    }
    {
        BoxWatch watch(QMessageBox::No);
        QVERIFY(!dialogs.ask(rig_->form.get(), QStringLiteral("Sure?"), Icon::Exclamation, {}));
        QCOMPARE(watch.icon, QMessageBox::Warning);
    }
    const std::pair<QMessageBox::StandardButton, Unsaved> answers[] = {
        {QMessageBox::Save, Unsaved::Save},
        {QMessageBox::Discard, Unsaved::Discard},
        {QMessageBox::Cancel, Unsaved::Cancel}};
    for (const auto& [button, answer] : answers) {
        BoxWatch watch(button);
        QVERIFY(dialogs.ask_unsaved(rig_->form.get(), QStringLiteral("Save?"), true) == answer);
    }
}

void AccessTest::theProgramHasItsIcon() {
    for (const int side : {16, 32, 48, 128}) {
        QCOMPARE(QApplication::windowIcon().pixmap(side).size(), QSize(side, side));
    }
}

void AccessTest::aLongLogIsNoBurden() {
#ifdef Q_OS_WIN
    constexpr int patience_ms = 30000; // drawing goes through Wine
#else
    constexpr int patience_ms = 5000;
#endif
    QElapsedTimer watch;
    watch.start();
    for (int i = 0; i < 100000; ++i) {
        rig_->log.add(QStringLiteral("message %1").arg(i));
    }
    QCoreApplication::processEvents();
    for (int i = 0; i < 100; ++i) {
        rig_->log.add(QStringLiteral("one more"));
        QCoreApplication::processEvents();
    }
    QVERIFY2(watch.elapsed() < patience_ms, qPrintable(QString::number(watch.elapsed())));
    const auto& view = control<QPlainTextEdit>(*rig_->form, "MsgText");
    QCOMPARE(view.document()->blockCount(), 100100);
    QCOMPARE(view.document()->firstBlock().text(), QStringLiteral("one more"));
    QCOMPARE(view.verticalScrollBar()->value(), 0);
}

namespace {
const Registration<AccessTest> registration("access");
}

} // namespace morvane::test

#include "access_test.moc"
