#include "house/checkout.h"

#include "support/temp_folder.h"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace morvane::test {

namespace {

bool is_kept_out(const fs::path& name) {
    return name == ".git" || name == "build" || name == ".cache" || name == "__pycache__";
}

} // namespace

std::vector<CheckedFile> checkout_files() {
    const fs::path top = MORVANE_SOURCE_DIR;
    std::vector<CheckedFile> files;
    for (auto entry = fs::recursive_directory_iterator(top); entry != fs::end(entry); ++entry) {
        if (is_kept_out(entry->path().filename())) {
            entry.disable_recursion_pending();
        } else if (entry->is_regular_file()) {
            files.push_back({entry->path().lexically_relative(top).generic_string(),
                             read_file(entry->path().string())});
        }
    }
    std::sort(files.begin(), files.end(),
              [](const CheckedFile& a, const CheckedFile& b) { return a.path < b.path; });
    return files;
}

} // namespace morvane::test
