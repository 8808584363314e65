// SPDX-License-Identifier: GPL-3.0-or-later

// Prints how long the window takes to come up, and to open a set.
//   window_speed NANOSECONDS [BASE]     the first being `date +%s%N` at the start

#include "system/disk.h"
#include "system/programs.h"
#include "ui/dialogs/dialogs.h"
#include "ui/main_window/main_window.h"
#include "ui/models/message_log.h"
#include "ui/program.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>

namespace morvane::test {
namespace {

double milliseconds_since(long long start_ns) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<double>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count() -
                               start_ns) /
           1e6;
}

// Notes when the window is painted for the first time.
class FirstPaint final : public QObject {
  public:
    explicit FirstPaint(long long start_ns) : start_ns_(start_ns) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool handled = QObject::eventFilter(watched, event);
        if (event->type() == QEvent::Paint && !painted) {
            painted = true;
            std::printf("first paint  %7.1f ms\n", milliseconds_since(start_ns_));
        }
        return handled;
    }

    bool painted = false;

  private:
    long long start_ns_;
};

void measure(long long start_ns, const QString& base) {
    const QTemporaryDir settings;
    const auto disk = make_system_disk();
    const auto programs = make_system_programs();
    SystemDialogs dialogs;
    MessageLog log;
    Desk desk{*disk, dialogs, *programs, log, settings.path().toStdString()};
    MainWindow window(desk);
    FirstPaint first_paint(start_ns);
    window.installEventFilter(&first_paint);
    window.show();
    while (!first_paint.painted) {
        QApplication::processEvents();
    }
    if (!base.isEmpty()) {
        QElapsedTimer watch;
        watch.start();
        window.open_base(base);
        QApplication::processEvents();
        std::printf("open         %7.1f ms\n", static_cast<double>(watch.nsecsElapsed()) / 1e6);
    }
}

} // namespace
} // namespace morvane::test

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    morvane::prepare_application(application);
    const QStringList arguments = QApplication::arguments();
    morvane::test::measure(arguments.value(1).toLongLong(), arguments.value(2));
}
