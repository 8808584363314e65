// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/object_model.h"

#include "base/numbers.h"
#include "bgl/report.h"
#include "ui/qt_text.h"

namespace morvane {

void ObjectModel::clear() {
    beginResetModel();
    rows_.clear();
    endResetModel();
}

void ObjectModel::add(const std::string& file, const std::vector<LibraryObject>& objects) {
    if (objects.empty()) {
        return;
    }
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(objects.size()) - 1);
    const QString shown_file = shown_text(file);
    for (const LibraryObject& object : objects) {
        rows_.push_back({code_text(object_name(object)), shown_text(guid_text(object.guid)),
                         shown_file, object.stored_scale == 0 ? 0 : 65536.0 / object.stored_scale,
                         object.type, object.image_power});
    }
    endInsertRows();
}

int ObjectModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ObjectModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ObjectModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row& row = rows_.at(static_cast<std::size_t>(index.row()));
    const bool is_number = index.column() >= Scale && index.column() <= Power;
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(
            Qt::Alignment((is_number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter));
    }
    if (role != Qt::DisplayRole && role != sort_role) {
        return {};
    }
    switch (index.column()) {
    case Name:
        return row.name;
    case Identifier:
        return row.identifier;
    case Scale:
        return role == sort_role ? QVariant(row.scale)
                                 : QVariant(shown_text(format_decimal(row.scale, 1, 3)));
    case Type:
        return row.type;
    case Power:
        return row.power;
    case File:
        return row.file;
    default:
        return {};
    }
}

QVariant ObjectModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static constexpr const char* titles[] = {"Name", "Identifier", "Scale",
                                             "Type", "Power",      "File"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= ColumnCount) {
        return {};
    }
    return QString::fromLatin1(titles[section]);
}

ObjectFilter::ObjectFilter(QObject* parent) : QSortFilterProxyModel(parent) {
    setSortRole(ObjectModel::sort_role);
    setSortCaseSensitivity(Qt::CaseInsensitive);
}

void ObjectFilter::set_text(const QString& text) {
    text_ = text;
    invalidateFilter();
}

bool ObjectFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
    if (text_.isEmpty()) {
        return true;
    }
    for (const int column : {ObjectModel::Name, ObjectModel::Identifier, ObjectModel::File}) {
        const QString text = sourceModel()->index(row, column, parent).data().toString();
        if (text.contains(text_, Qt::CaseInsensitive)) {
            return true;
        }
    }
    return false;
}

} // namespace morvane
