// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/inspector.h"
#include "ui/dialogs/tool_form.h"
#include "ui/models/object_model.h"

#include <QElapsedTimer>
#include <QPointer>

#include <memory>
#include <string>
#include <vector>

class QFileSystemModel;

namespace morvane {

class Shelf;

/// "Library Browser": reports on BGL files, finds library objects, widens the bounds of libraries.
class LibraryBrowser : public ToolForm {
    Q_OBJECT

  public:
    LibraryBrowser(Desk& desk, WindowState& state);
    ~LibraryBrowser() override;

    /// Shows the folder of a file and selects the file in it.
    void select_file(const QString& path);

  Q_SIGNALS:
    /// An identifier went to the clipboard, in the form that a placement takes.
    void identifier_copied(const QString& identifier);
    /// An object is to be put in the place of the selected materials.
    void object_chosen(const QString& identifier, const QString& scale);
    /// Files in which objects were found.
    void libraries_found(const QStringList& paths);
    /// A compressed library was unpacked; this is what it holds.
    void library_unpacked(const std::string& path, std::shared_ptr<const std::string> bytes);

  protected:
    void activated() override;
    bool may_close() override;
    void leaving() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Controls;

    class Busy;
    class Searching;

    // library_browser.cpp
    void restore_parts();
    void keep_parts();
    void remember_folder();
    void prepare_report();
    void prepare_objects();
    void connect_buttons();
    void browse();
    void copy_identifier();
    void append_report(std::string_view text);

    // library_browser_files.cpp
    void prepare_files();
    void show_folder(const QString& folder);
    void show_files_of(const QString& folder);
    void show_all_files(bool all);
    void show_selected_file();
    void refresh_files();
    QString folder() const;
    std::string selected_path() const;

    // library_browser_commands.cpp
    void analyse();
    void search();
    void make_file_universal();
    void revert_file();
    void change_file(bool (*change)(const Services& services, const std::string& path,
                                    const std::string& program_folder));
    void show_report();
    void show_objects(const QStringList& files);
    void keep_unpacked(const std::string& path, const std::string& unpacked);
    void begin_search();
    void end_search();
    bool show_progress(std::string_view what, std::size_t done, std::size_t total);
    void repaint_now_and_then();

    std::unique_ptr<Controls> ui_;
    Inspector inspector_;
    QFileSystemModel* folders_;
    QFileSystemModel* files_;
    ObjectModel objects_;
    ObjectFilter shown_objects_;
    Shelf* shelf_ = nullptr;
    QString pending_report_; // text of the report that is not in tb1 yet
    QElapsedTimer repainted_;
    QString kept_folder_;    // as "libview.ini" has it
    bool remembers_ = false; // the first folder, which nobody chose, is not kept
    bool searching_ = false;
    bool stop_wanted_ = false;
    std::vector<QPointer<QWidget>> held_windows_; // other windows, disabled during a search
};

} // namespace morvane
