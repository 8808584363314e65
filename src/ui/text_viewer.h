#pragma once

#include "tools/launch.h"
#include "ui/tool_form.h"

#include <memory>
#include <string>

class QLabel;
class QPlainTextEdit;
class QTimer;

namespace morvane {

/// Shows a text file: the results of a search, or a compiler's output as it grows.
class TextViewer : public ToolForm {
    Q_OBJECT

  public:
    TextViewer(Desk& desk, WindowState& state);
    ~TextViewer() override;

    void show_file(const std::string& path);
    /// Shows the file again and again until the program that writes it has ended.
    void follow(const std::string& path, std::unique_ptr<RunningProgram> program);

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
