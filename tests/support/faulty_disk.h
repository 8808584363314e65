// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/errors.h"
#include "system/disk.h"

#include <memory>
#include <string>
#include <vector>

namespace morvane::test {

/// A disk that hands every call on to the real one, counts the calls that change something (or
/// open a file), and lets the n-th fail.
class FaultyDisk : public Disk {
  public:
    enum class Fault { Throw, ShortWrite };

    FaultyDisk();

    /// Lets call number `n` (from 1) fail with `number`; 0 lets none fail. Counting starts again.
    void fail_at(std::size_t n, ErrorNumber number = ErrorNumber::DeviceIo,
                 Fault fault = Fault::Throw);
    /// Lets call number `n` and all behind it fail: the disk has gone.
    void fail_from(std::size_t n, ErrorNumber number = ErrorNumber::DeviceIo);
    std::size_t calls() const { return calls_; }
    /// What was called, e.g. "rename NAME", for messages of failing tests.
    const std::vector<std::string>& journal() const { return journal_; }

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

    /// Counts a call and fails it when its turn has come. True asks for a short write.
    bool step(const std::string& what);

  private:
    std::unique_ptr<Disk> disk_;
    std::size_t fail_at_ = 0;
    bool gone_for_good_ = false;
    std::size_t calls_ = 0;
    ErrorNumber number_ = ErrorNumber::DeviceIo;
    Fault fault_ = Fault::Throw;
    std::vector<std::string> journal_;
};

} // namespace morvane::test
