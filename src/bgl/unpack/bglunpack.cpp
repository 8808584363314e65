// SPDX-License-Identifier: GPL-3.0-or-later

// bglunpack INPUT OUTPUT FOLDER: writes the uncompressed contents of the BGL file INPUT to OUTPUT.
//
// The simulator's closed library sup.dll does the work. It is called in this small process of its
// own, because a fault in it must not take the user's work along, and because it is 32-bit code.
// FOLDER is where sup.dll is looked for first. Ends with one of the statuses in bglunpack.h.

#include "bgl/unpack/bglunpack.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <windows.h>

namespace {

using namespace morvane;

using GetData = int(__stdcall*)(const char* name, DWORD* size, void** data);
using CompleteOperation = int(__stdcall*)(DWORD size, void* data);

struct Bytes {
    std::unique_ptr<char[]> data;
    DWORD size = 0;
};

int fail(UnpackStatus status, const char* message) {
    std::fprintf(stderr, "bglunpack: %s\n", message);
    return status;
}

std::wstring environment(const wchar_t* name) {
    std::wstring value(32768, L'\0'); // the most that a variable can hold
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    // Under wine the variable may hold a name of the system underneath, which shows as drive Z.
    return !value.empty() && value.front() == L'/' ? L"Z:" + value : value;
}

HMODULE load_library(const std::wstring& folder) {
    for (const std::wstring& name : {folder + L"\\sup.dll", environment(L"MORVANE_SUP_DLL")}) {
        if (!name.empty() && GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES) {
            if (HMODULE library =
                    LoadLibraryExW(name.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
                return library;
            }
        }
    }
    // Not from the current folder: whoever left a library of that name there would have it run.
    return LoadLibraryExW(L"sup.dll", nullptr, LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

template <typename Function>
Function find_function(HMODULE library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

// Names go to the library in the system's 8-bit letters.
std::string ansi_name(const std::wstring& name) {
    const int length = static_cast<int>(name.size());
    std::string result(name.size() * 4, '\0');
    const int size = WideCharToMultiByte(CP_ACP, 0, name.data(), length, result.data(),
                                         static_cast<int>(result.size()), nullptr, nullptr);
    result.resize(static_cast<std::size_t>(size));
    return result;
}

Bytes uncompressed_bytes(const std::wstring& path, GetData get_data, CompleteOperation complete) {
    const auto name = name_buffer(ansi_name(path));
    Bytes bytes;
    DWORD size = 0;
    void* data = nullptr;
    if (get_data(name.data(), &size, &data) != 0 || size == 0 || data == nullptr) {
        return bytes;
    }
    bytes.data.reset(new (std::nothrow) char[size]);
    if (bytes.data != nullptr) {
        std::memcpy(bytes.data.get(), data, size);
        bytes.size = size;
    }
    complete(size, data);
    return bytes;
}

bool write_file(const std::wstring& path, const Bytes& bytes) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    const bool complete = WriteFile(file, bytes.data.get(), bytes.size, &written, nullptr) != 0 &&
                          written == bytes.size;
    const bool closed = CloseHandle(file) != 0;
    if (!complete || !closed) {
        DeleteFileW(path.c_str()); // half a file is worse than none
    }
    return complete && closed;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 4) {
        return fail(unpack_wrong_usage, "usage: bglunpack INPUT OUTPUT FOLDER");
    }
    // No box may wait for a click: whoever started this program waits for its end.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    HMODULE library = load_library(argv[3]);
    if (library == nullptr) {
        return fail(unpack_no_library, "sup.dll was not found or cannot be loaded");
    }
    const auto get_data = find_function<GetData>(library, "FSGetUncompressedBGLData");
    const auto complete = find_function<CompleteOperation>(library, "FSCompleteBGLOperation");
    if (get_data == nullptr || complete == nullptr) {
        return fail(unpack_no_function, "sup.dll lacks a function");
    }
    const Bytes bytes = uncompressed_bytes(argv[1], get_data, complete);
    if (bytes.size == 0) {
        return fail(unpack_nothing, "sup.dll gave no data");
    }
    if (!write_file(argv[2], bytes)) {
        return fail(unpack_cannot_write, "the output cannot be written");
    }
    return unpack_done;
}
