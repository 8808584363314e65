// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/project_table.h"
#include "scene/draw_scene.h"
#include "scene/scene.h"
#include "system/disk.h"

#include <QImage>
#include <QObject>
#include <QSize>
#include <QTimer>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace morvane {

/// The exports of a project as pictures, made one by one while nothing else is to be done, and made
/// again when the files have changed.
class ProjectPictures : public QObject {
    Q_OBJECT

  public:
    explicit ProjectPictures(Disk& disk, QObject* parent = nullptr);

    /// Looks at the exports of these steps. What was made of others is dropped.
    void look_at(const std::vector<ProjectRow>& rows);
    /// The scene of an export; null when it is not read yet, or cannot be.
    const scene::Scene* scene(const std::string& base) const;
    /// Its picture in perspective, of that size in pixels; null without a scene.
    QImage thumbnail(const std::string& base, const QSize& size, int scale, bool dark);

    static constexpr QSize thumbnail_size{72, 48};

  Q_SIGNALS:
    /// Another export has been read.
    void read_one();
    /// All have been read.
    void read_all();

  private:
    using Stamps = std::array<FileStamp, 2>;
    struct Export {
        Stamps stamps{};
        std::unique_ptr<scene::Scene> scene;
    };

    Stamps stamps_of(const std::string& base);
    void read_next();

    Disk& disk_;
    std::map<std::string, Export> exports_;
    std::vector<std::string> unread_; // the last is the next
    scene::Painter painter_;
    QTimer timer_;
};

} // namespace morvane
