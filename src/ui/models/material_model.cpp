// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/material_model.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "source/fields.h"
#include "source/materials.h"
#include "source/open_set.h"
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
            rows_.push_back({shown_text(row.color),
                             gmax_color(set, row),
                             shown_text(row.highlight),
                             count_triangles(set.model, row.block),
                             shown_text(row.processed),
                             {}});
        }
    }
    endResetModel();
}

void MaterialModel::show_processed(int row, const QString& kind, const QString& parameters) {
    if (row < 0 || row >= rowCount()) {
        return;
    }
    Row& shown = rows_.at(static_cast<std::size_t>(row));
    if (shown.processed == kind && shown.parameters == parameters) {
        return;
    }
    shown.processed = kind;
    shown.parameters = parameters;
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
        return row.triangles;
    case Processed:
        return row.processed.isEmpty() ? QString() : QStringLiteral("\u2713 ") + row.processed;
    case Parameters:
        return row.parameters;
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

// Nothing where the list's own tooltip says enough.
QVariant MaterialModel::tool_tip(const Row& row, int column) const {
    if (column == Color) {
        return tr("%1 in this list, %2 in gmax").arg(row.color, row.gmax_color);
    }
    if (!row.processed.isEmpty()) {
        return row.parameters.isEmpty()
                   ? tr("Processed as %1").arg(row.processed)
                   : tr("Processed as %1: %2").arg(row.processed, row.parameters);
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
    case sort_role:
        return text(row, index.row() + 1, index.column());
    case Qt::ToolTipRole:
        return tool_tip(row, index.column());
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
    static constexpr const char* titles[] = {"No.",       "Color",        "Highlight",
                                             "Triangles", "Processed as", "Parameters"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= ColumnCount) {
        return {};
    }
    return QString::fromLatin1(titles[section]);
}

MaterialFilter::MaterialFilter(QObject* parent) : QSortFilterProxyModel(parent) {
    setSortRole(MaterialModel::sort_role);
    setSortCaseSensitivity(Qt::CaseInsensitive);
}

void MaterialFilter::set_text(const QString& text) {
    text_ = text;
    invalidateFilter();
}

bool MaterialFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
    bool accepted = text_.isEmpty();
    for (int column = 0; !accepted && column < sourceModel()->columnCount(); ++column) {
        const QString text = sourceModel()->index(row, column, parent).data().toString();
        accepted = text.contains(text_, Qt::CaseInsensitive);
    }
    return accepted;
}

QString gmax_color(const OpenSet& set, const Translation& material) {
    try {
        const FieldArray fields = split_fields(set.model.line(material.list_line));
        QString color;
        for (const std::size_t part : {1, 2, 3}) {
            const int value = qBound(0, qRound(val(fields[part]) * 255), 255);
            color += QStringLiteral("%1").arg(value, 2, 16, QLatin1Char('0')).toUpper();
        }
        return color;
    } catch (const RuntimeError&) {
        return shown_text(material.color);
    }
}

} // namespace morvane
