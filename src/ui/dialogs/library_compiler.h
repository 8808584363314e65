#pragma once

#include "library/library_list.h"
#include "ui/dialogs/tool_form.h"

#include <cstddef>
#include <memory>

namespace morvane {

/// "Library Compiler": gathers exported designs and writes the source of their library.
class LibraryCompiler : public ToolForm {
    Q_OBJECT

  public:
    LibraryCompiler(Desk& desk, WindowState& state);
    ~LibraryCompiler() override;

  private:
    struct Controls;

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

    std::unique_ptr<Controls> ui_;
    LibraryList list_;
};

} // namespace morvane
