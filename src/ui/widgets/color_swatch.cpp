// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/color_swatch.h"

#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QPixmap>

namespace morvane {

namespace {

// A hairline in the text's colour keeps white visible on white and black on black.
void paint_patch(QPainter& painter, const QRectF& area, const QColor& fill, QColor line) {
    line.setAlphaF(0.55F);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, 1));
    painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
}

} // namespace

ColorSwatch::ColorSwatch(QWidget* parent) : QFrame(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ColorSwatch::set_color(const QColor& color) {
    set_color(color, {}, color.isValid() ? color.name().mid(1).toUpper() : QString());
}

void ColorSwatch::set_color(const QColor& color, const QString& text, const QString& tool_tip) {
    color_ = color;
    text_ = text;
    setToolTip(tool_tip);
    setAccessibleDescription(tool_tip);
    update();
}

void ColorSwatch::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paint_patch(painter, rect(), color_, palette().color(QPalette::Text));
    painter.setPen(qGray(color_.rgb()) > 140 ? Qt::black : Qt::white);
    painter.drawText(rect(), Qt::AlignCenter, text_);
}

QIcon color_patch(const QColor& color, int side, qreal device_pixel_ratio) {
    const int pixels = qRound(side * device_pixel_ratio);
    QPixmap pixmap(pixels, pixels);
    pixmap.setDevicePixelRatio(device_pixel_ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint_patch(painter, QRectF(0, 0, side, side), color, Qt::gray);
    painter.end();
    QIcon icon(pixmap);
    icon.addPixmap(pixmap, QIcon::Selected);
    return icon;
}

} // namespace morvane
