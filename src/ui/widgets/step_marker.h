// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QWidget>

namespace morvane {

/// The marker in front of a step: a red disc with the step's number while it is pending, a green
/// one with a tick when it is done, so that the shape tells it too.
class StepMarker : public QWidget {
    Q_OBJECT

  public:
    explicit StepMarker(QWidget* parent = nullptr);

    void set_step(int number);
    void set_done(bool done);
    bool is_done() const { return done_; }
    QColor color() const;

    QSize sizeHint() const override { return {20, 20}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void tell();

    int number_ = 0;
    bool done_ = false;
};

} // namespace morvane
