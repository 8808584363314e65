// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/results_viewer.h"
#include "ui/dialogs/tool_form.h"

#include <cstddef>
#include <memory>
#include <string>

class QLabel;
class QPlainTextEdit;
class QTimer;

namespace morvane {

/// The window's own viewer: shows the results of a search, or a compiler's output as it grows.
class TextViewer : public ToolForm, public ResultsViewer {
    Q_OBJECT

  public:
    TextViewer(Desk& desk, WindowState& state);
    ~TextViewer() override;

    void show_file(const std::string& path) override;
    /// Shows the file again and again until the program that writes it has ended.
    void follow(const std::string& path, std::unique_ptr<RunningProgram> program) override;

    /// Moves to a line, from 1, of the file that is shown.
    void go_to(std::size_t line);

  private:
    void read_again();
    void look();

    QPlainTextEdit* text_;
    QLabel* status_;
    QTimer* timer_;
    std::string path_;
    std::unique_ptr<RunningProgram> program_;
};

} // namespace morvane
