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

} // namespace morvane
