// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/scene_view/scene_view.h"

#include "ui/qt_text.h"
#include "ui/scene_view/view_habits.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace morvane {

namespace {

constexpr qint64 slow_ms = 45; // a frame that takes longer is drawn coarsely while turning

} // namespace

SceneView::SceneView(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("sceneView"));
    setAccessibleName(tr("Picture of the model"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAcceptDrops(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    options_.dark = wants_dark_picture(palette());
}

void SceneView::set_scene(scene::Scene scene, bool whole) {
    scene_ = std::move(scene);
    ghost_ = {};
    hovered_triangle_.reset();
    whole_wanted_ = whole_wanted_ || whole;
    redraw();
}

void SceneView::set_ghost(scene::Ghost ghost) {
    ghost_ = std::move(ghost);
    redraw();
}

void SceneView::set_catalogue(scene::Catalogue catalogue) {
    catalogue_ = std::move(catalogue);
    redraw();
}

void SceneView::set_selected(std::vector<int> materials) {
    options_.selected = std::move(materials);
    redraw();
}

void SceneView::set_hovered(std::optional<int> material) {
    hovered_row_ = material;
    redraw();
}

void SceneView::set_options(const scene::DrawOptions& options) {
    std::vector<int> selected = std::move(options_.selected);
    options_ = options;
    options_.selected = std::move(selected);
    options_.dark = wants_dark_picture(palette());
    redraw();
}

void SceneView::look(raster::View view) {
    camera_.view = view;
    redraw();
    Q_EMIT camera_changed();
}

void SceneView::fit_all() {
    whole_wanted_ = true;
    redraw();
    Q_EMIT camera_changed();
}

void SceneView::fit_selected() {
    if (options_.selected.empty()) {
        fit_all();
        return;
    }
    scene::fit(camera_, full_size(), scene_, ghost_, options_.selected);
    redraw();
    Q_EMIT camera_changed();
}

std::optional<scene::Pointed> SceneView::pointed_at(const QPointF& place) {
    draw();
    const double scale = pixels_per_point();
    const int reach = static_cast<int>(std::lround(4 * scale));
    const std::uint32_t id = raster::id_at(picture_, static_cast<int>(place.x() * scale),
                                           static_cast<int>(place.y() * scale), reach);
    return scene::pointed_at(scene_, ghost_, id);
}

const raster::Picture& SceneView::picture() {
    draw();
    return picture_;
}

void SceneView::redraw() {
    drawn_ = false;
    update();
}

raster::PictureSize SceneView::full_size() const {
    const double scale = devicePixelRatioF();
    return {std::max(1, static_cast<int>(std::ceil(width() * scale))),
            std::max(1, static_cast<int>(std::ceil(height() * scale)))};
}

double SceneView::pixels_per_point() const {
    return width() > 0 ? static_cast<double>(picture_.size.width) / width() : 1;
}

void SceneView::draw() {
    if (drawn_) {
        return;
    }
    raster::PictureSize size = full_size();
    options_.scale = std::max(1, static_cast<int>(std::lround(devicePixelRatioF())));
    if (coarse_) {
        size = {std::max(1, size.width / 2), std::max(1, size.height / 2)};
        options_.scale = std::max(1, options_.scale / 2);
    }
    if (whole_wanted_ && width() > 1) {
        scene::fit(camera_, size, scene_);
        whole_wanted_ = false;
    }
    scene::DrawOptions options = options_;
    options.hovered = hovered_row_ ? hovered_row_ : hovered_triangle_;
    options.ghost = &ghost_;
    options.objects = &catalogue_;
    QElapsedTimer watch;
    watch.start();
    labels_ = painter_.draw(picture_, scene_, camera_, size, options);
    drawn_ = true;
    coarse_ = coarse_ || (drag_ == Drag::Orbit && watch.elapsed() > slow_ms);
}

void SceneView::paintEvent(QPaintEvent* /*event*/) {
    draw();
    QPainter painter(this);
    painter.drawImage(rect(), image_of(picture_));
    draw_overlay(painter);
}

// The texts, in the window's font.
void SceneView::draw_overlay(QPainter& painter) {
    QFont small = font();
    small.setPointSizeF(std::max(6.0, small.pointSizeF() - 1));
    painter.setFont(small);
    const QFontMetrics metrics = painter.fontMetrics();
    const double scale = pixels_per_point();
    for (const scene::Label& label : labels_) {
        const QString text = shown_text(label.text);
        const QRectF box(label.x / scale, label.y / scale - metrics.height() / 2.0,
                         metrics.horizontalAdvance(text), metrics.height());
        draw_text(painter, box, text, QColor(QRgb(label.colour)));
    }
    if (!pointer_text_.isEmpty()) {
        const int room = std::max(40, width() - 70); // the arrow to the north is beside it
        const QString text = metrics.elidedText(pointer_text_, Qt::ElideRight, room);
        draw_text(painter, QRectF(8, 6, metrics.horizontalAdvance(text), metrics.height()), text,
                  QColor(QRgb(scene::theme_of(options_.dark, options_.night).ink)));
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

// On a ground that parts it from the picture.
void SceneView::draw_text(QPainter& painter, QRectF box, const QString& text, const QColor& color) {
    QColor ground(QRgb(scene::theme_of(options_.dark, options_.night).background));
    ground.setAlpha(190);
    painter.fillRect(box.adjusted(-2, 0, 3, 0), ground);
    painter.setPen(color);
    painter.drawText(box.adjusted(0, 0, 6, 0), Qt::AlignVCenter | Qt::TextSingleLine, text);
}

void SceneView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    redraw();
}

void SceneView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        options_.dark = wants_dark_picture(palette());
        redraw();
    }
}

} // namespace morvane
