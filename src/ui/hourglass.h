// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace morvane {

/// Shows the hourglass pointer as long as it lives.
class Hourglass {
  public:
    Hourglass() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;
    ~Hourglass() { QGuiApplication::restoreOverrideCursor(); }
};

/// Shows the plain pointer over a dialog that comes up in the middle of work.
class PointerPause {
  public:
    PointerPause() : waiting_(QGuiApplication::overrideCursor() != nullptr) {
        if (waiting_) {
            QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
        }
    }
    PointerPause(const PointerPause&) = delete;
    PointerPause& operator=(const PointerPause&) = delete;
    ~PointerPause() {
        if (waiting_) {
            QGuiApplication::restoreOverrideCursor();
        }
    }

  private:
    bool waiting_;
};

} // namespace morvane
