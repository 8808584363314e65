// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/scene_view/scene_view.h"

#include <QCheckBox>
#include <QLabel>
#include <QString>
#include <QToolButton>
#include <QWidget>

#include <array>

class QGridLayout;

namespace morvane {

/// The scene view with its buttons above it, and below it in words what it does not show.
class ScenePanel : public QWidget {
    Q_OBJECT

  public:
    explicit ScenePanel(QWidget* parent = nullptr);

    SceneView& view() { return *view_; }
    const std::array<QCheckBox*, 6>& boxes() const { return boxes_; }
    /// That of the two rows above the picture, also while they are in one: a wide window must be
    /// able to become narrow again.
    QSize minimumSizeHint() const override;
    /// What is said below the picture; `alarm` before it, in the colour of what is wrong.
    void show_words(const QString& words, const QString& alarm, const QString& details);

  Q_SIGNALS:
    void details_wanted();

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QWidget* make_buttons();
    QWidget* make_boxes();
    void connect_view();
    void take_boxes();
    void show_view();
    void arrange();

    SceneView* view_;
    std::array<QToolButton*, 4> views_{}; // in the order of raster::View
    std::array<QCheckBox*, 6> boxes_{};
    QWidget* buttons_ = nullptr;
    QWidget* checks_ = nullptr;
    QGridLayout* head_ = nullptr;
    QLabel* words_;
    QToolButton* details_;
};

} // namespace morvane
