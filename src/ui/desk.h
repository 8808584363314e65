// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/program_places.h"
#include "ui/form_activation.h"

#include <functional>
#include <string>
#include <vector>

namespace morvane {

class Dialogs;
class Disk;
class MessageLog;
class Programs;
class ResultsViewer;

/// What all windows of the program share.
struct Desk {
    Disk& disk;
    Dialogs& dialogs;
    Programs& programs;
    MessageLog& log;
    std::string program_folder; // settings, scratch and report files lie here
    FormActivation activation{};
    ResultsViewer* viewer = nullptr; // null: the window's own is used
    // Where helper programs are looked for.
    std::vector<std::string> helpers = helper_folders(executable_folder());
    std::vector<std::string> guide_folders{}; // where the user guide may be
    /// Shows a document to the user, with whatever program the platform has for it.
    std::function<void(const std::string& path)> open_document = [](const std::string&) {};
};

} // namespace morvane
