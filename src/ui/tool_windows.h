#pragma once

#include "ui/desk.h"

#include <QString>

#include <functional>
#include <memory>

namespace morvane {

class LibView;
class ResultsViewer;
class TextViewer;
class WindowState;
class frmLabelRename;
class frmLibComp;
class frmModel;

/// The forms of the other tools: each made when it is first wanted and kept until the main window
/// closes.
class ToolWindows {
  public:
    ToolWindows(Desk& desk, WindowState& state);
    ToolWindows(const ToolWindows&) = delete;
    ToolWindows& operator=(const ToolWindows&) = delete;
    ~ToolWindows();

    void show_model();
    LibView& show_library();
    /// `input_file` gives the base path that the main window shows.
    void show_labels(const std::function<QString()>& input_file);
    void show_compiler();

    /// The library browser if it has been made yet.
    LibView* library() { return library_.get(); }
    ResultsViewer& viewer();

    /// Closes all of them; false when one refuses.
    bool close_all();

  private:
    Desk& desk_;
    WindowState& state_;
    std::unique_ptr<frmModel> model_;
    std::unique_ptr<LibView> library_;
    std::unique_ptr<frmLabelRename> labels_;
    std::unique_ptr<frmLibComp> compiler_;
    std::unique_ptr<TextViewer> viewer_;
};

} // namespace morvane
