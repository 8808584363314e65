// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/camera.h"
#include "raster/picture.h"
#include "scene/draw_scene.h"
#include "scene/ghost.h"
#include "scene/pointing.h"
#include "scene/scene.h"
#include "scene/shape.h"

#include <QPoint>
#include <QString>
#include <QWidget>

#include <optional>
#include <vector>

namespace morvane {

/// Shows a scene and lets the user look around in it: left drag turns, middle drag or Shift and
/// left pans, the wheel zooms at the pointer, a double click or Home shows everything. Arrow keys
/// turn, 7, 1 and 3 are the views from above, the front and the side, F goes to what is selected.
class SceneView : public QWidget {
    Q_OBJECT

  public:
    explicit SceneView(QWidget* parent = nullptr);

    /// Shows another scene. `whole`: all of it is brought into the picture; otherwise the viewer
    /// stays where he is.
    void set_scene(scene::Scene scene, bool whole);
    const scene::Scene& scene() const { return scene_; }
    void set_ghost(scene::Ghost ghost);
    const scene::Ghost& ghost() const { return ghost_; }
    void set_catalogue(scene::Catalogue catalogue);
    const scene::Catalogue& catalogue() const { return catalogue_; }
    /// MATERIAL numbers that are lit, and the one that is outlined.
    void set_selected(std::vector<int> materials);
    void set_hovered(std::optional<int> material);

    /// What is drawn; selection, ghost, theme and scale are the view's own.
    const scene::DrawOptions& options() const { return options_; }
    void set_options(const scene::DrawOptions& options);

    const raster::Camera& camera() const { return camera_; }
    void look(raster::View view);
    void fit_all();
    /// Shows the selected materials as large as they fit; everything when none is selected.
    void fit_selected();

    /// What the picture has at a place of the widget.
    std::optional<scene::Pointed> pointed_at(const QPointF& place);
    /// What the pointer is over, in words, as the picture shows it; empty for nothing.
    const QString& pointer_text() const { return pointer_text_; }
    /// The picture as it is on the screen, without letters.
    const raster::Picture& picture();

    QSize sizeHint() const override { return {640, 480}; }
    QSize minimumSizeHint() const override { return {160, 110}; }

  Q_SIGNALS:
    /// Something of the scene was clicked.
    void clicked(const morvane::scene::Pointed& pointed);
    /// From another side, or larger or smaller.
    void camera_changed();
    /// An object of a library was dropped on a material.
    void object_dropped(int material, const QString& identifier, const QString& scale);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    enum class Drag { None, Press, Orbit, Pan };

    // scene_view.cpp
    void redraw();
    void draw();
    void draw_overlay(QPainter& painter);
    void draw_text(QPainter& painter, QRectF box, const QString& text, const QColor& color);
    raster::PictureSize full_size() const;
    double pixels_per_point() const;

    // scene_view_input.cpp
    void drag_to(const QPointF& place);
    void move_camera(const QPointF& by);
    void hover_at(const QPointF& place);
    void set_pointer(const QString& text, std::optional<int> material);
    void zoom(const QPointF& place, double factor);
    bool key_moves(const QKeyEvent& key);

    scene::Scene scene_;
    scene::Ghost ghost_;
    scene::Catalogue catalogue_;
    scene::DrawOptions options_;
    raster::Camera camera_;
    scene::Painter painter_;
    raster::Picture picture_;
    std::vector<scene::Label> labels_;
    std::optional<int> hovered_row_;      // outlined as long as the pointer is over its row
    std::optional<int> hovered_triangle_; // outlined as long as the pointer is over it
    bool whole_wanted_ = true;            // fit when the size is known
    bool drawn_ = false;                  // the picture shows what the members say
    bool coarse_ = false;                 // while turning, when a full picture takes too long
    QString pointer_text_;
    Drag drag_ = Drag::None;
    Qt::MouseButton button_ = Qt::NoButton;
    QPointF pressed_at_;
    QPointF dragged_to_;
};

} // namespace morvane
