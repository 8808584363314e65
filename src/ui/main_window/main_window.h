#pragma once

#include "objects/parameters.h"
#include "recipe/apply_recipe.h"
#include "recipe/record_recipe.h"
#include "source/open_set.h"
#include "system/services.h"
#include "ui/desk.h"
#include "ui/main_window/compiler_watch.h"
#include "ui/main_window/tool_windows.h"
#include "ui/models/material_model.h"
#include "ui/qt_reporter.h"
#include "ui/window_state.h"

#include <QMainWindow>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QDialog;
class QDockWidget;

namespace morvane {

class LibraryDialog;

/// The main window: the steps from Open to Save, the message log, and the way to the other tools.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    explicit MainWindow(Desk& desk, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Puts a base path into the input box and opens the set; false when it stays closed.
    bool open_base(const QString& base);
    /// The same for a base path, one of the set's files, or the recipe beside them, which is then
    /// applied.
    void open_file(const QString& path);

    /// Puts a view into the middle, between the steps on the left and the panels, which go below
    /// it. The window takes it. To be called before panels are added.
    void set_picture(QWidget& picture);
    /// Adds a panel as a tab beside the messages, with its entry in the View menu. The window takes
    /// `content`. Panels must be added before the window is shown; `name` is what the kept layout
    /// knows the panel by.
    QDockWidget& add_panel(QWidget& content, const QString& name, const QString& title);

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    struct Controls;

    static constexpr int layout_version = 1; // another one ignores layouts that were kept before

    // main_window.cpp
    void run(const std::function<void()>& command);
    void prepare_controls();
    void connect_buttons();
    void connect_menus();
    void connect_changes();
    void connect_colors();
    void load_settings();
    void write_settings();
    void update_par_line();
    void update_title();
    Services services() { return {desk_.disk, reporter_}; }
    Kind kind() const;
    std::string output_base() const;
    QString output_folder() const;

    // main_window_layout.cpp
    void prepare_docks();
    void add_view_action(QDockWidget& dock);
    void restore_layout();
    void give_first_sizes();
    QString layout_key() const;
    void keep_layout();
    void reset_layout();

    // main_window_set.cpp
    void browse();
    void open() { open_set(); }
    bool open_set();
    void show_opened_set();
    void show_selection();
    void save();
    bool may_replace_files();
    bool may_leave_set();
    bool has_unsaved_work() const;
    void show_status();
    void show_recent();
    /// Row of the translation table that is selected, from 1; 0 when none is.
    std::size_t selected_row() const;

    // main_window_process.cpp
    void show_parameters();
    void show_dialog(QDialog* dialog);
    void show_library_dialog();
    void process();
    void count_work(std::size_t row);
    void show_processed(std::size_t row);
    void show_counters();
    void select_next_unprocessed();

    // main_window_recipes.cpp
    void choose_recipe();
    void apply_recipe_file(const QString& path);
    void carry_out(const Recipe& recipe, const RecipePlan& plan);
    void save_recipe_file();
    void show_errors(const std::vector<std::string>& errors);

    // main_window_tools.cpp
    void connect_tools();
    void backup();
    void restore_backup();
    void compile();
    bool may_compile();
    void show_search_results();
    void copy_messages();
    void show_about();

    Desk& desk_;
    std::unique_ptr<Controls> ui_;
    QtReporter reporter_;
    WindowState state_;
    MaterialModel materials_;
    OpenSet set_;
    Parameters parameters_;
    std::vector<std::string> effects_; // the names offered, from "fx_list.txt"
    std::vector<MadeMaterial> made_;   // what was processed since Open, in its order
    std::size_t unsaved_work_ = 0;     // materials processed since Open or Save
    ToolWindows tools_;
    CompilerWatch compiler_;
    QByteArray first_layout_; // of the docks, as it is before anybody has moved one
};

} // namespace morvane
