// SPDX-License-Identifier: GPL-3.0-or-later
#include "memory_disk.h"

#include "base/errors.h"

#include <algorithm>
#include <cstring>

namespace morvane::fuzz {

namespace {

class MemoryReadable final : public ReadableFile {
  public:
    MemoryReadable(const std::string& bytes, std::size_t& read) : bytes_(bytes), read_(read) {}
    std::uint64_t size() override { return bytes_.size(); }
    std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) override {
        if (offset >= bytes_.size()) {
            return 0;
        }
        const std::size_t got = bytes_.copy(buffer, count, static_cast<std::size_t>(offset));
        read_ += got;
        return got;
    }

  private:
    std::string bytes_;
    std::size_t& read_;
};

class MemoryWritable final : public WritableFile {
  public:
    MemoryWritable(std::string& bytes, std::size_t position) : bytes_(bytes), position_(position) {}
    std::size_t write(std::string_view bytes) override {
        bytes_.replace(position_, std::min(bytes.size(), bytes_.size() - position_), bytes);
        position_ += bytes.size();
        return bytes.size();
    }
    void truncate(std::uint64_t size) override { bytes_.resize(static_cast<std::size_t>(size)); }
    void sync() override {}
    void close() override {}

  private:
    std::string& bytes_; // a map's elements stay where they are
    std::size_t position_;
};

[[noreturn]] void missing(const std::string& path) {
    throw RuntimeError(ErrorNumber::FileNotFound, path);
}

std::string as_prefix(const std::string& folder) {
    return folder.empty() ? folder : folder + "/";
}

} // namespace

bool MemoryDisk::is_folder(const std::string& path) {
    const auto first = files.lower_bound(as_prefix(path));
    return first != files.end() && first->first.starts_with(as_prefix(path));
}

FileStamp MemoryDisk::stamp(const std::string& path) {
    if (!is_file(path)) {
        missing(path);
    }
    return {files.at(path).size(), 0};
}

std::vector<FolderEntry> MemoryDisk::list_folder(const std::string& path) {
    std::map<std::string, bool> found; // name, whether it is a folder
    for (const auto& [name, bytes] : files) {
        if (name.starts_with(as_prefix(path))) {
            const std::string rest = name.substr(as_prefix(path).size());
            const std::size_t slash = rest.find('/');
            found[rest.substr(0, slash)] = slash != std::string::npos;
        }
    }
    std::vector<FolderEntry> entries;
    for (const auto& [name, folder] : found) {
        entries.push_back({name, folder, !folder});
    }
    return entries;
}

std::unique_ptr<ReadableFile> MemoryDisk::open_for_reading(const std::string& path) {
    if (!is_file(path)) {
        missing(path);
    }
    return std::make_unique<MemoryReadable>(files.at(path), bytes_read);
}

std::unique_ptr<WritableFile> MemoryDisk::create_temporary(const std::string& path,
                                                           const std::string& /*model*/) {
    std::string& bytes = files[path];
    bytes.clear();
    return std::make_unique<MemoryWritable>(bytes, 0);
}

std::unique_ptr<WritableFile> MemoryDisk::open_for_update(const std::string& path) {
    return std::make_unique<MemoryWritable>(files[path], 0);
}

std::unique_ptr<WritableFile> MemoryDisk::open_for_appending(const std::string& path) {
    std::string& bytes = files[path];
    return std::make_unique<MemoryWritable>(bytes, bytes.size());
}

void MemoryDisk::rename(const std::string& from, const std::string& to) {
    if (!is_file(from)) {
        missing(from);
    }
    files[to] = std::move(files.at(from));
    files.erase(from);
}

void MemoryDisk::remove(const std::string& path) {
    if (files.erase(path) == 0) {
        missing(path);
    }
}

} // namespace morvane::fuzz
