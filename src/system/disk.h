// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// Identity, size and times of a file. Two that differ mean another program changed it.
struct FileStamp {
    std::uint64_t size = 0;
    std::int64_t modified_ns = 0; // since the system's epoch
    // When anything about the file changed, its name and permissions too: unlike the time above, no
    // program can set it. 0 where the system keeps no such time.
    std::int64_t changed_ns = 0;
    // Which file it is, whatever its name; both 0 where the system does not say.
    std::uint64_t device = 0;
    std::uint64_t file = 0;

    bool operator==(const FileStamp&) const = default;
};

struct FolderEntry {
    std::string name;
    bool folder = false; // a real folder; a symbolic link to one is neither folder nor file
    bool file = false;   // a regular file, or a link to one
};

/// An open file that is read. Closed when destroyed.
class ReadableFile {
  public:
    ReadableFile() = default;
    ReadableFile(const ReadableFile&) = delete;
    ReadableFile& operator=(const ReadableFile&) = delete;
    virtual ~ReadableFile() = default;

    virtual std::uint64_t size() = 0;
    /// Tells that `count` bytes of fresh memory from `memory` on will be filled while the file is
    /// read.
    virtual void prepare_for(void* /*memory*/, std::size_t /*count*/) {}
    /// Reads up to `count` bytes from `offset` on; gives how many there were (fewer only at the
    /// end of the file). May be called by several threads at once.
    virtual std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) = 0;
};

/// An open file that is written. Closed when destroyed, then without a report of failure.
class WritableFile {
  public:
    WritableFile() = default;
    WritableFile(const WritableFile&) = delete;
    WritableFile& operator=(const WritableFile&) = delete;
    virtual ~WritableFile() = default;

    /// Writes at the current position; gives how many bytes were taken, which may be fewer.
    virtual std::size_t write(std::string_view bytes) = 0;
    /// Cuts the file off after `size` bytes.
    virtual void truncate(std::uint64_t size) = 0;
    /// Brings everything written to the medium.
    virtual void sync() = 0;
    virtual void close() = 0;
};

/// All access to files goes through this interface, so that a test can make the n-th call fail.
/// Every member throws RuntimeError with the number that fits and the path it was about. Paths are
/// taken as the user wrote them.
class Disk {
  public:
    Disk() = default;
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;
    virtual ~Disk() = default;

    /// Whether a file of that name is there; a folder is none. Never throws.
    virtual bool is_file(const std::string& path) = 0;
    virtual bool is_folder(const std::string& path) = 0;
    /// Whether a new file could be written into the folder.
    virtual bool is_writable_folder(const std::string& path) = 0;
    virtual FileStamp stamp(const std::string& path) = 0;
    /// The file that a symbolic link leads to; any other path as it is.
    virtual std::string resolve_links(const std::string& path) = 0;
    /// Number of names that a file has (hard links); 0 when it does not exist.
    virtual std::uint64_t link_count(const std::string& path) = 0;
    /// Entries of a folder in byte order of their names, without "." and "..".
    virtual std::vector<FolderEntry> list_folder(const std::string& path) = 0;

    /// Refuses at once what is not a regular file (a named pipe, a device).
    virtual std::unique_ptr<ReadableFile> open_for_reading(const std::string& path) = 0;
    /// Creates an empty file to be renamed over `model` later, with the permissions of `model` when
    /// that exists. A leftover of that name is replaced; one that another program holds open at
    /// this moment is PermissionDenied. May be renamed and removed while it is open.
    virtual std::unique_ptr<WritableFile> create_temporary(const std::string& path,
                                                           const std::string& model) = 0;
    /// Opens at the first byte without shortening the file; creates it when missing.
    virtual std::unique_ptr<WritableFile> open_for_update(const std::string& path) = 0;
    /// Opens after the last byte; creates it when missing.
    virtual std::unique_ptr<WritableFile> open_for_appending(const std::string& path) = 0;

    /// Puts `from` in the place of `to`, in one step.
    virtual void rename(const std::string& from, const std::string& to) = 0;
    virtual void remove(const std::string& path) = 0;
    virtual void create_folder(const std::string& path) = 0;
    /// Brings renames in a folder to the medium; quietly does nothing where that is unknown.
    virtual void sync_folder(const std::string& path) = 0;
};

/// The machine's own disk.
std::unique_ptr<Disk> make_system_disk();

} // namespace morvane
