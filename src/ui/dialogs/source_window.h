// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/source_comparison.h"
#include "ui/dialogs/tool_form.h"

#include <cstddef>
#include <optional>

class QLabel;
class QLineEdit;
class QSpinBox;
class QTabBar;

namespace morvane {

class DocumentModel;
class LineView;

/// "Source": the files of the open set as they are on the disk and as Save would write them, side
/// by side and read-only. It follows the document while it is shown.
class SourceWindow : public ToolForm {
    Q_OBJECT

  public:
    SourceWindow(Desk& desk, WindowState& state, DocumentModel& document);
    ~SourceWindow() override;

    /// Shows a file at a line of the disk, from 1, in front.
    void show_line(SetFile which, std::size_t line);
    /// The same without bringing the window up; nothing when it is not shown.
    void follow_line(SetFile which, std::size_t line);

  protected:
    void activated() override;

  private:
    QWidget* make_bar();
    QWidget* make_side(LineView& view, const QString& title);
    void connect_views();
    void read();
    void forget();
    void refresh();
    void show_rows();
    void go_to_row(std::size_t row);
    void go_to_line();
    void find(bool backwards);
    SetFile which() const;
    bool goes_by_then() const;

    DocumentModel& document_;
    QTabBar* files_;
    QLineEdit* wanted_;
    QSpinBox* line_;
    QLabel* status_;
    LineView* now_;
    LineView* then_;
    LineView* last_used_;
    std::optional<SourceComparison> comparison_;
    bool following_ = false; // one side goes where the other went
};

} // namespace morvane
