// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/step_marker.h"

#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

namespace morvane {

namespace {

constexpr QColor pending_color(0xFF, 0x00, 0x00);
constexpr QColor done_color(0x00, 0x80, 0x00);

void paint_tick(QPainter& painter) {
    painter.setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPainterPath tick(QPointF(5.5, 10.5));
    tick.lineTo(8.7, 13.7);
    tick.lineTo(14.5, 6.8);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(tick);
}

void paint_number(QPainter& painter, int number) {
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(12);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 0, 20, 20), Qt::AlignCenter, QString::number(number));
}

} // namespace

StepMarker::StepMarker(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StepMarker::set_step(int number) {
    number_ = number;
    tell();
}

void StepMarker::set_done(bool done) {
    done_ = done;
    tell();
}

QColor StepMarker::color() const {
    return done_ ? done_color : pending_color;
}

void StepMarker::tell() {
    const QString state = done_ ? tr("done") : tr("to do");
    setAccessibleName(tr("Step %1: %2").arg(number_).arg(state));
    setToolTip(accessibleName());
    update();
}

void StepMarker::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color());
    painter.drawEllipse(QRectF(0.5, 0.5, 19, 19));
    if (done_) {
        paint_tick(painter);
    } else {
        paint_number(painter, number_);
    }
}

} // namespace morvane
