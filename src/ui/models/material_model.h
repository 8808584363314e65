// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <vector>

namespace morvane {

/// The material list: the marked materials of the open set, one a row.
class MaterialModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { Number, Color, Highlight, Triangles, Processed, Parameters, ColumnCount };
    /// What rows are sorted by: numbers as numbers.
    static constexpr int sort_role = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows the set's materials; none for a set that cannot be used.
    void show_set(const OpenSet& set);
    /// Row 0 .. of the list became `kind` by `parameters`, or is unprocessed again when `kind` is
    /// empty.
    void show_processed(int row, const QString& kind, const QString& parameters = {});

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    struct Row {
        QString color;
        QString gmax_color;
        QString highlight; // digits, blue green red
        qulonglong triangles = 0;
        QString processed;
        QString parameters;
    };

    QVariant text(const Row& row, int number, int column) const;
    QVariant decoration(const Row& row, int column) const;
    QVariant tool_tip(const Row& row, int column) const;

    std::vector<Row> rows_;
};

/// Sorts the list, and keeps the rows that have a text in one of their columns.
class MaterialFilter : public QSortFilterProxyModel {
    Q_OBJECT

  public:
    explicit MaterialFilter(QObject* parent = nullptr);

    void set_text(const QString& text);

  protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

  private:
    QString text_;
};

/// A material's own colour as gmax shows it, RRGGBB: the list cuts each part off where gmax rounds
/// it. The colour of the list when the material's line cannot be read.
QString gmax_color(const OpenSet& set, const Translation& material);

} // namespace morvane
