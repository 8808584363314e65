// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace morvane::test {

/// A folder of the test's own, removed with everything in it when the test is over.
class TempFolder {
  public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    const std::string& path() const { return path_; }
    /// Full path of a name in the folder.
    std::string file(std::string_view name) const;
    /// Writes a file with exactly these bytes; gives its full path. Makes folders on the way.
    std::string write(std::string_view name, std::string_view bytes) const;
    std::string read(std::string_view name) const;
    bool has(std::string_view name) const;
    /// Names of all entries, sorted.
    std::vector<std::string> names() const;

  private:
    std::string path_;
};

std::string read_file(const std::string& path);
void write_file(const std::string& path, std::string_view bytes);

/// The lines, each with CR LF behind it.
std::string crlf(const std::vector<std::string>& lines);

} // namespace morvane::test
