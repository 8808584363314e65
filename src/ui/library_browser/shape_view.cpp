// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library_browser/shape_view.h"

#include "scene/draw_shape.h"
#include "ui/scene_view/view_habits.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace morvane {

namespace {

constexpr int turn_every_ms = 40;
constexpr double degrees_per_turn = 1.2;

} // namespace

ShapeView::ShapeView(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("shapeView"));
    setAccessibleName(tr("The selected object"));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    timer_.setInterval(turn_every_ms);
    connect(&timer_, &QTimer::timeout, this, [this] { turn(degrees_per_turn, 0); });
}

void ShapeView::show_shape(scene::Shape shape) {
    shape_ = std::move(shape);
    zoom_ = 1;
    fitted_ = {0, 0};
    run_timer();
    update();
}

void ShapeView::set_turning(bool turning) {
    turning_ = turning;
    run_timer();
}

// Nothing turns that nobody sees.
void ShapeView::run_timer() {
    if (turning_ && isVisible() && !shape_.box.empty()) {
        timer_.start();
    } else {
        timer_.stop();
    }
}

void ShapeView::turn(double right, double down) {
    raster::orbit(camera_, right, down);
    update();
}

void ShapeView::paintEvent(QPaintEvent* /*event*/) {
    const qreal scale = devicePixelRatioF();
    const raster::PictureSize size{std::max(1, static_cast<int>(std::ceil(width() * scale))),
                                   std::max(1, static_cast<int>(std::ceil(height() * scale)))};
    if (std::exchange(fitted_, size) != size) {
        scene::fit_all_round(camera_, size, shape_);
    }
    raster::Camera near = camera_;
    near.height /= zoom_;
    const bool dark = wants_dark_picture(palette());
    scene::draw_shape(picture_, shape_, near, size,
                      {.dark = dark, .scale = std::max(1, static_cast<int>(std::lround(scale)))});
    QPainter painter(this);
    painter.drawImage(rect(), image_of(picture_));
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void ShapeView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    run_timer();
}

void ShapeView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    timer_.stop();
}

void ShapeView::mousePressEvent(QMouseEvent* event) {
    dragged_to_ = event->position();
}

void ShapeView::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & (Qt::LeftButton | Qt::MiddleButton)) != 0) {
        const QPointF by = event->position() - dragged_to_;
        dragged_to_ = event->position();
        turn(by.x() * turned_per_point, by.y() * turned_per_point);
    }
}

void ShapeView::wheelEvent(QWheelEvent* event) {
    zoom_ =
        std::clamp(zoom_ * std::pow(zoomed_per_step, event->angleDelta().y() / 120.0), 0.2, 20.0);
    event->accept();
    update();
}

void ShapeView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
        turn(-turned_per_key, 0);
        break;
    case Qt::Key_Right:
        turn(turned_per_key, 0);
        break;
    case Qt::Key_Up:
        turn(0, -turned_per_key);
        break;
    case Qt::Key_Down:
        turn(0, turned_per_key);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace morvane
