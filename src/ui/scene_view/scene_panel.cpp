// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/scene_view/scene_panel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QVBoxLayout>

#include <algorithm>

namespace morvane {

namespace {

struct ViewEntry {
    const char* name;
    const char* caption;
    const char* tool_tip;
};

// In the order of raster::View.
constexpr std::array<ViewEntry, 4> view_buttons{
    {{"viewOrbit", QT_TRANSLATE_NOOP("morvane::ScenePanel", "3D"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel",
                        "With perspective (0). Drag to turn, Shift and drag to move.")},
     {"viewPlan", QT_TRANSLATE_NOOP("morvane::ScenePanel", "Plan"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel",
                        "From above, north up (7). The pointer's place is shown.")},
     {"viewFront", QT_TRANSLATE_NOOP("morvane::ScenePanel", "Front"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel", "Looking north (1)")},
     {"viewSide", QT_TRANSLATE_NOOP("morvane::ScenePanel", "Side"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel", "Looking west (3)")}}};

struct BoxEntry {
    const char* name;
    const char* caption;
    const char* tool_tip;
    bool scene::DrawOptions::*option;
};

// Each is reached by Alt and the number of its place: the letters are all taken.
constexpr std::array<BoxEntry, 6> box_list{
    {{"showModel", QT_TRANSLATE_NOOP("morvane::ScenePanel", "Model"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel", "The triangles of the model"),
      &scene::DrawOptions::model},
     {"showMarks", QT_TRANSLATE_NOOP("morvane::ScenePanel", "Marks"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel", "Lights, effects, windsocks and library objects"),
      &scene::DrawOptions::marks},
     {"showLabels", QT_TRANSLATE_NOOP("morvane::ScenePanel", "Labels"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel", "Names of marks, and how far off they are"),
      &scene::DrawOptions::labels},
     {"showNormals", QT_TRANSLATE_NOOP("morvane::ScenePanel", "Normals"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel", "The normal of each vertex"),
      &scene::DrawOptions::normals},
     {"showBackSides", QT_TRANSLATE_NOOP("morvane::ScenePanel", "Back sides"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel", "Triangles that are seen from behind too"),
      &scene::DrawOptions::back_sides},
     {"showNight", QT_TRANSLATE_NOOP("morvane::ScenePanel", "Night"),
      QT_TRANSLATE_NOOP("morvane::ScenePanel", "A dark model, on which lights stand out"),
      &scene::DrawOptions::night}}};

} // namespace

ScenePanel::ScenePanel(QWidget* parent)
    : QWidget(parent), view_(new SceneView(this)), words_(new QLabel(this)),
      details_(new QToolButton(this)) {
    setObjectName(QStringLiteral("scenePanel"));
    head_ = new QGridLayout;
    head_->setHorizontalSpacing(12);
    head_->setVerticalSpacing(2);
    buttons_ = make_buttons();
    checks_ = make_boxes();
    words_->setObjectName(QStringLiteral("sceneWords"));
    words_->setWordWrap(true);
    details_->setObjectName(QStringLiteral("sceneDetails"));
    details_->setText(tr("Details…"));
    details_->setToolTip(tr("Textures found and missing, and what could not be drawn."));
    auto* foot = new QHBoxLayout;
    foot->addWidget(words_, 1);
    foot->addWidget(details_, 0, Qt::AlignTop);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 4);
    layout->setSpacing(4);
    layout->addLayout(head_);
    layout->addWidget(view_, 1);
    layout->addLayout(foot);
    connect_view();
    arrange();
}

QWidget* ScenePanel::make_buttons() {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    for (std::size_t i = 0; i < view_buttons.size(); ++i) {
        auto* button = views_[i] = new QToolButton(row);
        button->setObjectName(QString::fromLatin1(view_buttons[i].name));
        button->setText(tr(view_buttons[i].caption));
        button->setToolTip(tr(view_buttons[i].tool_tip));
        button->setCheckable(true);
        connect(button, &QToolButton::clicked, view_,
                [this, i] { view_->look(static_cast<raster::View>(i)); });
        layout->addWidget(button);
    }
    auto* fit = new QToolButton(row);
    fit->setObjectName(QStringLiteral("viewAll"));
    fit->setText(tr("Fit"));
    fit->setToolTip(tr("Shows everything (Home, or a double click)"));
    connect(fit, &QToolButton::clicked, view_, &SceneView::fit_all);
    auto* selected = new QToolButton(row);
    selected->setObjectName(QStringLiteral("viewSelected"));
    selected->setText(tr("Selected"));
    selected->setToolTip(tr("Goes to the selected materials (F)"));
    connect(selected, &QToolButton::clicked, view_, &SceneView::fit_selected);
    layout->addSpacing(6);
    layout->addWidget(fit);
    layout->addWidget(selected);
    return row;
}

QWidget* ScenePanel::make_boxes() {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (std::size_t i = 0; i < box_list.size(); ++i) {
        auto* box = boxes_[i] = new QCheckBox(tr(box_list[i].caption), row);
        const QString keys = QStringLiteral("Alt+%1").arg(i + 1);
        box->setObjectName(QString::fromLatin1(box_list[i].name));
        box->setToolTip(QStringLiteral("%1 (%2)").arg(tr(box_list[i].tool_tip), keys));
        box->setChecked(view_->options().*box_list[i].option);
        box->setShortcut(QKeySequence(keys));
        connect(box, &QCheckBox::toggled, this, &ScenePanel::take_boxes);
        layout->addWidget(box);
    }
    return row;
}

void ScenePanel::connect_view() {
    connect(details_, &QToolButton::clicked, this, &ScenePanel::details_wanted);
    connect(view_, &SceneView::camera_changed, this, &ScenePanel::show_view);
    show_view();
}

void ScenePanel::take_boxes() {
    scene::DrawOptions options = view_->options();
    for (std::size_t i = 0; i < box_list.size(); ++i) {
        options.*box_list[i].option = boxes_[i]->isChecked();
    }
    view_->set_options(options);
}

void ScenePanel::show_view() {
    for (std::size_t i = 0; i < views_.size(); ++i) {
        views_[i]->setChecked(view_->camera().view == static_cast<raster::View>(i));
    }
}

void ScenePanel::show_words(const QString& words, const QString& alarm, const QString& details) {
    const QString color =
        view_->options().dark ? QStringLiteral("#ff8a80") : QStringLiteral("#b71c1c");
    words_->setText(alarm.isEmpty()
                        ? words.toHtmlEscaped()
                        : QStringLiteral("<span style=\"color:%1\">%2</span> %3")
                              .arg(color, alarm.toHtmlEscaped(), words.toHtmlEscaped()));
    details_->setText(details);
}

QSize ScenePanel::minimumSizeHint() const {
    const QMargins around = layout()->contentsMargins();
    const int widest = std::max(buttons_->sizeHint().width(), checks_->sizeHint().width());
    return {widest + around.left() + around.right(), QWidget::minimumSizeHint().height()};
}

// One row where there is room for one, else two.
void ScenePanel::arrange() {
    const int wanted = buttons_->sizeHint().width() + checks_->sizeHint().width() + 32;
    const bool one_row = width() >= wanted;
    head_->removeWidget(checks_);
    head_->addWidget(buttons_, 0, 0, Qt::AlignLeft);
    head_->addWidget(checks_, one_row ? 0 : 1, one_row ? 1 : 0, Qt::AlignLeft);
    head_->setColumnStretch(1, 1);
}

void ScenePanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

} // namespace morvane
