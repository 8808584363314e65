// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/object_files.h"

#include <QCache>
#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace morvane {

/// Pictures of library objects, made while nothing else is to be done.
class ShelfPictures : public QObject {
    Q_OBJECT

  public:
    struct Thumbnail {
        QImage image;
        QString measures; // or up to which command the object was understood
        bool complete = true;
    };

    explicit ShelfPictures(Disk& disk, QObject* parent = nullptr);

    /// The picture of an object; null when it is not made yet. It is made soon: what was asked for
    /// last comes first.
    const Thumbnail* find(const QString& file, const QString& identifier);
    /// The object itself, read at once.
    scene::Shape shape(const QString& file, const QString& identifier);
    /// Size in pixels, and colours. Pictures of another look are dropped.
    void set_look(const QSize& size, qreal scale, bool dark);
    /// The files may have changed.
    void forget();
    /// What a compressed file holds.
    void keep_unpacked(const std::string& path, std::shared_ptr<const std::string> bytes) {
        files_.keep_unpacked(path, std::move(bytes));
    }
    /// How many pictures have been made so far.
    int made_count() const { return made_count_; }

  Q_SIGNALS:
    void made();

  private:
    struct Wish {
        QString file;
        QString identifier;
    };

    void work();
    Thumbnail make(const Wish& wish);

    scene::ObjectFiles files_;
    QCache<QString, Thumbnail> kept_;
    std::vector<Wish> wishes_; // the last is the next
    QTimer timer_;
    QSize size_;
    qreal scale_ = 1;
    bool dark_ = false;
    int made_count_ = 0;
};

} // namespace morvane
