// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/camera.h"
#include "raster/picture.h"
#include "scene/shape.h"

#include <QPointF>
#include <QTimer>
#include <QWidget>

namespace morvane {

/// One object of a library, large, turning slowly. Drag or the arrow keys turn it by hand, the
/// wheel makes it larger.
class ShapeView : public QWidget {
    Q_OBJECT

  public:
    explicit ShapeView(QWidget* parent = nullptr);

    void show_shape(scene::Shape shape);
    const scene::Shape& shape() const { return shape_; }
    const raster::Camera& camera() const { return camera_; }
    void set_turning(bool turning);

    QSize sizeHint() const override { return {300, 240}; }
    QSize minimumSizeHint() const override { return {120, 80}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void turn(double right, double down);
    void run_timer();

    scene::Shape shape_;
    raster::Camera camera_;
    raster::Picture picture_;
    QTimer timer_;
    QPointF dragged_to_;
    raster::PictureSize fitted_{0, 0}; // that the camera shows the whole object in
    double zoom_ = 1;
    bool turning_ = true;
};

} // namespace morvane
