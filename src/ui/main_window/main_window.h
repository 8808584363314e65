// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"
#include "project/live_set.h"
#include "recipe/apply_recipe.h"
#include "system/services.h"
#include "ui/desk.h"
#include "ui/main_window/compiler_watch.h"
#include "ui/main_window/tool_windows.h"
#include "ui/models/document_model.h"
#include "ui/models/material_model.h"
#include "ui/qt_reporter.h"
#include "ui/widgets/command_progress.h"
#include "ui/window_state.h"

#include <QKeySequence>
#include <QList>
#include <QMainWindow>

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

class QDialog;
class QDockWidget;
class QListWidget;
class QTimer;

namespace morvane {

class CompilerPane;
class DocumentViews;
class ExportBar;
class LibraryBrowser;
class ScenePanel;
class ScenePresenter;

/// The main window: the steps from Open to Save, the message log, and the way to the other tools.
/// It is a view of the document and starts its commands.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    explicit MainWindow(Desk& desk, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Puts a base path into the input box and opens the set; false when it stays closed.
    bool open_base(const QString& base);
    /// The same for a base path, one of the set's files, or the recipe beside them, which is then
    /// applied.
    void open_file(const QString& given);

    DocumentModel& document() { return document_; }
    /// Kind of object that is chosen for the next Process.
    Kind kind() const;
    /// Rows of the translation table that are selected, from 1, ascending.
    std::vector<std::size_t> selected_rows() const;
    void select_row(std::size_t row);

    /// The keys of Redo: Ctrl+Shift+Z everywhere, Ctrl+Y too where people expect it.
    static QList<QKeySequence> redo_keys(bool on_windows);

    /// Puts a view into the middle, between the steps on the left and the panels, which go below
    /// it. The window takes it. To be called before the window is shown.
    void set_picture(QWidget& picture);
    /// Adds a panel as a tab beside the messages, with its entry in the View menu. The window takes
    /// `content`. Panels must be added before the window is shown; `name` is what the kept layout
    /// knows the panel by.
    QDockWidget& add_panel(QWidget& content, const QString& name, const QString& title);

  Q_SIGNALS:
    /// Other materials are selected, or none.
    void selection_changed();
    /// Another kind of object is chosen.
    void kind_changed();

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Controls;

    static constexpr int layout_version = 1; // another one ignores layouts that were kept before

    // main_window.cpp
    void run(const std::function<void()>& command);
    void prepare_controls();
    void connect_changes();
    void connect_document();
    void accept_drops();
    void load_settings();
    void write_settings();
    void update_par_line();
    void update_title();
    Services services() { return {desk_.disk, reporter_}; }
    const OpenSet& set() const { return document_.set(); }
    std::string output_base() const;
    QString output_folder() const;

    // main_window_menus.cpp
    void connect_buttons();
    void connect_menus();
    void connect_colors();
    void connect_tools();
    void show_about();
    void show_guide();
    void show_keys();

    // main_window_layout.cpp
    void prepare_docks();
    void add_view_action(QDockWidget& dock);
    void restore_layout();
    int steps_width() const;
    void give_first_sizes();
    QString layout_key() const;
    void keep_layout();
    void reset_layout();

    // main_window_picture.cpp
    void prepare_picture();
    void keep_picture();
    void connect_browser(LibraryBrowser& browser);
    void add_libraries(const QStringList& paths);
    void point_at_line(const QString& text, std::size_t line);
    void show_line(std::size_t line);
    void place_object(const QString& identifier, const QString& scale);

    // main_window_set.cpp
    void browse();
    void open() { open_set(); }
    bool open_set();
    void show_opened_set();
    void save();
    bool may_replace_files();
    bool may_leave_set();
    void show_status();
    void show_recent();

    // main_window_materials.cpp
    void prepare_materials();
    void fit_columns();
    void fit_parameters(int width);
    void show_selection();
    void note_block(std::size_t row);
    void show_row(std::size_t row);
    void show_made(std::size_t row);
    void show_counters();
    void select_next_unprocessed();
    void select_like(MaterialModel::Column column);
    void show_material_menu(const QPoint& place);
    void copy_rows();
    void show_source();
    /// The first row that is selected; 0 when none is.
    std::size_t selected_row() const;

    // main_window_process.cpp
    void show_parameters();
    void show_dialog(QDialog* dialog);
    template <typename Dialog, typename Edited, typename Part>
    void preview(Dialog* dialog, Edited edited, Part Parameters::*part);
    void show_library_dialog();
    void process();
    void process_rows(const std::vector<std::size_t>& rows);
    bool may_process(std::size_t row);
    void note_late_work();

    // main_window_history.cpp
    void prepare_history();
    void show_history();
    void undo();
    void redo();

    // main_window_recipes.cpp
    void choose_recipe();
    void apply_recipe_file(const QString& path);
    void save_recipe_file();
    void show_errors(const std::vector<std::string>& errors);

    // main_window_loop.cpp
    void prepare_loop();
    void prepare_compiler_pane();
    void follow_options();
    void follow_export();
    void look_at_export();
    void apply_assignments();
    void reload_export(const std::function<LiveNews()>& command);
    void select_rows(const std::vector<std::size_t>& rows);
    void show_export_state();
    void back_up_and_compile_on_save();
    void compile();
    void start_compiler();
    void open_project();

    // main_window_tools.cpp
    void backup();
    void restore_backup();
    void show_restored();
    void compile_and_view();
    bool may_compile();
    void show_search_results();
    void copy_messages();

    Desk& desk_;
    std::unique_ptr<Controls> ui_;
    CommandProgress progress_;
    QtReporter reporter_;
    WindowState state_;
    DocumentModel document_;
    MaterialModel materials_;
    MaterialFilter shown_materials_;
    Parameters edited_;                // what the open dialog edits
    std::vector<std::string> effects_; // the names offered, from "fx_list.txt"
    std::set<std::size_t> noted_rows_; // whose blocks were noted since Open
    bool parameters_set_ = false;      // light parameters, since Open
    bool columns_kept_ = false;        // the user has given the list's columns their widths
    bool fitting_columns_ = false;
    bool late_work_noted_ = false; // work after Save, since Open
    ToolWindows tools_;
    std::unique_ptr<DocumentViews> views_;
    CompilerWatch compiler_;
    QListWidget* history_ = nullptr;
    ScenePanel* panel_ = nullptr;
    ScenePresenter* picture_ = nullptr;
    QAction* show_picture_ = nullptr;
    std::size_t pointed_line_ = 0; // of the model file, clicked in the picture; 0: none
    LiveSet live_;
    QTimer* export_timer_ = nullptr;
    ExportBar* export_bar_ = nullptr;
    QAction* watch_export_ = nullptr;
    QAction* apply_and_save_ = nullptr;
    QAction* compile_after_save_ = nullptr;
    QAction* unique_labels_ = nullptr;
    CompilerPane* compiler_pane_ = nullptr;
    QDockWidget* compiler_dock_ = nullptr;
    QByteArray first_layout_; // of the docks, as it is before anybody has moved one
};

} // namespace morvane
