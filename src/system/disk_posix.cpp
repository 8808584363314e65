// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "system/descriptor_posix.h"
#include "system/disk.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace morvane {

namespace {

ErrorNumber error_number(int code) {
    switch (code) {
    case ENOENT:
        return ErrorNumber::FileNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
    case EWOULDBLOCK:
        return ErrorNumber::PermissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ErrorNumber::DiskFull;
    case ENOTDIR:
    case EISDIR:
    case ELOOP:
    case ENAMETOOLONG:
    case EEXIST:
    case EXDEV:
    case ENXIO:
        return ErrorNumber::PathFileAccess;
    default:
        return ErrorNumber::DeviceIo;
    }
}

[[noreturn]] void fail(int code, const std::string& path) {
    throw RuntimeError(error_number(code), path);
}

// A file cannot be made in a folder that is not there: that is another error than a missing file.
[[noreturn]] void fail_to_create(int code, const std::string& path) {
    if (code == ENOENT) {
        throw RuntimeError(ErrorNumber::PathNotFound, path);
    }
    fail(code, path);
}

// What is made of a large file goes into memory that was never touched: pages of 2 MiB save the
// time of thousands of page faults. Where the system does not take the advice, nothing is lost.
void advise_large_pages(char* buffer, std::size_t count) {
    constexpr std::uintptr_t large_page = std::uintptr_t{2} << 20;
    const auto begin = reinterpret_cast<std::uintptr_t>(buffer);
    const std::uintptr_t first = (begin + large_page - 1) / large_page * large_page;
    const std::uintptr_t last = (begin + count) / large_page * large_page;
    if (first < last) {
        ::madvise(buffer + (first - begin), last - first, MADV_HUGEPAGE);
    }
}

struct stat status_of(int fd, const std::string& path) {
    struct stat status {};
    if (::fstat(fd, &status) != 0) {
        fail(errno, path);
    }
    return status;
}

class PosixReadableFile final : public ReadableFile {
  public:
    PosixReadableFile(Descriptor fd, std::string path, std::uint64_t size)
        : fd_(std::move(fd)), path_(std::move(path)), size_(size) {}

    std::uint64_t size() override { return size_; }

    void prepare_for(void* memory, std::size_t count) override {
        advise_large_pages(static_cast<char*>(memory), count);
    }

    std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) override {
        std::size_t done = 0;
        while (done < count) {
            const ssize_t got =
                ::pread(fd_.get(), buffer + done, count - done, static_cast<off_t>(offset + done));
            if (got < 0 && errno != EINTR) {
                fail(errno, path_);
            }
            if (got == 0) {
                break;
            }
            done += got > 0 ? static_cast<std::size_t>(got) : 0;
        }
        return done;
    }

  private:
    Descriptor fd_;
    std::string path_;
    std::uint64_t size_;
};

class PosixWritableFile final : public WritableFile {
  public:
    PosixWritableFile(Descriptor fd, std::string path)
        : fd_(std::move(fd)), path_(std::move(path)) {}

    // Only a part in each call, so that write-back can start while the rest is produced.
    std::size_t write(std::string_view bytes) override {
        bytes = bytes.substr(0, stretch);
        ssize_t written = -1;
        do {
            written = ::write(fd_.get(), bytes.data(), bytes.size());
        } while (written < 0 && errno == EINTR);
        if (written < 0) {
            fail(errno, path_);
        }
        start_writing_back(static_cast<std::size_t>(written));
        return static_cast<std::size_t>(written);
    }

    void truncate(std::uint64_t size) override {
        if (::ftruncate(fd_.get(), static_cast<off_t>(size)) != 0) {
            fail(errno, path_);
        }
    }

    void sync() override {
        if (::fsync(fd_.get()) != 0) {
            fail(errno, path_);
        }
    }

    void close() override {
        if (::close(fd_.release()) != 0 && errno != EINTR) {
            fail(errno, path_);
        }
    }

  private:
    // Lets the medium work on a large file while the rest is still being made, so that little is
    // left to wait for in sync().
    void start_writing_back(std::size_t written) {
#ifdef SYNC_FILE_RANGE_WRITE
        waiting_ += written;
        if (waiting_ >= stretch) {
            ::sync_file_range(fd_.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
            waiting_ = 0;
        }
#else
        static_cast<void>(written);
#endif
    }

    static constexpr std::size_t stretch = std::size_t{8} << 20;

    std::size_t waiting_ = 0; // bytes written since the medium was last set to work
    Descriptor fd_;
    std::string path_;
};

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

struct stat require_regular(int fd, const std::string& path) {
    const struct stat status = status_of(fd, path);
    if (!S_ISREG(status.st_mode)) {
        throw RuntimeError(ErrorNumber::PathFileAccess, path + " is no regular file");
    }
    return status;
}

// O_NONBLOCK keeps an open of a named pipe from waiting for its other end.
std::unique_ptr<WritableFile> open_writable(const std::string& path, int flags) {
    Descriptor fd(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | flags, 0666));
    if (fd.get() < 0) {
        fail_to_create(errno, path);
    }
    require_regular(fd.get(), path);
    return std::make_unique<PosixWritableFile>(std::move(fd), path);
}

// A leftover of a crashed run is unlocked; a file that another run is writing is locked.
Descriptor open_locked(const std::string& path) {
    for (;;) {
        Descriptor fd(
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666));
        if (fd.get() < 0) {
            fail_to_create(errno, path);
        }
        require_regular(fd.get(), path);
        if (::flock(fd.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            throw RuntimeError(ErrorNumber::PermissionDenied,
                               path + " is being written by another program");
        }
        struct stat named {};
        const struct stat opened = status_of(fd.get(), path);
        if (::lstat(path.c_str(), &named) == 0 && named.st_ino == opened.st_ino &&
            named.st_dev == opened.st_dev) {
            return fd;
        }
    }
}

void take_permissions(int fd, const std::string& model) {
    struct stat status {};
    if (::stat(model.c_str(), &status) != 0) {
        return;
    }
    // Only root may give a file away; whoever may not keeps the right mode all the same.
    if (::fchown(fd, status.st_uid, status.st_gid) != 0) {
        errno = 0;
    }
    // Some file systems know only one mode, and refuse to be told even that.
    const mode_t mode = status.st_mode & 07777;
    if ((status_of(fd, model).st_mode & 07777) != mode && ::fchmod(fd, mode) != 0) {
        fail(errno, model);
    }
}

FolderEntry entry_of(const std::string& folder, const dirent& found) {
    FolderEntry entry{found.d_name, found.d_type == DT_DIR, found.d_type == DT_REG};
    if (found.d_type == DT_LNK || found.d_type == DT_UNKNOWN) {
        struct stat status {};
        const std::string path = join_path(folder, entry.name);
        const bool link = ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
        const bool there = ::stat(path.c_str(), &status) == 0;
        entry.folder = there && !link && S_ISDIR(status.st_mode);
        entry.file = there && S_ISREG(status.st_mode);
    }
    return entry;
}

class PosixDisk final : public Disk {
  public:
    bool is_file(const std::string& path) override {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
    }

    bool is_folder(const std::string& path) override {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    }

    bool is_writable_folder(const std::string& path) override {
        return is_folder(path) && ::access(path.c_str(), W_OK | X_OK) == 0;
    }

    FileStamp stamp(const std::string& path) override {
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0) {
            fail(errno, path);
        }
        return {static_cast<std::uint64_t>(status.st_size), nanoseconds(status.st_mtim),
                nanoseconds(status.st_ctim), status.st_dev, status.st_ino};
    }

    std::string resolve_links(const std::string& path) override {
        std::string result = path;
        std::error_code error;
        for (int i = 0; i < 40 && std::filesystem::is_symlink(result, error); ++i) {
            const std::filesystem::path target = std::filesystem::read_symlink(result, error);
            if (error) {
                fail(error.value(), path);
            }
            result = (std::filesystem::path(result).parent_path() / target).string();
        }
        if (std::filesystem::is_symlink(result, error)) {
            fail(ELOOP, path);
        }
        return result;
    }

    std::uint64_t link_count(const std::string& path) override {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_nlink : 0;
    }

    std::vector<FolderEntry> list_folder(const std::string& path) override {
        const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(path.c_str()), ::closedir);
        if (!folder) {
            fail_to_create(errno, path);
        }
        std::vector<FolderEntry> entries;
        errno = 0;
        while (const dirent* found = ::readdir(folder.get())) {
            const std::string_view name = found->d_name;
            if (name != "." && name != "..") {
                entries.push_back(entry_of(path, *found));
            }
            errno = 0;
        }
        if (errno != 0) {
            fail(errno, path);
        }
        std::sort(entries.begin(), entries.end(),
                  [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
        return entries;
    }

    std::unique_ptr<ReadableFile> open_for_reading(const std::string& path) override {
        Descriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        if (fd.get() < 0) {
            fail(errno, path);
        }
        const auto size = static_cast<std::uint64_t>(require_regular(fd.get(), path).st_size);
        return std::make_unique<PosixReadableFile>(std::move(fd), path, size);
    }

    std::unique_ptr<WritableFile> create_temporary(const std::string& path,
                                                   const std::string& model) override {
        Descriptor fd = open_locked(path);
        try {
            if (::ftruncate(fd.get(), 0) != 0) {
                fail(errno, path);
            }
            take_permissions(fd.get(), model);
        } catch (const RuntimeError&) {
            ::unlink(path.c_str());
            throw;
        }
        return std::make_unique<PosixWritableFile>(std::move(fd), path);
    }

    std::unique_ptr<WritableFile> open_for_update(const std::string& path) override {
        return open_writable(path, 0);
    }

    std::unique_ptr<WritableFile> open_for_appending(const std::string& path) override {
        return open_writable(path, O_APPEND);
    }

    void rename(const std::string& from, const std::string& to) override {
        if (::rename(from.c_str(), to.c_str()) != 0) {
            fail(errno, to);
        }
    }

    void remove(const std::string& path) override {
        if (::unlink(path.c_str()) != 0) {
            fail(errno, path);
        }
    }

    void create_folder(const std::string& path) override {
        std::error_code error;
        std::filesystem::create_directories(path, error);
        if (error) {
            fail_to_create(error.value(), path);
        }
    }

    void sync_folder(const std::string& path) override {
        const Descriptor fd(
            ::open(path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (fd.get() >= 0 && ::fsync(fd.get()) != 0) {
            errno = 0; // some file systems cannot; the rename itself has succeeded
        }
    }
};

} // namespace

std::unique_ptr<Disk> make_system_disk() {
    // Without this a file that reaches the user's size limit would end the program.
    std::signal(SIGXFSZ, SIG_IGN);
    return std::make_unique<PosixDisk>();
}

} // namespace morvane
