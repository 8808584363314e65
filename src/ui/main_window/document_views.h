// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "problems/problem.h"
#include "ui/desk.h"
#include "ui/widgets/quiet_timer.h"

#include <QObject>

#include <cstddef>
#include <string>

class QDockWidget;
class QMenu;

namespace morvane {

class CodePanel;
class DocumentModel;
class MainWindow;
class ProblemPanel;
class ToolWindows;

/// The main window's views of the document that only look at it: the list of problems, the code of
/// the selected material, and the source.
class DocumentViews : public QObject {
    Q_OBJECT

  public:
    /// Adds the panels to the window, and the commands for problems to its Edit menu.
    DocumentViews(MainWindow& window, Desk& desk, ToolWindows& tools, QMenu& edit_menu);

    /// Shows the source at the line that selects a material, from 1.
    void show_source(std::size_t row);

  private:
    void add_commands(QMenu& edit_menu);
    void connect_document();
    void check_soon();
    int expected_ms() const;
    void show_progress(std::size_t done, std::size_t total);
    void check();
    void show_problem(const Problem& problem);
    void select_material_of(const Problem& problem);
    void follow_problem(const Problem& problem);
    void switch_code(const std::string& code, bool off);
    void show_code();

    MainWindow& window_;
    Desk& desk_;
    ToolWindows& tools_;
    DocumentModel& document_;
    ProblemPanel* problems_;
    QDockWidget* problem_dock_ = nullptr;
    CodePanel* code_;
    QDockWidget* code_dock_ = nullptr;
    bool code_seen_ = false; // its tab is in front
    QuietTimer wait_;
    qint64 line_ns_ = 1000; // what a line of the set has taken in the last check
    QuietReporter silent_;
};

} // namespace morvane
