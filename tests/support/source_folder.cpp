// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/source_folder.h"

namespace morvane::test {

const std::string& source_folder() {
    static const std::string folder = MORVANE_SOURCE_DIR;
    return folder;
}

} // namespace morvane::test
