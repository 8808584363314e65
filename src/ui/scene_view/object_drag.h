// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

class QMimeData;

namespace morvane {

/// An object of a library on its way from the shelf to a material.
struct DraggedObject {
    QString identifier; // in the form that a placement takes
    QString scale;      // as it was designed
};

inline constexpr char object_mime_type[] = "application/x-morvane-library-object";

/// For a drag; the caller owns it. As text it is the identifier.
QMimeData* object_mime(const DraggedObject& object);

/// std::nullopt when something else is dragged.
std::optional<DraggedObject> dragged_object(const QMimeData* mime);

} // namespace morvane
