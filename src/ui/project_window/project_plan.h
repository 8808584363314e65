// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/camera.h"
#include "raster/picture.h"
#include "scene/draw_scene.h"
#include "scene/site_plan.h"

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QWidget>

#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// All sets of a project from above, each at its reference place with its name. Drag moves the
/// plan, the wheel zooms, a double click or Home shows everything; a click chooses a set.
class ProjectPlan : public QWidget {
    Q_OBJECT

  public:
    explicit ProjectPlan(QWidget* parent = nullptr);

    /// Shows another plan. The viewer stays where he is when it has as many sets as the one before.
    void show_plan(scene::SitePlan plan);
    const scene::SitePlan& plan() const { return plan_; }
    /// The set whose place is marked; empty for none.
    void select(const std::string& name);
    void show_everything();
    /// Where the reference place of a set is in the widget.
    std::optional<QPointF> place_of(const scene::SitePlan::Site& site) const;

    QSize sizeHint() const override { return {320, 320}; }
    QSize minimumSizeHint() const override { return {160, 120}; }

  Q_SIGNALS:
    void site_chosen(const QString& name);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    double scale() const { return devicePixelRatioF(); }
    raster::PictureSize full_size() const;
    void draw_site(QPainter& painter, const scene::SitePlan::Site& site, const QPointF& place);
    void draw_names(QPainter& painter);
    std::optional<QPointF> seen_at(const scene::Vec3& place) const;
    const scene::SitePlan::Site* site_at(const QPointF& place) const;
    void zoom(const QPointF& place, double factor);
    void pan(const QPointF& by);

    scene::SitePlan plan_;
    scene::Painter painter_;
    raster::Picture picture_;
    std::vector<scene::Label> labels_; // of the scale bar and the north arrow
    raster::Camera camera_;
    std::string selected_;
    bool whole_wanted_ = true;
    bool moved_ = false; // since the button was pressed
    QPointF dragged_to_;
};

} // namespace morvane
