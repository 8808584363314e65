// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library_browser/shelf_pictures.h"

#include "base/guid128.h"
#include "scene/draw_shape.h"
#include "ui/qt_text.h"
#include "ui/scene_view/view_habits.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

constexpr int kept_pictures = 600;
constexpr std::size_t max_wishes = 120; // older ones have been scrolled away
constexpr qint64 stretch_ms = 15;       // of work before events have their turn

QString picture_key(const QString& file, const QString& identifier) {
    return file + QLatin1Char('\n') + identifier;
}

} // namespace

ShelfPictures::ShelfPictures(Disk& disk, QObject* parent)
    : QObject(parent), files_(disk), kept_(kept_pictures) {
    timer_.setInterval(0);
    connect(&timer_, &QTimer::timeout, this, &ShelfPictures::work);
}

const ShelfPictures::Thumbnail* ShelfPictures::find(const QString& file,
                                                    const QString& identifier) {
    if (const Thumbnail* known = kept_.object(picture_key(file, identifier))) {
        return known;
    }
    const auto same = [&](const Wish& wish) {
        return wish.file == file && wish.identifier == identifier;
    };
    if (std::none_of(wishes_.begin(), wishes_.end(), same)) {
        wishes_.push_back({file, identifier});
        if (wishes_.size() > max_wishes) {
            wishes_.erase(wishes_.begin());
        }
        timer_.start();
    }
    return nullptr;
}

scene::Shape ShelfPictures::shape(const QString& file, const QString& identifier) {
    const auto guid = parse_identifier(code_bytes(identifier));
    return guid ? files_.read(path_bytes(file), *guid) : scene::Shape();
}

void ShelfPictures::set_look(const QSize& size, qreal scale, bool dark) {
    if (size_ != size || scale_ != scale || dark_ != dark) {
        size_ = size;
        scale_ = scale;
        dark_ = dark;
        kept_.clear();
    }
}

void ShelfPictures::forget() {
    files_.forget();
    kept_.clear();
    wishes_.clear();
}

void ShelfPictures::work() {
    QElapsedTimer watch;
    watch.start();
    while (!wishes_.empty() && watch.elapsed() < stretch_ms) {
        const Wish wish = wishes_.back();
        wishes_.pop_back();
        kept_.insert(picture_key(wish.file, wish.identifier), new Thumbnail(make(wish)));
        ++made_count_;
    }
    if (wishes_.empty()) {
        timer_.stop();
    }
    Q_EMIT made();
}

ShelfPictures::Thumbnail ShelfPictures::make(const Wish& wish) {
    const scene::Shape shape = this->shape(wish.file, wish.identifier);
    const int scale = std::max(1, static_cast<int>(std::lround(scale_)));
    const raster::Picture picture =
        scene::thumbnail(shape, {size_.width(), size_.height()}, {.dark = dark_, .scale = scale});
    Thumbnail thumbnail{image_of(picture).copy(), shown_text(scene::measures_text(shape)),
                        shape.trouble.empty()};
    thumbnail.image.setDevicePixelRatio(scale_);
    return thumbnail;
}

} // namespace morvane
