// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/project_window/project_plan.h"

#include "ui/qt_text.h"
#include "ui/scene_view/view_habits.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace morvane {

namespace {

constexpr double mark_radius = 4;   // points
constexpr double reach = 9;         // points around a place that are taken for it
constexpr double least_height = 20; // metres that are shown at least

QString text_of(const scene::SitePlan::Site& site) {
    const QString name = shown_text(site.name);
    return site.trouble.empty() ? name
                                : QStringLiteral("%1: %2").arg(name, shown_text(site.trouble));
}

// Below those that are there already, so that the names of two sets in one place can be read.
QRectF free_place(QRectF box, const std::vector<QRectF>& taken) {
    const auto covered = [&] {
        return std::any_of(taken.begin(), taken.end(),
                           [&](const QRectF& other) { return other.intersects(box); });
    };
    for (int tries = 0; tries < 20 && covered(); ++tries) {
        box.translate(0, box.height());
    }
    return box;
}

} // namespace

ProjectPlan::ProjectPlan(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("projectPlan"));
    setAccessibleName(tr("Plan of all sets"));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    camera_.view = raster::View::Plan;
}

void ProjectPlan::show_plan(scene::SitePlan plan) {
    whole_wanted_ = whole_wanted_ || plan.sites().size() != plan_.sites().size();
    plan_ = std::move(plan);
    update();
}

void ProjectPlan::select(const std::string& name) {
    selected_ = name;
    update();
}

void ProjectPlan::show_everything() {
    whole_wanted_ = true;
    update();
}

raster::PictureSize ProjectPlan::full_size() const {
    return {std::max(1, static_cast<int>(std::ceil(width() * scale()))),
            std::max(1, static_cast<int>(std::ceil(height() * scale())))};
}

std::optional<QPointF> ProjectPlan::place_of(const scene::SitePlan::Site& site) const {
    return seen_at(site.place);
}

std::optional<QPointF> ProjectPlan::seen_at(const scene::Vec3& place) const {
    const auto seen = raster::project(raster::projection_of(camera_, full_size()), place);
    return seen ? std::optional(QPointF(seen->x, seen->y) / scale()) : std::nullopt;
}

void ProjectPlan::paintEvent(QPaintEvent* /*event*/) {
    const raster::PictureSize size = full_size();
    if (std::exchange(whole_wanted_, false)) {
        std::vector<raster::Vec3> points;
        for (const scene::SitePlan::Site& site : plan_.sites()) {
            points.insert(points.end(), {site.box.low, site.box.high, site.place});
        }
        raster::fit(camera_, size, points);
        camera_.height = std::max(camera_.height * 1.2, least_height); // room for the names
    }
    const bool dark = wants_dark_picture(palette());
    labels_ = painter_.draw(picture_, plan_.scene(), camera_, size,
                            {.marks = false,
                             .labels = false,
                             .dark = dark,
                             .scale = std::max(1, static_cast<int>(std::lround(scale())))});
    QPainter painter(this);
    painter.drawImage(rect(), image_of(picture_));
    painter.setRenderHint(QPainter::Antialiasing);
    draw_names(painter);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

// A ring at its reference place and a frame around what it draws.
void ProjectPlan::draw_site(QPainter& painter, const scene::SitePlan::Site& site,
                            const QPointF& place) {
    painter.drawEllipse(place, mark_radius, mark_radius);
    const auto low = seen_at(site.box.low);
    const auto high = seen_at(site.box.high);
    if (low && high) {
        painter.setPen(QPen(painter.pen().color(), 1, Qt::DotLine));
        painter.drawRect(QRectF(*low, *high).normalized());
    }
}

void ProjectPlan::draw_names(QPainter& painter) {
    const scene::Theme theme = scene::theme_of(wants_dark_picture(palette()), false);
    const QFontMetricsF metrics(painter.font());
    QColor ground(QRgb(theme.background));
    ground.setAlpha(190);
    painter.setPen(QColor(QRgb(theme.ink)));
    for (const scene::Label& label : labels_) {
        const QPointF place(label.x / scale(), label.y / scale() + metrics.ascent() / 2 - 1);
        painter.drawText(place, shown_text(label.text));
    }
    std::vector<QRectF> taken;
    for (const scene::SitePlan::Site& site : plan_.sites()) {
        const auto place = place_of(site);
        if (!place) {
            continue;
        }
        const QColor color(QRgb(!site.trouble.empty()    ? theme.alarm
                                : site.name == selected_ ? theme.accent
                                                         : theme.ink));
        painter.setPen(QPen(color, site.name == selected_ ? 3 : 1.5));
        painter.setBrush(Qt::NoBrush);
        draw_site(painter, site, *place);
        const QString text = text_of(site);
        const QRectF box =
            free_place({place->x() + mark_radius + 5, place->y() - metrics.height() / 2,
                        metrics.horizontalAdvance(text), metrics.height()},
                       taken);
        taken.push_back(box);
        painter.fillRect(box.adjusted(-2, 0, 3, 0), ground);
        painter.drawText(box.adjusted(0, 0, 6, 0), Qt::AlignVCenter | Qt::TextSingleLine, text);
    }
}

const scene::SitePlan::Site* ProjectPlan::site_at(const QPointF& place) const {
    for (const scene::SitePlan::Site& site : plan_.sites()) {
        const auto mark = place_of(site);
        if (mark && QLineF(*mark, place).length() <= reach) {
            return &site;
        }
    }
    const QPointF pixel = place * scale();
    const auto number = plan_.site_of(
        raster::id_at(picture_, static_cast<int>(pixel.x()), static_cast<int>(pixel.y()), 2));
    return number ? &plan_.sites()[*number] : nullptr;
}

void ProjectPlan::zoom(const QPointF& place, double factor) {
    raster::zoom_at(camera_, full_size(), place.x() * scale(), place.y() * scale(), factor);
    update();
}

void ProjectPlan::pan(const QPointF& by) {
    raster::pan(camera_, full_size(), by.x() * scale(), by.y() * scale());
    update();
}

bool ProjectPlan::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto& help = static_cast<QHelpEvent&>(*event);
        const scene::SitePlan::Site* site = site_at(help.pos());
        QToolTip::showText(help.globalPos(), site == nullptr ? QString() : text_of(*site), this);
        return true;
    }
    return QWidget::event(event);
}

void ProjectPlan::mousePressEvent(QMouseEvent* event) {
    moved_ = false;
    dragged_to_ = event->position();
}

void ProjectPlan::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton) {
        return;
    }
    const QPointF by = event->position() - dragged_to_;
    if (moved_ || by.manhattanLength() >= QApplication::startDragDistance()) {
        moved_ = true;
        dragged_to_ = event->position();
        pan(by);
    }
}

void ProjectPlan::mouseReleaseEvent(QMouseEvent* event) {
    const scene::SitePlan::Site* site = moved_ ? nullptr : site_at(event->position());
    if (site != nullptr && event->button() == Qt::LeftButton) {
        const QString name = shown_text(site->name);
        Q_EMIT site_chosen(name);
    }
}

void ProjectPlan::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    moved_ = true; // its release chooses nothing
    show_everything();
}

void ProjectPlan::wheelEvent(QWheelEvent* event) {
    zoom(event->position(), std::pow(zoomed_per_step, event->angleDelta().y() / 120.0));
    event->accept();
}

void ProjectPlan::keyPressEvent(QKeyEvent* event) {
    const QPointF middle(width() / 2.0, height() / 2.0);
    switch (event->key()) {
    case Qt::Key_Home:
        show_everything();
        break;
    case Qt::Key_Plus:
        zoom(middle, zoomed_per_step);
        break;
    case Qt::Key_Minus:
        zoom(middle, 1 / zoomed_per_step);
        break;
    case Qt::Key_Left:
        pan({panned_per_key, 0});
        break;
    case Qt::Key_Right:
        pan({-panned_per_key, 0});
        break;
    case Qt::Key_Up:
        pan({0, panned_per_key});
        break;
    case Qt::Key_Down:
        pan({0, -panned_per_key});
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace morvane
