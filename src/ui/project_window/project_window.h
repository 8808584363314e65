// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/project_table.h"
#include "project/watch_project.h"
#include "ui/dialogs/tool_form.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QCheckBox;
class QLabel;
class QPushButton;
class QTimer;
class QSplitter;
class QTreeWidget;
class QTreeWidgetItem;

namespace morvane {

class ProjectPictures;
class ProjectPlan;

/// A project: what its steps are like, and the commands that make them.
class ProjectWindow : public ToolForm {
    Q_OBJECT

  public:
    ProjectWindow(Desk& desk, WindowState& state);
    ~ProjectWindow() override;

    void open_project(const std::string& file);

  Q_SIGNALS:
    /// The user wants to see the export of a step, given by its base path.
    void export_chosen(const QString& base);

  protected:
    void activated() override;
    void changeEvent(QEvent* event) override;
    bool may_close() override;

  private:
    void add_controls();
    void refresh();
    void show_table();
    void show_thumbnail(QTreeWidgetItem& item);
    void show_thumbnails();
    void show_plan();
    void select_step(const QString& name);
    void build_selected();
    void build_all();
    void build(const std::vector<std::string>& names);
    void watch(bool on);
    void look();
    BuildSurroundings surroundings();
    decltype(BuildOptions::compile) compile();

    QLabel* file_;
    QTreeWidget* steps_;
    ProjectPictures* pictures_;
    ProjectPlan* plan_;
    QLabel* troubles_;
    QSplitter* splitter_;
    QLabel* errors_;
    QPushButton* build_;
    QPushButton* build_all_;
    QCheckBox* watch_;
    QTimer* timer_;
    std::unique_ptr<ProjectTable> table_;
    std::unique_ptr<ProjectWatch> watching_;
};

} // namespace morvane
