// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QFrame>
#include <QIcon>

namespace morvane {

/// A patch of one colour, or an empty frame while there is none. Its tooltip names the colour.
class ColorSwatch : public QFrame {
    Q_OBJECT

  public:
    explicit ColorSwatch(QWidget* parent = nullptr);

    QColor color() const { return color_; } // invalid while there is none
    void set_color(const QColor& color);
    /// The same with a text that is written on the colour, and a tooltip of its own.
    void set_color(const QColor& color, const QString& text, const QString& tool_tip);

    QSize sizeHint() const override { return {48, 22}; }
    QSize minimumSizeHint() const override { return {32, 18}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QColor color_;
    QString text_;
};

/// A small square of a colour for lists, the same on a selected row.
QIcon color_patch(const QColor& color, int side, qreal device_pixel_ratio);

} // namespace morvane
