// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/library_objects.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <string>
#include <vector>

namespace morvane {

/// The library objects that the last report listed.
class ObjectModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { Name, Identifier, Scale, Type, Power, File, ColumnCount };
    /// What rows are sorted by: numbers as numbers.
    static constexpr int sort_role = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    void clear();
    void add(const std::string& file, const std::vector<LibraryObject>& objects);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    struct Row {
        QString name, identifier, file;
        double scale = 0; // 0 = none
        int type = 0;
        int power = 0;
    };

    std::vector<Row> rows_;
};

/// Sorts, and keeps the rows that have a text in their name, identifier or file.
class ObjectFilter : public QSortFilterProxyModel {
    Q_OBJECT

  public:
    explicit ObjectFilter(QObject* parent = nullptr);

    void set_text(const QString& text);

  protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

  private:
    QString text_;
};

} // namespace morvane
