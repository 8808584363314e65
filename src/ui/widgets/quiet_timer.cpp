// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/quiet_timer.h"

#include <QApplication>
#include <QEvent>

#include <algorithm>

namespace morvane {

namespace {

constexpr int shortest_wait_ms = 50; // after a change, for the next may follow at once
constexpr int longest_wait_ms = 2000;
constexpr int noticed_ms = 50;

bool is_by_hand(QEvent::Type type) {
    switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::DragMove:
        return true;
    case QEvent::MouseMove:
        return QGuiApplication::mouseButtons() != Qt::NoButton;
    default:
        return false;
    }
}

} // namespace

QuietTimer::QuietTimer(QObject* parent) : QObject(parent) {
    timer_.setSingleShot(true);
    timer_.setInterval(shortest_wait_ms);
    connect(&timer_, &QTimer::timeout, this, &QuietTimer::look);
    QCoreApplication::instance()->installEventFilter(this);
}

void QuietTimer::start() {
    if (!timer_.isActive()) {
        timer_.start();
    }
}

void QuietTimer::expect(int ms) {
    felt_ = ms > noticed_ms;
    timer_.setInterval(std::clamp(2 * ms, shortest_wait_ms, longest_wait_ms));
}

// A command shows the hourglass as long as it runs.
void QuietTimer::look() {
    const bool busy = QGuiApplication::overrideCursor() != nullptr;
    const bool open = QApplication::activePopupWidget() != nullptr ||
                      QApplication::activeModalWidget() != nullptr;
    if (busy || (felt_ && open)) {
        timer_.start();
    } else {
        Q_EMIT came();
    }
}

bool QuietTimer::eventFilter(QObject* watched, QEvent* event) {
    if (timer_.isActive() && is_by_hand(event->type())) {
        timer_.start();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace morvane
