// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"
#include "scene/object_files.h"
#include "scene/pointing.h"
#include "ui/desk.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QTreeView;

namespace morvane {

class MainWindow;
class SceneDetails;
class ScenePanel;

/// Keeps the picture in step with the main window: the document as it is now, the materials that
/// are selected, and what the chosen kind would make of them. While the picture is hidden nothing
/// is read.
class ScenePresenter : public QObject {
    Q_OBJECT

  public:
    ScenePresenter(MainWindow& window, Desk& desk, ScenePanel& panel, QTreeView& materials);

    /// Files in which library objects were found; calls of those objects are drawn as they look.
    void set_libraries(std::vector<std::string> paths);
    /// What a compressed library holds.
    void keep_unpacked(const std::string& path, std::shared_ptr<const std::string> bytes);
    const std::vector<std::string>& libraries() const { return libraries_; }
    void set_texture_folder(const QString& folder);
    const QString& texture_folder() const { return texture_folder_; }
    /// Makes the ghost by these parameters instead of those chosen, until it is called without.
    void preview(std::optional<Parameters> parameters);

  Q_SIGNALS:
    /// Something in the picture was clicked that is at a line of the model file.
    void pointed_at(const QString& text, std::size_t line);
    /// The document has changed since the scene was read.
    void became_outdated();
    void line_wanted(std::size_t line);
    /// An object of a library was dropped on a marked material, which is selected now.
    void object_dropped(const QString& identifier, const QString& scale);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void connect_window();
    void change();
    void read_outdated_scene();
    void read_scene();
    void read_objects();
    void show_selection();
    void show_ghost();
    void show_words();
    void show_details();
    void select(std::size_t row);
    void take_object(int material, const QString& identifier, const QString& scale);
    void take_click(const scene::Pointed& pointed);
    void hover_row(const QPoint* place);
    bool take_drop(QEvent& event);
    std::size_t row_at(const QPoint& place) const;

    MainWindow& window_;
    Desk& desk_;
    ScenePanel& panel_;
    QTreeView& materials_;
    scene::ObjectFiles files_;
    std::vector<std::string> libraries_;
    QString texture_folder_;
    std::optional<Parameters> previewed_;
    QPointer<SceneDetails> details_;
    std::string shown_base_;
    bool outdated_ = true; // the document has changed since the scene was read
};

} // namespace morvane
