#pragma once

#include "source/open_set.h"

#include <QAbstractTableModel>

#include <vector>

namespace morvane {

/// The material list: the marked materials of the open set, one a row.
class MaterialModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { Number, Color, Highlight, Triangles, Processed, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows the set's materials; none for a set that cannot be used.
    void show_set(const OpenSet& set);
    /// Row 0 .. of the list has been processed.
    void show_processed(int row, const QString& kind);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    struct Row {
        QString color;
        QString highlight; // digits, blue green red
        std::size_t triangles = 0;
        QString processed;
    };

    QVariant text(const Row& row, int number, int column) const;
    QVariant decoration(const Row& row, int column) const;

    std::vector<Row> rows_;
};

} // namespace morvane
