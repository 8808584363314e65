// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/disk.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace morvane {

/// Files of the current folder that exist in memory alone, for an operation that works on files in
/// place.
class MemoryDisk final : public Disk {
  public:
    void put(const std::string& path, std::string_view bytes);
    /// The bytes of a file. Throws FileNotFound.
    const std::string& bytes(const std::string& path) const;

    bool is_file(const std::string& path) override;
    bool is_folder(const std::string& path) override;
    bool is_writable_folder(const std::string& path) override;
    FileStamp stamp(const std::string& path) override;
    std::string resolve_links(const std::string& path) override;
    std::uint64_t link_count(const std::string& path) override;
    std::vector<FolderEntry> list_folder(const std::string& path) override;
    std::unique_ptr<ReadableFile> open_for_reading(const std::string& path) override;
    std::unique_ptr<WritableFile> create_temporary(const std::string& path,
                                                   const std::string& model) override;
    std::unique_ptr<WritableFile> open_for_update(const std::string& path) override;
    std::unique_ptr<WritableFile> open_for_appending(const std::string& path) override;
    void rename(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    void create_folder(const std::string& path) override;
    void sync_folder(const std::string& path) override;

  private:
    // Shared with the files that are open.
    std::map<std::string, std::shared_ptr<std::string>> files_;
};

} // namespace morvane
