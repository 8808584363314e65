// SPDX-License-Identifier: GPL-3.0-or-later
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

    /// Whether the program may end: asks about a list that is not saved.
    bool may_end() override;

  private:
    struct Controls;

    void connect_controls();
    void choose_design();
    void accept_drops();
    void show_design(const QString& file);
    void choose_output();
    void add_designs(const QStringList& files);
    void open_list();
    bool save_list();
    bool may_lose_list();
    void new_identifier();
    void show_lines();
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
    bool changed_ = false; // since the list was opened, saved or written as a library
};

} // namespace morvane
