// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/main_window/main_window.h"
#include "ui/main_window/ui_main_window.h"
#include "ui/set_up.h"

namespace morvane {

/// Names for the controls, whose object names are fixed: scripts and tests find them by those.
struct MainWindow::Controls : SetUp<Ui::MainWindow> {
    using SetUp::SetUp;

    QLineEdit& input_base = *InputFile;
    QLineEdit& output_base = *OutputFile;
    QPushButton& browse = *Command8;
    QPushButton& open = *Command2;
    QTreeView& materials = *lstMat2proc;
    ColorSwatch& highlight_color = *Shape1;
    ColorSwatch& own_color = *Shape2;
    QLineEdit& total = *Text1;
    QLineEdit& unprocessed = *Text2;
    QLabel& processed_mark = *Label16;
    QComboBox& kind = *typeOfObj;
    QPushButton& parameters = *Command4;
    QLineEdit& parameter_line = *txtinfo;
    QPushButton& process = *Command1;
    QPushButton& save = *Command3;
    QPushButton& compile = *Command12;
    QPushButton& backup = *Command10;
    QPushButton& restore = *Command11;
    StepMarker& open_step = *Label6;
    StepMarker& select_step = *Label7;
    StepMarker& define_step = *Label9;
    StepMarker& process_step = *Label10;
    StepMarker& save_step = *Label12;
    MessageView& messages = *MsgText;
    QPushButton& model_modifier = *Command6;
    QPushButton& library_browser = *Command7;
    QPushButton& label_rename = *Command9;
    QPushButton& library_compiler = *Command13;
    QLabel& status = *statusText;
    QLabel& version = *Label21;
};

} // namespace morvane
