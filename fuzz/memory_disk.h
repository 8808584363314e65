// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/disk.h"

#include <cstddef>
#include <map>
#include <string>

namespace morvane::fuzz {

/// A disk that lies in memory, so that a whole command runs within microseconds. Paths are names
/// only: "a/b" lies in a folder "a" that is always there.
class MemoryDisk final : public Disk {
  public:
    std::map<std::string, std::string> files;
    std::size_t bytes_read = 0;

    bool is_file(const std::string& path) override { return files.contains(path); }
    bool is_folder(const std::string& path) override;
    bool is_writable_folder(const std::string&) override { return true; }
    FileStamp stamp(const std::string& path) override;
    std::string resolve_links(const std::string& path) override { return path; }
    std::uint64_t link_count(const std::string& path) override { return is_file(path) ? 1 : 0; }
    std::vector<FolderEntry> list_folder(const std::string& path) override;
    std::unique_ptr<ReadableFile> open_for_reading(const std::string& path) override;
    std::unique_ptr<WritableFile> create_temporary(const std::string& path,
                                                   const std::string& model) override;
    std::unique_ptr<WritableFile> open_for_update(const std::string& path) override;
    std::unique_ptr<WritableFile> open_for_appending(const std::string& path) override;
    void rename(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    void create_folder(const std::string&) override {}
    void sync_folder(const std::string&) override {}
};

} // namespace morvane::fuzz
