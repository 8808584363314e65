// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTimer>

namespace morvane {

/// Waits for a moment in which work does not disturb: until nobody has typed, clicked, dragged or
/// turned the wheel for a while, no command runs, and, for work that is felt, no menu or dialog is
/// open.
class QuietTimer : public QObject {
    Q_OBJECT

  public:
    explicit QuietTimer(QObject* parent = nullptr);

    /// Begins to wait, unless it waits already.
    void start();
    /// How long the work is expected to take. What takes longer waits longer.
    void expect(int ms);
    bool is_waiting() const { return timer_.isActive(); }

  Q_SIGNALS:
    /// Now.
    void came();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void look();

    QTimer timer_;
    bool felt_ = false; // the work takes so long that somebody would notice
};

} // namespace morvane
