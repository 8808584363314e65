#include "ui/models/material_model.h"

#include "source/materials.h"
#include "source/open_source_set.h"
#include "ui/qt_text.h"
#include "ui/widgets/color_swatch.h"
#include "ui/widgets/platform_color.h"

#include <QGuiApplication>
#include <QIcon>

namespace morvane {

void MaterialModel::show_set(const OpenSet& set) {
    beginResetModel();
    rows_.clear();
    if (set.opened) {
        for (const Translation& row : set.translations) {
            rows_.push_back({shown_text(row.color), shown_text(row.highlight),
                             count_triangles(set.model, row.block), shown_text(row.processed)});
        }
    }
    endResetModel();
}

void MaterialModel::show_processed(int row, const QString& kind) {
    if (row < 0 || row >= rowCount()) {
        return;
    }
    rows_.at(static_cast<std::size_t>(row)).processed = kind;
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

int MaterialModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int MaterialModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant MaterialModel::text(const Row& row, int number, int column) const {
    switch (column) {
    case Number:
        return number;
    case Color:
        return row.color;
    case Highlight:
        return shown_text(highlight_color_name(row.highlight.toStdString()));
    case Triangles:
        return static_cast<qulonglong>(row.triangles);
    case Processed:
        return row.processed.isEmpty() ? QString() : QStringLiteral("\u2713 ") + row.processed;
    default:
        return {};
    }
}

QVariant MaterialModel::decoration(const Row& row, int column) const {
    constexpr int side = 14;
    if (column == Color) {
        return color_patch(rgb_color(row.color.toStdString()), side, qGuiApp->devicePixelRatio());
    }
    if (column == Highlight) {
        const auto color = platform_color(row.highlight.toStdString());
        return color_patch(color.value_or(QColor()), side, qGuiApp->devicePixelRatio());
    }
    return {};
}

QVariant MaterialModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row& row = rows_.at(static_cast<std::size_t>(index.row()));
    const bool is_number = index.column() == Number || index.column() == Triangles;
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.row() + 1, index.column());
    case Qt::DecorationRole:
        return decoration(row, index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            Qt::Alignment((is_number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter));
    default:
        return {};
    }
}

QVariant MaterialModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static constexpr const char* titles[] = {"No.", "Color", "Highlight", "Triangles",
                                             "Processed as"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= ColumnCount) {
        return {};
    }
    return QString::fromLatin1(titles[section]);
}

} // namespace morvane
