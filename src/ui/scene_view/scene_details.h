// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/scene.h"

#include <QDialog>

#include <cstddef>

class QLineEdit;
class QListWidget;

namespace morvane {

/// What the picture does not show, one a line: the textures that were found and that are missing,
/// and what could not be drawn. A further folder of textures can be given.
class SceneDetails : public QDialog {
    Q_OBJECT

  public:
    SceneDetails(const scene::Scene& scene, const QString& texture_folder,
                 QWidget* parent = nullptr);

    void show_scene(const scene::Scene& scene);

  Q_SIGNALS:
    /// A note about a line of the model file was chosen.
    void line_wanted(std::size_t line);
    void texture_folder_chosen(const QString& folder);

  private:
    QListWidget* list_;
    QLineEdit* folder_;
};

} // namespace morvane
