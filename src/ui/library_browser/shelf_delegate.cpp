// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library_browser/shelf_delegate.h"

#include "ui/library_browser/shelf_pictures.h"
#include "ui/models/object_model.h"

#include <QApplication>
#include <QPainter>

namespace morvane {

namespace {

constexpr int item_margin = 5;

// One line of text below the picture, cut off with an ellipsis.
void draw_text_line(QPainter& painter, QRect place, int line, const QString& text) {
    const QFontMetrics metrics = painter.fontMetrics();
    place.setTop(place.top() + line * metrics.height());
    place.setHeight(metrics.height());
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     metrics.elidedText(text, Qt::ElideRight, place.width()));
}

} // namespace

ShelfDelegate::ShelfDelegate(ShelfPictures& pictures, QObject* parent)
    : QStyledItemDelegate(parent), pictures_(pictures) {}

QSize ShelfDelegate::sizeHint(const QStyleOptionViewItem& option,
                              const QModelIndex& /*index*/) const {
    return {picture_size.width() + 2 * item_margin,
            picture_size.height() + 3 * item_margin + 2 * option.fontMetrics.height()};
}

void ShelfDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    const QStyle* style = option.widget != nullptr ? option.widget->style() : QApplication::style();
    QStyleOptionViewItem panel = option;
    panel.showDecorationSelected = true; // otherwise a list of icons shows no selection
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &panel, painter, option.widget);
    const QRect inside = option.rect.adjusted(item_margin, item_margin, -item_margin, -item_margin);
    const QRect picture(inside.topLeft(), picture_size);
    const auto* thumbnail =
        pictures_.find(index.siblingAtColumn(ObjectModel::File).data().toString(),
                       index.siblingAtColumn(ObjectModel::Identifier).data().toString());
    painter->save();
    if (thumbnail != nullptr) {
        painter->drawImage(picture, thumbnail->image);
    } else {
        painter->fillRect(picture, option.palette.alternateBase());
    }
    const bool selected = (option.state & QStyle::State_Selected) != 0;
    painter->setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    const QRect text = inside.adjusted(0, picture_size.height() + item_margin, 0, 0);
    draw_text_line(*painter, text, 0, index.siblingAtColumn(ObjectModel::Name).data().toString());
    draw_text_line(*painter, text, 1, thumbnail != nullptr ? thumbnail->measures : QString());
    painter->restore();
}

} // namespace morvane
