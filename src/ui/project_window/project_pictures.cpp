// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/project_window/project_pictures.h"

#include "base/errors.h"
#include "scene/read_set.h"
#include "source/source_set.h"
#include "ui/scene_view/view_habits.h"

#include <utility>

namespace morvane {

ProjectPictures::ProjectPictures(Disk& disk, QObject* parent) : QObject(parent), disk_(disk) {
    timer_.setInterval(0);
    connect(&timer_, &QTimer::timeout, this, &ProjectPictures::read_next);
}

// A file that is not there has an empty stamp.
ProjectPictures::Stamps ProjectPictures::stamps_of(const std::string& base) {
    Stamps stamps;
    const std::array<std::string, 2> files{model_file_name(base), frame_file_name(base)};
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (disk_.is_file(files[i])) {
            stamps[i] = disk_.stamp(files[i]);
        }
    }
    return stamps;
}

void ProjectPictures::look_at(const std::vector<ProjectRow>& rows) {
    std::map<std::string, Export> kept;
    unread_.clear();
    for (const ProjectRow& row : rows) {
        if (row.base.empty() || kept.contains(row.base)) {
            continue;
        }
        try {
            const Stamps stamps = stamps_of(row.base);
            const auto known = exports_.find(row.base);
            Export& now = kept[row.base];
            if (known != exports_.end() && known->second.stamps == stamps) {
                now = std::move(known->second);
            }
            now.stamps = stamps;
            if (!now.scene) {
                unread_.insert(unread_.begin(), row.base);
            }
        } catch (const RuntimeError&) {
            continue; // the table says what is wrong with it
        }
    }
    exports_ = std::move(kept);
    timer_.start();
}

void ProjectPictures::read_next() {
    if (unread_.empty()) {
        timer_.stop();
        Q_EMIT read_all();
        return;
    }
    const std::string base = unread_.back();
    unread_.pop_back();
    try {
        exports_[base].scene = std::make_unique<scene::Scene>(scene::read_set_files(disk_, base));
    } catch (const RuntimeError&) {
        return;
    }
    Q_EMIT read_one();
}

const scene::Scene* ProjectPictures::scene(const std::string& base) const {
    const auto known = exports_.find(base);
    return known == exports_.end() ? nullptr : known->second.scene.get();
}

QImage ProjectPictures::thumbnail(const std::string& base, const QSize& size, int scale,
                                  bool dark) {
    const scene::Scene* shown = scene(base);
    if (shown == nullptr) {
        return {};
    }
    // Drawn twice as large and then halved, which smooths the edges.
    const raster::PictureSize doubled{2 * size.width(), 2 * size.height()};
    raster::Camera camera;
    scene::fit(camera, doubled, *shown);
    raster::Picture large;
    painter_.draw(
        large, *shown, camera, doubled,
        {.labels = false, .grid = false, .compass = false, .dark = dark, .scale = 2 * scale});
    const raster::Picture picture = raster::halved(large);
    return image_of(picture).copy();
}

} // namespace morvane
