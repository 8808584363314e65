// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/memory_disk.h"

#include "base/errors.h"
#include "base/paths.h"

#include <algorithm>

namespace morvane {

namespace {

using Bytes = std::shared_ptr<std::string>;

class MemoryReader final : public ReadableFile {
  public:
    explicit MemoryReader(Bytes bytes) : bytes_(std::move(bytes)) {}

    std::uint64_t size() override { return bytes_->size(); }
    std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) override {
        const std::size_t at = std::min(static_cast<std::size_t>(offset), bytes_->size());
        return bytes_->copy(buffer, count, at);
    }

  private:
    Bytes bytes_;
};

class MemoryWriter final : public WritableFile {
  public:
    MemoryWriter(Bytes bytes, std::size_t at) : bytes_(std::move(bytes)), at_(at) {}

    std::size_t write(std::string_view bytes) override {
        bytes_->resize(std::max(bytes_->size(), at_ + bytes.size()));
        bytes_->replace(at_, bytes.size(), bytes);
        at_ += bytes.size();
        return bytes.size();
    }
    void truncate(std::uint64_t size) override { bytes_->resize(static_cast<std::size_t>(size)); }
    void sync() override {}
    void close() override {}

  private:
    Bytes bytes_;
    std::size_t at_;
};

} // namespace

void MemoryDisk::put(const std::string& path, std::string_view bytes) {
    files_[path] = std::make_shared<std::string>(bytes);
}

const std::string& MemoryDisk::bytes(const std::string& path) const {
    const auto file = files_.find(path);
    if (file == files_.end()) {
        throw RuntimeError(ErrorNumber::FileNotFound, path);
    }
    return *file->second;
}

bool MemoryDisk::is_file(const std::string& path) {
    return files_.contains(path);
}

bool MemoryDisk::is_folder(const std::string& path) {
    return path.empty() || path == ".";
}

bool MemoryDisk::is_writable_folder(const std::string& path) {
    return is_folder(path);
}

FileStamp MemoryDisk::stamp(const std::string& path) {
    FileStamp stamp;
    stamp.size = bytes(path).size();
    return stamp;
}

std::string MemoryDisk::resolve_links(const std::string& path) {
    return path;
}

std::uint64_t MemoryDisk::link_count(const std::string& path) {
    return is_file(path) ? 1 : 0;
}

std::vector<FolderEntry> MemoryDisk::list_folder(const std::string& path) {
    std::vector<FolderEntry> entries;
    for (const auto& [name, bytes] : files_) {
        if (folder_part(name) == path) {
            entries.push_back({file_name_part(name), false, true});
        }
    }
    return entries;
}

std::unique_ptr<ReadableFile> MemoryDisk::open_for_reading(const std::string& path) {
    bytes(path);
    return std::make_unique<MemoryReader>(files_.at(path));
}

std::unique_ptr<WritableFile> MemoryDisk::create_temporary(const std::string& path,
                                                           const std::string& /*model*/) {
    put(path, {});
    return std::make_unique<MemoryWriter>(files_.at(path), 0);
}

std::unique_ptr<WritableFile> MemoryDisk::open_for_update(const std::string& path) {
    if (!is_file(path)) {
        put(path, {});
    }
    return std::make_unique<MemoryWriter>(files_.at(path), 0);
}

std::unique_ptr<WritableFile> MemoryDisk::open_for_appending(const std::string& path) {
    if (!is_file(path)) {
        put(path, {});
    }
    return std::make_unique<MemoryWriter>(files_.at(path), files_.at(path)->size());
}

void MemoryDisk::rename(const std::string& from, const std::string& to) {
    bytes(from);
    files_[to] = files_.at(from);
    files_.erase(from);
}

void MemoryDisk::remove(const std::string& path) {
    bytes(path);
    files_.erase(path);
}

void MemoryDisk::create_folder(const std::string& /*path*/) {}

void MemoryDisk::sync_folder(const std::string& /*path*/) {}

} // namespace morvane
