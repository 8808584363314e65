// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/absolute_path.h"

#include "base/wide_text.h"

#include <filesystem>

namespace morvane {

// The library takes a name for the system's 8-bit letters where ours are UTF-8.
std::string absolute_path(const std::string& path) {
#ifdef _WIN32
    return narrow_text(std::filesystem::absolute(wide_text(path)).wstring());
#else
    return std::filesystem::absolute(path).string();
#endif
}

std::string absolute_path(const std::string& path, const std::string& folder) {
#ifdef _WIN32
    const std::filesystem::path named = wide_text(path);
    const std::filesystem::path from = wide_text(folder);
#else
    const std::filesystem::path named = path;
    const std::filesystem::path from = folder;
#endif
    if (named.is_absolute()) {
        return path;
    }
    const std::filesystem::path full = (from / named).lexically_normal();
#ifdef _WIN32
    return narrow_text(full.wstring());
#else
    return full.string();
#endif
}

} // namespace morvane
