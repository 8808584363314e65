// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "problems/problem.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <array>
#include <cstddef>
#include <vector>

namespace morvane {

/// The problems of the document, worst first, one a row.
class ProblemModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { Text, Place, Material, Code, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void show(std::vector<Problem> problems);
    const Problem& problem(int row) const { return problems_.at(static_cast<std::size_t>(row)); }
    int count_of(Severity severity) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    QString text(const Problem& problem, int column) const;

    std::vector<Problem> problems_;
};

/// Keeps the problems of the severities that are wanted.
class ProblemFilter : public QSortFilterProxyModel {
    Q_OBJECT

  public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void set_shown(Severity severity, bool shown);

  protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

  private:
    std::array<bool, 3> shown_{true, true, true}; // by severity
};

/// "2 errors", "1 warning".
QString counted(Severity severity, int count);

} // namespace morvane
