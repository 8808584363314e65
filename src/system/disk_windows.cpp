// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/encodings.h"
#include "base/errors.h"
#include "base/paths.h"
#include "system/disk.h"
#include "system/handle_windows.h"

#include <aclapi.h>
#include <algorithm>
#include <vector>
#include <windows.h>

namespace morvane {

namespace {

// The compiler's headers lack this one.
constexpr DWORD disk_quota_exceeded = 1295;

ErrorNumber error_number(DWORD code) {
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
        return ErrorNumber::FileNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_DELETE_PENDING:
        return ErrorNumber::PermissionDenied;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case disk_quota_exceeded:
    case ERROR_FILE_TOO_LARGE:
        return ErrorNumber::DiskFull;
    case ERROR_DIRECTORY:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_ALREADY_EXISTS:
    case ERROR_FILE_EXISTS:
    case ERROR_NOT_SAME_DEVICE:
    case ERROR_CANT_RESOLVE_FILENAME:
        return ErrorNumber::PathFileAccess;
    default:
        return ErrorNumber::DeviceIo;
    }
}

[[noreturn]] void fail(DWORD code, const std::string& path) {
    throw RuntimeError(error_number(code), path);
}

[[noreturn]] void fail_as_irregular(const std::string& path) {
    throw RuntimeError(ErrorNumber::PathFileAccess, path + " is no regular file");
}

// Names of more than 259 characters are understood only as full names after this prefix.
std::wstring system_name(const std::string& path) {
    std::wstring name = wide_text(path);
    const DWORD needed = GetFullPathNameW(name.c_str(), 0, nullptr, nullptr);
    if (needed < MAX_PATH - 12 || name.starts_with(L"\\\\?\\") || name.starts_with(L"\\\\.\\")) {
        return name;
    }
    std::wstring full(needed, L'\0');
    full.resize(GetFullPathNameW(name.c_str(), needed, full.data(), nullptr));
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
}

constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// For questions about a file or folder; works on one that another program holds, and follows links.
Handle open_to_look(const std::string& path) {
    return Handle(CreateFileW(system_name(path).c_str(), FILE_READ_ATTRIBUTES, share_all, nullptr,
                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

DWORD attributes_behind_links(const std::string& path) {
    const DWORD attributes = GetFileAttributesW(system_name(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return attributes;
    }
    const Handle target = open_to_look(path);
    BY_HANDLE_FILE_INFORMATION about{};
    return target.valid() && GetFileInformationByHandle(target.get(), &about) != 0
               ? about.dwFileAttributes
               : INVALID_FILE_ATTRIBUTES;
}

bool is_file_behind_links(const std::string& path) {
    const DWORD attributes = attributes_behind_links(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// A file cannot be made in a folder that is not there: that is another error than a missing file,
// and again another one than a file in the folder's place.
[[noreturn]] void fail_to_create(DWORD code, const std::string& path) {
    const ErrorNumber number = error_number(code);
    if (is_file_behind_links(folder_part(path))) {
        throw RuntimeError(ErrorNumber::PathFileAccess, path);
    }
    throw RuntimeError(number == ErrorNumber::FileNotFound ? ErrorNumber::PathNotFound : number,
                       path);
}

std::uint64_t joined(DWORD high, DWORD low) {
    return std::uint64_t{high} << 32U | low;
}

// Ticks of 100 ns since 1601, as nanoseconds since 1970: since 1601 they would overflow.
std::int64_t nanoseconds(const LARGE_INTEGER& ticks) {
    constexpr std::int64_t epoch_ticks = 116'444'736'000'000'000;
    return ticks.QuadPart == 0 ? 0 : (ticks.QuadPart - epoch_ticks) * 100;
}

// A scanner or an indexer may hold a file that was written a moment ago. It lets go soon.
template <typename Action>
DWORD done_patiently(Action action) {
    constexpr int attempts = 8;
    DWORD code = ERROR_SUCCESS;
    for (int i = 0; i < attempts; ++i) {
        if (action()) {
            return ERROR_SUCCESS;
        }
        code = GetLastError();
        if (code != ERROR_SHARING_VIOLATION && code != ERROR_ACCESS_DENIED) {
            break;
        }
        Sleep(DWORD{5} << static_cast<unsigned>(i)); // 1.3 s in all
    }
    return code;
}

class WindowsReadableFile final : public ReadableFile {
  public:
    WindowsReadableFile(Handle file, std::string path, std::uint64_t size)
        : file_(std::move(file)), path_(std::move(path)), size_(size) {}

    std::uint64_t size() override { return size_; }

    std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) override {
        std::size_t done = 0;
        while (done < count) {
            OVERLAPPED place{};
            place.Offset = static_cast<DWORD>(offset + done);
            place.OffsetHigh = static_cast<DWORD>((offset + done) >> 32U);
            const auto wanted =
                static_cast<DWORD>(std::min<std::size_t>(count - done, std::size_t{1} << 30U));
            DWORD got = 0;
            if (ReadFile(file_.get(), buffer + done, wanted, &got, &place) == 0) {
                const DWORD code = GetLastError();
                if (code != ERROR_HANDLE_EOF) {
                    fail(code, path_);
                }
            }
            if (got == 0) {
                break;
            }
            done += got;
        }
        return done;
    }

  private:
    Handle file_;
    std::string path_;
    std::uint64_t size_;
};

class WindowsWritableFile final : public WritableFile {
  public:
    WindowsWritableFile(Handle file, std::string path)
        : file_(std::move(file)), path_(std::move(path)) {}

    std::size_t write(std::string_view bytes) override {
        const auto wanted =
            static_cast<DWORD>(std::min<std::size_t>(bytes.size(), std::size_t{1} << 30U));
        DWORD written = 0;
        if (WriteFile(file_.get(), bytes.data(), wanted, &written, nullptr) == 0) {
            fail(GetLastError(), path_);
        }
        return written;
    }

    void truncate(std::uint64_t size) override {
        FILE_END_OF_FILE_INFO end{};
        end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
        if (SetFileInformationByHandle(file_.get(), FileEndOfFileInfo, &end, sizeof end) == 0) {
            fail(GetLastError(), path_);
        }
    }

    void sync() override {
        if (FlushFileBuffers(file_.get()) == 0) {
            fail(GetLastError(), path_);
        }
    }

    void close() override {
        if (CloseHandle(file_.release()) == 0) {
            fail(GetLastError(), path_);
        }
    }

  private:
    Handle file_;
    std::string path_;
};

// A folder opened as a file is refused with the same code as a file that may not be opened.
[[noreturn]] void fail_to_open(DWORD code, const std::string& path) {
    const DWORD attributes = GetFileAttributesW(system_name(path).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        fail_as_irregular(path);
    }
    fail(code, path);
}

void require_regular(const Handle& file, const std::string& path) {
    if (GetFileType(file.get()) != FILE_TYPE_DISK) {
        fail_as_irregular(path);
    }
}

// While we write, others may read but not write.
std::unique_ptr<WritableFile> open_writable(const std::string& path, DWORD access) {
    Handle file(CreateFileW(system_name(path).c_str(), access, FILE_SHARE_READ, nullptr,
                            OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.valid()) {
        const DWORD code = GetLastError();
        error_number(code) == ErrorNumber::FileNotFound ? fail_to_create(code, path)
                                                        : fail_to_open(code, path);
    }
    require_regular(file, path);
    return std::make_unique<WindowsWritableFile>(std::move(file), path);
}

// A leftover that somebody protected, or that was a copy of a protected file, may still go.
void clear_read_only(const std::wstring& name) {
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(name.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
}

// Nobody else may write it while it is ours: that tells a stray of a program that died from a file
// that is being written just now.
Handle open_exclusively(const std::string& path) {
    const std::wstring name = system_name(path);
    clear_read_only(name);
    Handle file(CreateFileW(name.c_str(), GENERIC_WRITE | WRITE_DAC,
                            FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!file.valid()) {
        const DWORD code = GetLastError();
        if (code == ERROR_SHARING_VIOLATION) {
            throw RuntimeError(ErrorNumber::PermissionDenied,
                               path + " is being written by another program");
        }
        error_number(code) == ErrorNumber::FileNotFound ? fail_to_create(code, path)
                                                        : fail_to_open(code, path);
    }
    require_regular(file, path);
    BY_HANDLE_FILE_INFORMATION about{};
    if (GetFileInformationByHandle(file.get(), &about) == 0 ||
        (about.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        fail_as_irregular(path);
    }
    return file;
}

// Rights that were given to this file alone; those of its folder a new file has anyway. A medium
// without rights, or a user who may not give them, leaves it at those of the folder.
void take_permissions(const Handle& file, const std::string& model) {
    PSECURITY_DESCRIPTOR rights = nullptr;
    PACL list = nullptr;
    std::wstring name = system_name(model);
    if (GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                              nullptr, &list, nullptr, &rights) != ERROR_SUCCESS) {
        return;
    }
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    if (list != nullptr && GetSecurityDescriptorControl(rights, &control, &revision) != 0) {
        const DWORD inheritance = (control & SE_DACL_PROTECTED) != 0
                                      ? PROTECTED_DACL_SECURITY_INFORMATION
                                      : UNPROTECTED_DACL_SECURITY_INFORMATION;
        SetSecurityInfo(file.get(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inheritance,
                        nullptr, nullptr, list, nullptr);
    }
    LocalFree(rights);
}

void take_hidden(const std::string& path, const std::string& model) {
    constexpr DWORD kept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
    const DWORD attributes = GetFileAttributesW(system_name(model).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kept) != 0) {
        SetFileAttributesW(system_name(path).c_str(), attributes & kept);
    }
}

FolderEntry entry_of(const std::string& folder, const WIN32_FIND_DATAW& found) {
    FolderEntry entry{narrow_text(found.cFileName)};
    const bool is_folder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    // Links and mount points stand for another name; files that a cloud service has not fetched
    // yet are marked in the same way, but are what they seem.
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
        IsReparseTagNameSurrogate(found.dwReserved0)) {
        const DWORD target = attributes_behind_links(join_path(folder, entry.name));
        entry.file = target != INVALID_FILE_ATTRIBUTES && (target & FILE_ATTRIBUTE_DIRECTORY) == 0;
        return entry;
    }
    entry.folder = is_folder;
    entry.file = !is_folder;
    return entry;
}

std::string without_prefix(const std::wstring& name) {
    if (name.starts_with(L"\\\\?\\UNC\\")) {
        return "\\\\" + narrow_text(name.substr(8));
    }
    return narrow_text(name.starts_with(L"\\\\?\\") ? name.substr(4) : name);
}

class WindowsDisk final : public Disk {
  public:
    bool is_file(const std::string& path) override { return is_file_behind_links(path); }

    bool is_folder(const std::string& path) override {
        const DWORD attributes = attributes_behind_links(path);
        return attributes != INVALID_FILE_ATTRIBUTES &&
               (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    }

    // Rights, groups, policies and protected folders together are not to be foretold: a file that
    // disappears by itself tries it out.
    bool is_writable_folder(const std::string& path) override {
        if (!is_folder(path)) {
            return false;
        }
        const std::string trial =
            join_path(path, "morvane-" + std::to_string(GetCurrentProcessId()) + "-" +
                                std::to_string(GetTickCount64()) + ".tmp");
        const Handle file(
            CreateFileW(system_name(trial).c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                        FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        return file.valid();
    }

    FileStamp stamp(const std::string& path) override {
        const Handle file = open_to_look(path);
        BY_HANDLE_FILE_INFORMATION about{};
        FILE_BASIC_INFO times{};
        if (!file.valid() || GetFileInformationByHandle(file.get(), &about) == 0 ||
            GetFileInformationByHandleEx(file.get(), FileBasicInfo, &times, sizeof times) == 0) {
            fail(GetLastError(), path);
        }
        return {joined(about.nFileSizeHigh, about.nFileSizeLow), nanoseconds(times.LastWriteTime),
                nanoseconds(times.ChangeTime), about.dwVolumeSerialNumber,
                joined(about.nFileIndexHigh, about.nFileIndexLow)};
    }

    std::string resolve_links(const std::string& path) override {
        const DWORD attributes = GetFileAttributesW(system_name(path).c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES ||
            (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
            return path;
        }
        const Handle target = open_to_look(path);
        if (!target.valid()) {
            throw RuntimeError(ErrorNumber::PathFileAccess, path + " is a link to nowhere");
        }
        std::wstring name(32768, L'\0');
        name.resize(GetFinalPathNameByHandleW(target.get(), name.data(),
                                              static_cast<DWORD>(name.size()), 0));
        return name.empty() ? path : without_prefix(name);
    }

    std::uint64_t link_count(const std::string& path) override {
        const Handle file = open_to_look(path);
        BY_HANDLE_FILE_INFORMATION about{};
        return file.valid() && GetFileInformationByHandle(file.get(), &about) != 0
                   ? about.nNumberOfLinks
                   : 0;
    }

    std::vector<FolderEntry> list_folder(const std::string& path) override {
        if (is_file(path)) {
            fail(ERROR_DIRECTORY, path);
        }
        if (path.empty()) {
            fail_to_create(ERROR_PATH_NOT_FOUND, path);
        }
        WIN32_FIND_DATAW found{};
        const std::unique_ptr<void, BOOL(WINAPI*)(HANDLE)> search(
            FindFirstFileExW(system_name(join_path(path, "*")).c_str(), FindExInfoBasic, &found,
                             FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH),
            FindClose);
        std::vector<FolderEntry> entries;
        bool more = search.get() != INVALID_HANDLE_VALUE;
        while (more) {
            const std::wstring_view name = found.cFileName;
            if (name != L"." && name != L"..") {
                entries.push_back(entry_of(path, found));
            }
            more = FindNextFileW(search.get(), &found) != 0;
        }
        // The root of an empty drive has not even "." in it.
        const DWORD code = GetLastError();
        if (code != ERROR_NO_MORE_FILES && !(code == ERROR_FILE_NOT_FOUND && is_folder(path))) {
            fail_to_create(code, path);
        }
        std::sort(entries.begin(), entries.end(),
                  [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
        return entries;
    }

    std::unique_ptr<ReadableFile> open_for_reading(const std::string& path) override {
        Handle file(CreateFileW(system_name(path).c_str(), GENERIC_READ, share_all, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file.valid()) {
            fail_to_open(GetLastError(), path);
        }
        require_regular(file, path);
        LARGE_INTEGER size{};
        if (GetFileSizeEx(file.get(), &size) == 0) {
            fail(GetLastError(), path);
        }
        return std::make_unique<WindowsReadableFile>(std::move(file), path,
                                                     static_cast<std::uint64_t>(size.QuadPart));
    }

    std::unique_ptr<WritableFile> create_temporary(const std::string& path,
                                                   const std::string& model) override {
        Handle file = open_exclusively(path);
        take_permissions(file, model);
        take_hidden(path, model);
        auto result = std::make_unique<WindowsWritableFile>(std::move(file), path);
        try {
            result->truncate(0);
        } catch (const RuntimeError&) {
            result.reset();
            DeleteFileW(system_name(path).c_str());
            throw;
        }
        return result;
    }

    std::unique_ptr<WritableFile> open_for_update(const std::string& path) override {
        return open_writable(path, GENERIC_WRITE);
    }

    std::unique_ptr<WritableFile> open_for_appending(const std::string& path) override {
        return open_writable(path, FILE_APPEND_DATA | FILE_WRITE_ATTRIBUTES | SYNCHRONIZE);
    }

    // Not ReplaceFileW: when that fails in the middle, the old file is gone and the new one still
    // has its temporary name. This leaves one or the other.
    void rename(const std::string& from, const std::string& to) override {
        const std::wstring source = system_name(from);
        const std::wstring target = system_name(to);
        // Whoever protects a file means that file; not every file system minds it by itself.
        const DWORD attributes = GetFileAttributesW(target.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
            fail(ERROR_ACCESS_DENIED, to);
        }
        const DWORD code = done_patiently([&] {
            return MoveFileExW(source.c_str(), target.c_str(),
                               MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
        });
        if (code != ERROR_SUCCESS) {
            fail(code, to);
        }
    }

    void remove(const std::string& path) override {
        const std::wstring name = system_name(path);
        const DWORD code = done_patiently([&] { return DeleteFileW(name.c_str()) != 0; });
        if (code != ERROR_SUCCESS) {
            fail(code, path);
        }
    }

    void create_folder(const std::string& path) override {
        if (is_folder(path) || CreateDirectoryW(system_name(path).c_str(), nullptr) != 0) {
            return;
        }
        const DWORD code = GetLastError();
        const std::string parent = folder_part(path);
        if (code != ERROR_PATH_NOT_FOUND || parent.empty() || is_folder(parent)) {
            fail_to_create(code, path);
        }
        if (is_file(parent)) {
            fail(ERROR_DIRECTORY, path);
        }
        create_folder(parent);
        if (CreateDirectoryW(system_name(path).c_str(), nullptr) == 0 && !is_folder(path)) {
            fail_to_create(GetLastError(), path);
        }
    }

    // MOVEFILE_WRITE_THROUGH has done it.
    void sync_folder(const std::string& /*path*/) override {}
};

} // namespace

std::unique_ptr<Disk> make_system_disk() {
    return std::make_unique<WindowsDisk>();
}

} // namespace morvane
