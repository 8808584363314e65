// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library_browser/shelf_model.h"

#include "base/numbers.h"
#include "ui/qt_text.h"

namespace morvane {

DraggedObject ShelfModel::object(const QModelIndex& index) const {
    const double scale =
        index.siblingAtColumn(ObjectModel::Scale).data(ObjectModel::sort_role).toDouble();
    return {index.siblingAtColumn(ObjectModel::Identifier).data().toString(),
            shown_text(format_decimal(scale > 0 ? scale : 1, 1, 6))};
}

Qt::ItemFlags ShelfModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags plain = ObjectFilter::flags(index);
    return index.isValid() ? plain | Qt::ItemIsDragEnabled : plain;
}

QStringList ShelfModel::mimeTypes() const {
    return {QString::fromLatin1(object_mime_type)};
}

QMimeData* ShelfModel::mimeData(const QModelIndexList& indexes) const {
    return indexes.isEmpty() ? nullptr : object_mime(object(indexes.front()));
}

} // namespace morvane
