// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/desk.h"

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace morvane {

class DocumentModel;
class LibraryBrowser;
class ResultsViewer;
class SourceWindow;
class TextViewer;
class WindowState;
class LabelRename;
class LibraryCompiler;
class ModelModifier;
class ProjectWindow;

/// The forms of the other tools: each made when it is first wanted and kept until the main window
/// closes.
class ToolWindows {
  public:
    ToolWindows(Desk& desk, WindowState& state);
    ToolWindows(const ToolWindows&) = delete;
    ToolWindows& operator=(const ToolWindows&) = delete;
    ~ToolWindows();

    void show_model_modifier();
    LibraryBrowser& show_library_browser();
    /// Called once, when the library browser has been made.
    std::function<void(LibraryBrowser&)> on_library_browser = [](LibraryBrowser&) {};
    /// `input_file` gives the base path that the main window shows.
    void show_label_rename(const std::function<QString()>& input_file);
    void show_library_compiler();
    ProjectWindow& show_project();

    /// The library browser if it has been made yet.
    LibraryBrowser* library_browser() { return library_browser_.get(); }
    ResultsViewer& viewer();
    /// Shows a text file at a line, from 1, in the window's own viewer.
    void show_text(const std::string& path, std::size_t line);

    /// The files of the open set, side by side with what Save would write.
    SourceWindow& source_window(DocumentModel& document);

    /// Closes all of them; false when one refuses.
    bool close_all();

  private:
    TextViewer& own_viewer();

    Desk& desk_;
    WindowState& state_;
    std::unique_ptr<ModelModifier> model_modifier_;
    std::unique_ptr<LibraryBrowser> library_browser_;
    std::unique_ptr<LabelRename> label_rename_;
    std::unique_ptr<LibraryCompiler> library_compiler_;
    std::unique_ptr<ProjectWindow> project_;
    std::unique_ptr<TextViewer> viewer_;
    std::unique_ptr<SourceWindow> source_window_;
};

} // namespace morvane
