#pragma once

#include "ui/form_activation.h"

#include <string>

namespace morvane {

class Dialogs;
class Disk;
class Launcher;
class MessageLog;
class ResultsViewer;

/// What all windows of the program share.
struct Desk {
    Disk& disk;
    Dialogs& dialogs;
    Launcher& launcher;
    MessageLog& log;
    std::string program_folder; // settings, scratch and report files lie here
    FormActivation activation{};
    ResultsViewer* viewer = nullptr; // null: the window's own is used
};

} // namespace morvane
