// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library_browser/library_browser.h"
#include "ui/library_browser/ui_library_browser.h"
#include "ui/set_up.h"

namespace morvane {

/// Names for the controls, whose object names are fixed: scripts and tests find them by those.
struct LibraryBrowser::Controls : SetUp<Ui::LibraryBrowser> {
    using SetUp::SetUp;

    QComboBox& drives = *Drive1;
    QTreeView& folders = *Dir1;
    QListView& files = *File1;
    QLineEdit& file_name = *inpFilename;
    QPushButton& analyse = *Command1;
    QPushButton& browse = *Command2;
    QPushButton& search = *Command3;
    QPushButton& clear = *Command4;
    QPushButton& make_universal = *Command5;
    QPushButton& revert = *Command6;
    QCheckBox& show_header = *chkShowRawHdr;
    QCheckBox& auto_clear = *chkClrTb;
    QCheckBox& all_files = *chkAllFiles;
    QPlainTextEdit& report = *tb1;
};

} // namespace morvane
