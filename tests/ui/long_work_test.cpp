// SPDX-License-Identifier: GPL-3.0-or-later

// Commands that take their time: what they write, how they are watched and stopped.

#include "bgl/bgl_files.h"
#include "support/faulty_disk.h"
#include "ui/registry.h"
#include "ui/rig.h"
#include "ui/widgets/command_progress.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QProgressDialog>
#include <QRegularExpression>

#include <algorithm>
#include <chrono>
#include <thread>

namespace morvane::test {

class LongWorkTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void aRecipeWritesTheTracesOnce();
    void severalMaterialsWriteTheTracesOnce();
    void progressAppearsAfterHalfASecond();
    void progressIsRepaintedTenTimesASecond();
    void cancelEndsTheCommand();
    void aCancelledCommandKeepsWhatIsDone();
    void aSearchCountsFoldersInAWideBar();
};

namespace {

using namespace std::chrono_literals;

// A window on a disk that writes down its calls.
struct RecordingWindow {
    explicit RecordingWindow(Rig& rig)
        : desk{disk, rig.dialogs, *rig.programs, rig.log, rig.settings.path()}, window(desk) {
        window.show();
        QApplication::setActiveWindow(&window);
    }

    void open(const QString& base) {
        type(window, "InputFile", base);
        click(window, "Command2");
    }
    void select(std::initializer_list<int> rows) {
        auto& list = control<QTreeView>(window, "lstMat2proc");
        list.clearSelection();
        for (const int row : rows) {
            const QModelIndex index = list.model()->index(row - 1, 0);
            list.scrollTo(index);
            QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier,
                              list.visualRect(index).center());
        }
    }
    long written(const std::string& name) const {
        const auto& calls = disk.journal();
        return std::count_if(calls.begin(), calls.end(), [&](const std::string& call) {
            return call.starts_with("rename") && call.find(name) != std::string::npos;
        });
    }

    FaultyDisk disk;
    Desk desk;
    MainWindow window;
};

void process(Rig& rig, int row) {
    rig.select(row);
    click(*rig.form, "Command1");
}

// Something to click on Cancel as soon as there is a dialog.
bool cancel_when_shown(const QWidget& window) {
    auto* dialog = window.findChild<QProgressDialog*>(QStringLiteral("commandProgress"));
    if (dialog != nullptr) {
        dialog->cancel();
    }
    return dialog != nullptr;
}

} // namespace

void LongWorkTest::aRecipeWritesTheTracesOnce() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    RecordingWindow recorded(rig);
    recorded.open(base);
    rig.dialogs.files = {base + QStringLiteral(".toml")};
    trigger(recorded.window, "actionApplyRecipe");
    QCOMPARE(text_of(recorded.window, "Text2"), QStringLiteral("0"));
    for (const char* name : {"bgl_code.txt", "bgl_new_code.txt"}) {
        QCOMPARE(recorded.written(name), 1L);
    }
    // The model with all blocks commented out, as after the last material.
    const std::string traced = rig.settings.read("bgl_code.txt");
    QCOMPARE(traced.find("\n    DRAW_TRI_BEGIN 78, 24"), std::string::npos);
    QVERIFY(traced.find(";     DRAW_TRI_BEGIN 78, 24") != std::string::npos);
    rig.dialogs.unsaved = Unsaved::Discard;
}

void LongWorkTest::severalMaterialsWriteTheTracesOnce() {
    Rig one_by_one;
    one_by_one.open(one_by_one.copy_example("airport"));
    for (const int row : {2, 3, 4}) {
        process(one_by_one, row);
    }
    Rig rig;
    RecordingWindow recorded(rig);
    recorded.open(rig.copy_example("airport"));
    recorded.select({2, 3, 4});
    click(recorded.window, "Command1");
    QCOMPARE(text_of(recorded.window, "Text2"), QStringLiteral("10"));
    for (const char* name : {"bgl_code.txt", "bgl_new_code.txt"}) {
        QCOMPARE(recorded.written(name), 1L);
        QVERIFY2(rig.settings.read(name) == one_by_one.settings.read(name), name);
    }
    rig.dialogs.unsaved = Unsaved::Discard;
}

void LongWorkTest::progressAppearsAfterHalfASecond() {
    QWidget window;
    CommandProgress progress(window);
    const auto shown = [&] { return window.findChild<QProgressDialog*>() != nullptr; };
    QVERIFY(progress.show("Working", 0, 10));
    std::this_thread::sleep_for(300ms);
    QVERIFY(progress.show("Working", 1, 10));
    QVERIFY(!shown());
    std::this_thread::sleep_for(300ms);
    QVERIFY(progress.show("Working", 7, 10));
    QVERIFY(shown());
    const auto& dialog = *window.findChild<QProgressDialog*>();
    QCOMPARE(dialog.labelText(), QStringLiteral("Working"));
    QCOMPARE(dialog.value(), 7);
    QCOMPARE(dialog.maximum(), 10);
    progress.finish();
    QVERIFY(!shown());
    QVERIFY(progress.show("The next", 0, 10)); // which has half a second again
    QVERIFY(!shown());
}

// As long as the command says where it is: each step here takes a hundredth of a second.
void LongWorkTest::progressIsRepaintedTenTimesASecond() {
    QWidget window;
    CommandProgress progress(window);
    qint64 longest = 0;
    int value = 0;
    QElapsedTimer since_change;
    for (int step = 0; step < 200; ++step) {
        std::this_thread::sleep_for(10ms);
        QVERIFY(progress.show("Working", static_cast<std::size_t>(step), 200));
        const auto* dialog = window.findChild<QProgressDialog*>();
        if (dialog != nullptr && dialog->value() != value) {
            longest = since_change.isValid() ? std::max(longest, since_change.elapsed()) : 0;
            value = dialog->value();
            since_change.start();
        }
    }
    QVERIFY(since_change.isValid());
    // The sleep itself may be longer on a busy machine: what counts is that no more than a few
    // steps go by unseen.
    QVERIFY2(longest < 1000, qPrintable(QString::number(longest)));
    QVERIFY(value >= 190);
}

void LongWorkTest::cancelEndsTheCommand() {
    QWidget window;
    CommandProgress progress(window);
    QVERIFY(progress.show("Working", 0, 0));
    std::this_thread::sleep_for(510ms);
    QVERIFY(progress.show("Working", 1, 0)); // the total is not known
    QVERIFY(cancel_when_shown(window));
    std::this_thread::sleep_for(60ms);
    QVERIFY(!progress.show("Working", 2, 0));
}

// A list that takes its time to be painted anew makes the command a long one.
void LongWorkTest::aCancelledCommandKeepsWhatIsDone() {
    Rig rig;
    const QString base = rig.copy_example("airport");
    rig.open(base);
    auto& list = control<QTreeView>(*rig.form, "lstMat2proc");
    connect(list.model(), &QAbstractItemModel::dataChanged, &list, [&] {
        std::this_thread::sleep_for(300ms);
        QCoreApplication::processEvents();
        cancel_when_shown(*rig.form);
    });
    list.selectAll();
    click(*rig.form, "Command1");
    const int left = text_of(*rig.form, "Text2").toInt();
    QVERIFY2(left > 0 && left < 13, qPrintable(QString::number(left)));
    const QString note =
        QStringLiteral("Note: processed %1 of the 13 materials selected.").arg(13 - left);
    QVERIFY2(rig.messages().contains(note), qPrintable(rig.messages().join(QLatin1Char('\n'))));
    QVERIFY(rig.form->findChild<QProgressDialog*>() == nullptr);
    // What was done is whole, and can be saved.
    click(*rig.form, "Command3");
    QVERIFY(rig.dialogs.boxes.back().text.startsWith(QStringLiteral("Finished.")));
}

void LongWorkTest::aSearchCountsFoldersInAWideBar() {
    Rig rig;
    for (int folder = 0; folder < 150; ++folder) { // 200 are the most in one folder
        for (const char* file : {"/a.bgl", "/b.bgl", "/c.bgl"}) {
            rig.folder.write("f" + std::to_string(folder) + file, "x");
        }
    }
    rig.settings.write("libview.ini", rig.folder.path() + "\r\n");
    click(*rig.form, "Command7");
    QWidget& browser = rig.window("LibView");
    QTest::qWait(20); // until it is the active window, which reads the folder
    auto& bar = control<QProgressBar>(browser, "progressBar");
    auto& text = control<QLabel>(browser, "busyText");
    int widest = 0;
    QStringList texts;
    connect(&bar, &QProgressBar::valueChanged, &bar, [&] {
        QCoreApplication::processEvents();
        widest = std::max(widest, bar.width());
        texts.append(text.text());
    });
    click(browser, "Command3");
    QVERIFY2(rig.dialogs.boxes.empty(), qPrintable(rig.dialogs.take_box()));
    QVERIFY2(widest > browser.width() / 3, qPrintable(QString::number(widest)));
    const QStringList counted = texts.filter(QRegularExpression(QStringLiteral(": \\d+ of \\d+$")));
    QVERIFY2(!counted.isEmpty(), qPrintable(texts.join(QLatin1Char('\n'))));
}

namespace {
const Registration<LongWorkTest> registration("long_work");
}

} // namespace morvane::test

#include "long_work_test.moc"
