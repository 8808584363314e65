// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/include_lines.h"

#include "base/paths.h"
#include "base/text.h"
#include "objects/macro_include.h"

#include <cstddef>

namespace morvane {

bool make_includes_bare(LineStore& store, const std::map<std::string, std::string>& names) {
    bool changed = false;
    for (std::size_t i = 1; i <= store.count(); ++i) {
        const std::string file = included_file(store.line(i));
        if (file.empty()) {
            continue;
        }
        const auto known = names.find(lower_case(file_name_part(file)));
        if (known != names.end() && known->second != file) {
            std::string line(store.line(i));
            store.set_line(i, line.replace(line.find(file), file.size(), known->second));
            changed = true;
        }
    }
    return changed;
}

} // namespace morvane
