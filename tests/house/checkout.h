#pragma once

#include <string>
#include <vector>

namespace morvane::test {

struct CheckedFile {
    std::string path; // from the top of the checkout, with "/"
    std::string text;
};

/// Every file of the checkout but what git and the build keep there, in order of their paths.
std::vector<CheckedFile> checkout_files();

} // namespace morvane::test
