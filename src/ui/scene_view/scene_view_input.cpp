// SPDX-License-Identifier: GPL-3.0-or-later

// The scene view's mouse, wheel and keys.

#include "ui/qt_text.h"
#include "ui/scene_view/object_drag.h"
#include "ui/scene_view/scene_view.h"
#include "ui/scene_view/view_habits.h"

#include <QApplication>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace morvane {

void SceneView::mousePressEvent(QMouseEvent* event) {
    const bool left = event->button() == Qt::LeftButton;
    if (drag_ != Drag::None || (!left && event->button() != Qt::MiddleButton)) {
        QWidget::mousePressEvent(event);
        return;
    }
    button_ = event->button();
    pressed_at_ = dragged_to_ = event->position();
    const bool pans = !left || (event->modifiers() & Qt::ShiftModifier) != 0;
    drag_ = pans ? Drag::Pan : Drag::Press;
}

void SceneView::mouseMoveEvent(QMouseEvent* event) {
    if (drag_ == Drag::None) {
        hover_at(event->position());
        return;
    }
    const QPointF moved = event->position() - pressed_at_;
    if (drag_ == Drag::Press && moved.manhattanLength() >= QApplication::startDragDistance()) {
        drag_ = Drag::Orbit;
    }
    drag_to(event->position());
}

void SceneView::drag_to(const QPointF& place) {
    if (drag_ == Drag::Press) {
        return; // it may still become a click
    }
    move_camera(place - dragged_to_);
    dragged_to_ = place;
}

// By a number of points of the screen, as the drag wants it.
void SceneView::move_camera(const QPointF& by) {
    if (drag_ == Drag::Orbit) {
        raster::orbit(camera_, by.x() * turned_per_point, by.y() * turned_per_point);
    } else {
        raster::pan(camera_, {std::max(1, width()), std::max(1, height())}, by.x(), by.y());
    }
    redraw();
    Q_EMIT camera_changed();
}

void SceneView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != button_ || drag_ == Drag::None) {
        return;
    }
    const bool was_click = drag_ == Drag::Press;
    drag_ = Drag::None;
    button_ = Qt::NoButton;
    if (coarse_) {
        coarse_ = false;
        redraw();
    }
    if (!was_click) {
        return;
    }
    if (const auto pointed = pointed_at(event->position())) {
        Q_EMIT clicked(*pointed);
    }
}

void SceneView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        fit_all();
    }
}

void SceneView::hover_at(const QPointF& place) {
    const auto pointed = pointed_at(place);
    const double scale = pixels_per_point();
    QString text = shown_text(
        scene::plan_text(scene_, camera_, picture_.size, place.x() * scale, place.y() * scale));
    if (pointed) {
        text +=
            (text.isEmpty() ? QString() : QStringLiteral(" \u00B7 ")) + shown_text(pointed->text);
    }
    const auto material =
        pointed && pointed->material >= 0 ? std::optional(pointed->material) : std::nullopt;
    set_pointer(text, material);
}

void SceneView::set_pointer(const QString& text, std::optional<int> material) {
    if (text != pointer_text_) {
        pointer_text_ = text;
        update();
    }
    if (material != hovered_triangle_) {
        hovered_triangle_ = material;
        redraw();
    }
}

void SceneView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    set_pointer({}, std::nullopt);
}

void SceneView::zoom(const QPointF& place, double factor) {
    raster::zoom_at(camera_, {std::max(1, width()), std::max(1, height())}, place.x(), place.y(),
                    factor);
    redraw();
    Q_EMIT camera_changed();
}

void SceneView::wheelEvent(QWheelEvent* event) {
    const double steps = event->angleDelta().y() / 120.0;
    if (steps != 0) {
        zoom(event->position(), std::pow(zoomed_per_step, steps));
    }
    event->accept();
}

// Keys that turn, move or zoom.
bool SceneView::key_moves(const QKeyEvent& key) {
    const bool pans = (key.modifiers() & Qt::ShiftModifier) != 0;
    const auto move = [&](double right, double down) {
        if (pans) {
            raster::pan(camera_, {std::max(1, width()), std::max(1, height())},
                        -right * panned_per_key, -down * panned_per_key);
        } else {
            raster::orbit(camera_, right * turned_per_key, down * turned_per_key);
        }
        redraw();
        Q_EMIT camera_changed();
    };
    switch (key.key()) {
    case Qt::Key_Left:
        move(-1, 0);
        return true;
    case Qt::Key_Right:
        move(1, 0);
        return true;
    case Qt::Key_Up:
        move(0, -1);
        return true;
    case Qt::Key_Down:
        move(0, 1);
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoom(rect().center(), zoomed_per_step);
        return true;
    case Qt::Key_Minus:
        zoom(rect().center(), 1 / zoomed_per_step);
        return true;
    default:
        return false;
    }
}

void SceneView::keyPressEvent(QKeyEvent* event) {
    if ((event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0 || key_moves(*event)) {
        event->setAccepted((event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Home:
        fit_all();
        break;
    case Qt::Key_F:
        fit_selected();
        break;
    case Qt::Key_7:
        look(raster::View::Plan);
        break;
    case Qt::Key_1:
        look(raster::View::Front);
        break;
    case Qt::Key_3:
        look(raster::View::Side);
        break;
    case Qt::Key_0:
        look(raster::View::Orbit);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void SceneView::dragEnterEvent(QDragEnterEvent* event) {
    event->setAccepted(dragged_object(event->mimeData()).has_value());
}

void SceneView::dragMoveEvent(QDragMoveEvent* event) {
    const auto pointed = pointed_at(event->position());
    event->setAccepted(pointed && pointed->material >= 0);
}

void SceneView::dropEvent(QDropEvent* event) {
    const auto object = dragged_object(event->mimeData());
    const auto pointed = pointed_at(event->position());
    if (!object || !pointed || pointed->material < 0) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    Q_EMIT object_dropped(pointed->material, object->identifier, object->scale);
}

} // namespace morvane
