// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/faulty_disk.h"

namespace morvane::test {

namespace {

class FaultyWritableFile final : public WritableFile {
  public:
    FaultyWritableFile(FaultyDisk& disk, std::unique_ptr<WritableFile> file, std::string path)
        : disk_(disk), file_(std::move(file)), path_(std::move(path)) {}

    std::size_t write(std::string_view bytes) override {
        if (disk_.step("write " + path_)) {
            return file_->write(bytes.substr(0, bytes.size() / 2));
        }
        return file_->write(bytes);
    }
    void truncate(std::uint64_t size) override {
        disk_.step("truncate " + path_);
        file_->truncate(size);
    }
    void sync() override {
        disk_.step("sync " + path_);
        file_->sync();
    }
    void close() override {
        disk_.step("close " + path_);
        file_->close();
    }

  private:
    FaultyDisk& disk_;
    std::unique_ptr<WritableFile> file_;
    std::string path_;
};

} // namespace

FaultyDisk::FaultyDisk() : disk_(make_system_disk()) {}

void FaultyDisk::fail_at(std::size_t n, ErrorNumber number, Fault fault) {
    fail_at_ = n;
    gone_for_good_ = false;
    calls_ = 0;
    number_ = number;
    fault_ = fault;
    journal_.clear();
}

void FaultyDisk::fail_from(std::size_t n, ErrorNumber number) {
    fail_at(n, number);
    gone_for_good_ = true;
}

bool FaultyDisk::step(const std::string& what) {
    journal_.push_back(what);
    ++calls_;
    const bool turn = calls_ == fail_at_ || (gone_for_good_ && calls_ > fail_at_);
    if (!turn) {
        return false;
    }
    if (fault_ == Fault::ShortWrite && what.rfind("write ", 0) == 0) {
        return true;
    }
    throw RuntimeError(number_, what);
}

bool FaultyDisk::is_file(const std::string& path) {
    return disk_->is_file(path);
}

bool FaultyDisk::is_folder(const std::string& path) {
    return disk_->is_folder(path);
}

bool FaultyDisk::is_writable_folder(const std::string& path) {
    return disk_->is_writable_folder(path);
}

FileStamp FaultyDisk::stamp(const std::string& path) {
    return disk_->stamp(path);
}

std::string FaultyDisk::resolve_links(const std::string& path) {
    return disk_->resolve_links(path);
}

std::uint64_t FaultyDisk::link_count(const std::string& path) {
    return disk_->link_count(path);
}

std::vector<FolderEntry> FaultyDisk::list_folder(const std::string& path) {
    return disk_->list_folder(path);
}

std::unique_ptr<ReadableFile> FaultyDisk::open_for_reading(const std::string& path) {
    step("read " + path);
    return disk_->open_for_reading(path);
}

std::unique_ptr<WritableFile> FaultyDisk::create_temporary(const std::string& path,
                                                           const std::string& model) {
    step("create " + path);
    return std::make_unique<FaultyWritableFile>(*this, disk_->create_temporary(path, model), path);
}

std::unique_ptr<WritableFile> FaultyDisk::open_for_update(const std::string& path) {
    step("update " + path);
    return std::make_unique<FaultyWritableFile>(*this, disk_->open_for_update(path), path);
}

std::unique_ptr<WritableFile> FaultyDisk::open_for_appending(const std::string& path) {
    step("append " + path);
    return std::make_unique<FaultyWritableFile>(*this, disk_->open_for_appending(path), path);
}

void FaultyDisk::rename(const std::string& from, const std::string& to) {
    step("rename " + to);
    disk_->rename(from, to);
}

void FaultyDisk::remove(const std::string& path) {
    step("remove " + path);
    disk_->remove(path);
}

void FaultyDisk::create_folder(const std::string& path) {
    step("folder " + path);
    disk_->create_folder(path);
}

void FaultyDisk::sync_folder(const std::string& path) {
    step("sync folder " + path);
    disk_->sync_folder(path);
}

} // namespace morvane::test
