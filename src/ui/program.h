#pragma once

class QApplication;

namespace morvane {

/// Name, icon and colours of the program.
void prepare_application(QApplication& application);

} // namespace morvane
