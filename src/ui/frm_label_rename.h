#pragma once

#include "ui/qt_reporter.h"
#include "ui/tool_form.h"

#include <functional>
#include <memory>

namespace morvane {

namespace Ui {
class frmLabelRename;
}

/// "Labels Rename tool": appends a text to all labels of a file.
class frmLabelRename : public ToolForm {
    Q_OBJECT

  public:
    /// `input_file` gives the base path that the main window shows.
    frmLabelRename(Desk& desk, WindowState& state, std::function<QString()> input_file);
    ~frmLabelRename() override;

  protected:
    void activated() override;

  private:
    void browse();
    void rename();

    std::unique_ptr<Ui::frmLabelRename> ui_;
    QtReporter reporter_;
    std::function<QString()> input_file_;
};

} // namespace morvane
