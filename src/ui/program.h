#pragma once

#include <string>

class QApplication;

namespace morvane {

class Disk;

/// Name, icon and colours of the program.
void prepare_application(QApplication& application);

/// The program folder of this run: the one that `option` names (empty for none), or by the rules
/// for it. Throws RuntimeError when there is none.
std::string program_folder_of_run(Disk& disk, const std::string& option);

} // namespace morvane
