// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/problem_model.h"

#include "base/paths.h"
#include "ui/qt_text.h"

#include <QApplication>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

QIcon severity_icon(Severity severity) {
    static constexpr QStyle::StandardPixmap icons[] = {QStyle::SP_MessageBoxInformation,
                                                       QStyle::SP_MessageBoxWarning,
                                                       QStyle::SP_MessageBoxCritical};
    return QApplication::style()->standardIcon(icons[static_cast<std::size_t>(severity)]);
}

} // namespace

QString counted(Severity severity, int count) {
    static constexpr const char* words[] = {"note", "warning", "error"};
    const QString word = QString::fromLatin1(words[static_cast<std::size_t>(severity)]);
    return QStringLiteral("%1 %2%3").arg(count).arg(word,
                                                    count == 1 ? QString() : QStringLiteral("s"));
}

void ProblemModel::show(std::vector<Problem> problems) {
    if (problems == problems_) {
        return; // so that what is selected stays
    }
    beginResetModel();
    problems_ = std::move(problems);
    endResetModel();
}

int ProblemModel::count_of(Severity severity) const {
    return static_cast<int>(
        std::count_if(problems_.begin(), problems_.end(),
                      [severity](const Problem& problem) { return problem.severity == severity; }));
}

int ProblemModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(problems_.size());
}

int ProblemModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString ProblemModel::text(const Problem& problem, int column) const {
    switch (column) {
    case Text:
        return shown_text(problem.text);
    case Place: {
        const QString file = shown_text(file_name_part(problem.path));
        return problem.line == 0 ? file : QStringLiteral("%1:%2").arg(file).arg(problem.line);
    }
    case Material:
        return problem.row ? QString::number(*problem.row) : QString();
    case Code:
        return shown_text(problem.code);
    default:
        return {};
    }
}

QVariant ProblemModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Problem& shown = problem(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(shown, index.column());
    case Qt::ToolTipRole:
        return index.column() == Place ? shown_text(shown.path) : shown_text(shown.text);
    case Qt::DecorationRole:
        return index.column() == Text ? QVariant(severity_icon(shown.severity)) : QVariant();
    case Qt::AccessibleTextRole:
        return index.column() == Text ? QVariant(counted(shown.severity, 1).mid(2) +
                                                 QStringLiteral(": ") + shown_text(shown.text))
                                      : QVariant(text(shown, index.column()));
    default:
        return {};
    }
}

QVariant ProblemModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static constexpr const char* titles[] = {"Problem", "Place", "Material", "Code"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= ColumnCount) {
        return {};
    }
    return QString::fromLatin1(titles[section]);
}

void ProblemFilter::set_shown(Severity severity, bool shown) {
    shown_.at(static_cast<std::size_t>(severity)) = shown;
    invalidateFilter();
}

bool ProblemFilter::filterAcceptsRow(int row, const QModelIndex& /*parent*/) const {
    const auto* problems = qobject_cast<const ProblemModel*>(sourceModel());
    return problems == nullptr ||
           shown_.at(static_cast<std::size_t>(problems->problem(row).severity));
}

} // namespace morvane
