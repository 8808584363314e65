// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/problem_model.h"

#include <QWidget>

#include <string>
#include <vector>

class QToolButton;
class QTreeView;

namespace morvane {

/// The list of problems with a button for each severity.
class ProblemPanel : public QWidget {
    Q_OBJECT

  public:
    explicit ProblemPanel(QWidget* parent = nullptr);

    /// Shows the problems, worst first, and the codes that are switched off. The problem that is
    /// selected stays selected when it is still there.
    void show_problems(std::vector<Problem> problems, const std::vector<std::string>& off);
    /// "Problems", with what there is of errors and warnings.
    QString title() const;
    /// Selects the next problem that is shown, or the one before; after the last comes the first.
    void step(int by);

  Q_SIGNALS:
    /// A problem was clicked, or Enter pressed on it.
    void chosen(const Problem& problem);
    /// A problem was stepped to.
    void stepped_to(const Problem& problem);
    /// The user switches a code off, or on again.
    void switch_wanted(const std::string& code, bool off);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QToolButton* add_button(Severity severity, const char* name);
    void update_buttons();
    void select_again(const Problem& problem);
    const Problem* current() const;
    void choose(const QModelIndex& index);
    void show_menu(const QPoint& place);
    void copy();

    ProblemModel problems_;
    ProblemFilter shown_;
    QTreeView* list_;
    std::vector<QToolButton*> buttons_; // errors first
    std::vector<std::string> off_;
};

} // namespace morvane
