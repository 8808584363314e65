// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/object_model.h"
#include "ui/scene_view/object_drag.h"

#include <QMimeData>

namespace morvane {

/// The objects as the shelf shows them: filtered and sorted on their own, and each can be dragged
/// onto a material.
class ShelfModel : public ObjectFilter {
    Q_OBJECT

  public:
    using ObjectFilter::ObjectFilter;

    /// The object of a row, with the scale that it was designed for: "1.0" when it says none.
    DraggedObject object(const QModelIndex& index) const;

    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
};

} // namespace morvane
