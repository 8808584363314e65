// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window/scene_presenter.h"

#include "base/errors.h"
#include "scene/read_set.h"
#include "ui/main_window/main_window.h"
#include "ui/qt_text.h"
#include "ui/scene_view/object_drag.h"
#include "ui/scene_view/scene_details.h"
#include "ui/scene_view/scene_panel.h"

#include <QAbstractProxyModel>
#include <QDropEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTreeView>

#include <optional>
#include <utility>

namespace morvane {

ScenePresenter::ScenePresenter(MainWindow& window, Desk& desk, ScenePanel& panel,
                               QTreeView& materials)
    : QObject(&window), window_(window), desk_(desk), panel_(panel), materials_(materials),
      files_(desk.disk) {
    panel_.installEventFilter(this);
    materials_.viewport()->installEventFilter(this);
    materials_.viewport()->setMouseTracking(true);
    materials_.viewport()->setAcceptDrops(true);
    connect_window();
}

void ScenePresenter::connect_window() {
    DocumentModel& document = window_.document();
    connect(&document, &DocumentModel::opened, this, &ScenePresenter::change);
    connect(&document, &DocumentModel::row_changed, this, &ScenePresenter::change);
    connect(&document, &DocumentModel::saved, this, &ScenePresenter::change);
    connect(&document, &DocumentModel::parameters_changed, this, &ScenePresenter::show_ghost);
    connect(&window_, &MainWindow::kind_changed, this, &ScenePresenter::show_ghost);
    connect(&window_, &MainWindow::selection_changed, this, &ScenePresenter::show_selection);
    connect(&panel_, &ScenePanel::details_wanted, this, &ScenePresenter::show_details);
    connect(&panel_.view(), &SceneView::clicked, this, &ScenePresenter::take_click);
    connect(this, &ScenePresenter::became_outdated, this, &ScenePresenter::read_outdated_scene,
            Qt::QueuedConnection);
    connect(&panel_.view(), &SceneView::object_dropped, this,
            [this](int material, const QString& identifier, const QString& scale) {
                take_object(material, identifier, scale);
            });
}

// A recipe changes many rows at once; the scene is read when the last has changed.
void ScenePresenter::change() {
    if (!std::exchange(outdated_, true)) {
        Q_EMIT became_outdated();
    }
}

void ScenePresenter::read_outdated_scene() {
    if (outdated_ && panel_.isVisible()) {
        read_scene();
    }
}

void ScenePresenter::read_scene() {
    outdated_ = false;
    const OpenSet& set = window_.document().set();
    const bool other_set = shown_base_ != set.base;
    scene::Scene scene;
    if (set.opened) {
        try {
            scene = scene::read_set(set);
            locate_textures(desk_.disk, scene, path_bytes(texture_folder_));
        } catch (const RuntimeError& error) {
            scene = {};
            scene.notes.push_back({error.description()});
        }
    }
    shown_base_ = set.opened ? set.base : std::string();
    panel_.view().set_scene(std::move(scene), other_set);
    show_selection();
    if (details_) {
        details_->show_scene(panel_.view().scene());
    }
}

void ScenePresenter::set_libraries(std::vector<std::string> paths) {
    libraries_ = std::move(paths);
    files_.forget();
    panel_.view().set_catalogue({});
    read_objects();
}

void ScenePresenter::keep_unpacked(const std::string& path,
                                   std::shared_ptr<const std::string> bytes) {
    files_.keep_unpacked(path, std::move(bytes)); // followed by the list of libraries found
}

void ScenePresenter::set_texture_folder(const QString& folder) {
    texture_folder_ = folder;
    change();
}

void ScenePresenter::preview(std::optional<Parameters> parameters) {
    previewed_ = std::move(parameters);
    show_ghost();
}

// Those that are called and not known yet.
void ScenePresenter::read_objects() {
    SceneView& view = panel_.view();
    scene::Catalogue catalogue = view.catalogue();
    const std::size_t known = catalogue.size();
    files_.add_called(catalogue, view.scene().marks, libraries_);
    files_.add_called(catalogue, view.ghost().marks, libraries_);
    if (catalogue.size() != known) {
        view.set_catalogue(std::move(catalogue));
    }
}

void ScenePresenter::show_selection() {
    const OpenSet& set = window_.document().set();
    std::vector<int> materials;
    for (const std::size_t row : window_.selected_rows()) {
        materials.push_back(static_cast<int>(set.translation(row).number));
    }
    panel_.view().set_selected(std::move(materials));
    show_ghost();
}

void ScenePresenter::show_ghost() {
    if (outdated_) {
        return; // comes when the scene is read
    }
    const DocumentModel& document = window_.document();
    SceneView& view = panel_.view();
    if (document.set().opened) {
        view.set_ghost(ghost_of(desk_.disk, document.set(), view.scene(), window_.selected_rows(),
                                window_.kind(),
                                previewed_.value_or(document.document().parameters())));
    }
    read_objects();
    show_words();
}

void ScenePresenter::show_words() {
    const SceneView& view = panel_.view();
    if (!window_.document().set().opened) {
        panel_.show_words(tr("No source set is open."), {}, tr("Details…"));
        return;
    }
    const scene::Scene& scene = view.scene();
    const auto count = static_cast<int>(scene.notes.size());
    panel_.show_words(shown_text(limits_text(scene)), shown_text(view.ghost().trouble),
                      count == 0 ? tr("Details…") : tr("Details (%1)…").arg(count));
}

void ScenePresenter::show_details() {
    if (!details_) {
        details_ = new SceneDetails(panel_.view().scene(), texture_folder_, &window_);
        details_->setAttribute(Qt::WA_DeleteOnClose);
        connect(details_, &SceneDetails::line_wanted, this, &ScenePresenter::line_wanted);
        connect(details_, &SceneDetails::texture_folder_chosen, this,
                &ScenePresenter::set_texture_folder);
    }
    details_->show();
    details_->raise();
    details_->activateWindow();
}

void ScenePresenter::select(std::size_t row) {
    if (auto* filter = window_.findChild<QLineEdit*>(QStringLiteral("materialFilter"))) {
        filter->clear(); // the row must be there to be selected
    }
    window_.select_row(row);
}

void ScenePresenter::take_object(int material, const QString& identifier, const QString& scale) {
    const std::size_t row = scene::row_of_material(window_.document().set(), material);
    if (row == 0) {
        Q_EMIT pointed_at(
            tr("MATERIAL %1 is not marked: nothing can be put in its place.").arg(material), 0);
        return;
    }
    select(row);
    Q_EMIT object_dropped(identifier, scale);
}

void ScenePresenter::take_click(const scene::Pointed& pointed) {
    const std::size_t row =
        pointed.material < 0 ? 0
                             : scene::row_of_material(window_.document().set(), pointed.material);
    if (row > 0) {
        select(row);
    } else if (pointed.material >= 0) {
        materials_.clearSelection();
        panel_.view().set_selected({pointed.material});
    }
    const QString text = shown_text(pointed.text);
    Q_EMIT pointed_at(text, pointed.line);
}

// The row of the set's list of materials at a place of the list; 0 for none.
std::size_t ScenePresenter::row_at(const QPoint& place) const {
    const QModelIndex index = materials_.indexAt(place);
    const auto* shown = qobject_cast<const QAbstractProxyModel*>(materials_.model());
    return index.isValid() && shown != nullptr
               ? static_cast<std::size_t>(shown->mapToSource(index).row()) + 1
               : 0;
}

void ScenePresenter::hover_row(const QPoint* place) {
    const std::size_t row = place == nullptr ? 0 : row_at(*place);
    const OpenSet& set = window_.document().set();
    panel_.view().set_hovered(row > 0 ? std::optional(static_cast<int>(set.translation(row).number))
                                      : std::nullopt);
}

bool ScenePresenter::take_drop(QEvent& event) {
    auto& drop = static_cast<QDropEvent&>(event);
    const auto object = dragged_object(drop.mimeData());
    if (!object) {
        return false;
    }
    const std::size_t row = row_at(drop.position().toPoint());
    drop.setDropAction(Qt::CopyAction);
    drop.setAccepted(row > 0 || event.type() == QEvent::DragEnter);
    if (row > 0 && event.type() == QEvent::Drop) {
        select(row);
        Q_EMIT object_dropped(object->identifier, object->scale);
    }
    return true;
}

bool ScenePresenter::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &panel_) {
        if (event->type() == QEvent::Show && outdated_) {
            read_scene();
        }
        return QObject::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::MouseMove: {
        const QPoint place = static_cast<QMouseEvent&>(*event).position().toPoint();
        hover_row(&place);
        break;
    }
    case QEvent::Leave:
        hover_row(nullptr);
        break;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return take_drop(*event);
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace morvane
