// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/dialogs/tool_form.h"

#include <functional>
#include <memory>

namespace morvane {

/// "Labels Rename tool": appends a text to all labels of a file.
class LabelRename : public ToolForm {
    Q_OBJECT

  public:
    /// `input_file` gives the base path that the main window shows.
    LabelRename(Desk& desk, WindowState& state, std::function<QString()> input_file);
    ~LabelRename() override;

  protected:
    void activated() override;

  private:
    struct Controls;

    void browse();
    void rename();

    std::unique_ptr<Controls> ui_;
    std::function<QString()> input_file_;
};

} // namespace morvane
