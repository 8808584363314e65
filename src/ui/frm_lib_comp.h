#pragma once

#include "library/library_list.h"
#include "system/services.h"
#include "ui/qt_reporter.h"
#include "ui/tool_form.h"

#include <cstddef>
#include <memory>

namespace morvane {

namespace Ui {
class frmLibComp;
}

/// "Library Compiler": gathers exported designs and writes the source of their library.
class frmLibComp : public ToolForm {
    Q_OBJECT

  public:
    frmLibComp(Desk& desk, WindowState& state);
    ~frmLibComp() override;

  private:
    Services services() { return {desk_.disk, reporter_}; }
    void connect_controls();
    void choose_design();
    void choose_output();
    void add();
    void modify();
    void remove();
    void create();
    void show_entry();
    LibraryFields fields() const;
    /// The line that is selected; the number of lines when none is.
    std::size_t selected() const;

    std::unique_ptr<Ui::frmLibComp> ui_;
    QtReporter reporter_;
    LibraryList list_;
};

} // namespace morvane
