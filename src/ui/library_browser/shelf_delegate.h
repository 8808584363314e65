// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>
#include <QStyledItemDelegate>

namespace morvane {

class ShelfPictures;

/// Draws an object of the shelf: its picture, name and measures. A picture that is not made yet is
/// an empty frame.
class ShelfDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    static constexpr QSize picture_size{150, 112};

    ShelfDelegate(ShelfPictures& pictures, QObject* parent);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

  private:
    ShelfPictures& pictures_;
};

} // namespace morvane
