// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/scene_view/object_drag.h"

#include <QMimeData>
#include <QStringList>

namespace morvane {

QMimeData* object_mime(const DraggedObject& object) {
    auto* mime = new QMimeData;
    mime->setData(QString::fromLatin1(object_mime_type),
                  (object.identifier + QLatin1Char('\n') + object.scale).toUtf8());
    mime->setText(object.identifier);
    return mime;
}

std::optional<DraggedObject> dragged_object(const QMimeData* mime) {
    if (mime == nullptr || !mime->hasFormat(QString::fromLatin1(object_mime_type))) {
        return std::nullopt;
    }
    const QStringList parts = QString::fromUtf8(mime->data(QString::fromLatin1(object_mime_type)))
                                  .split(QLatin1Char('\n'));
    return parts.size() == 2 ? std::optional(DraggedObject{parts[0], parts[1]}) : std::nullopt;
}

} // namespace morvane
