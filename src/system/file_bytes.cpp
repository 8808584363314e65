// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/file_bytes.h"

#include "base/errors.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <array>
#include <limits>
#include <new>

namespace morvane {

FileBytes allocate_bytes(std::uint64_t size) {
    FileBytes bytes;
    bytes.size = static_cast<std::size_t>(size);
    try {
        bytes.data = std::make_unique_for_overwrite<char[]>(bytes.size);
    } catch (const std::bad_alloc&) {
        throw RuntimeError(ErrorNumber::OutOfMemory);
    }
    return bytes;
}

FileBytes read_bytes(Disk& disk, const std::string& path) {
    const auto file = disk.open_for_reading(path);
    FileBytes bytes = allocate_bytes(file->size());
    file->prepare_for(bytes.data.get(), bytes.size);
    bytes.size = file->read_at(0, bytes.data.get(), bytes.size);
    return bytes;
}

std::uint64_t copy_bytes(Disk& disk, const std::string& path, TextWriter& out,
                         std::uint64_t offset) {
    const auto file = disk.open_for_reading(path);
    std::array<char, 65536> buffer;
    const std::uint64_t start = offset;
    while (const std::size_t got = file->read_at(offset, buffer.data(), buffer.size())) {
        out.write({buffer.data(), got});
        offset += got;
    }
    return offset - start;
}

void copy_file_bytes(Disk& disk, const std::string& source, const std::string& destination,
                     const std::string& permissions_of) {
    const auto write = [&](TextWriter& out) {
        const std::uint64_t copied = copy_bytes(disk, source, out);
        if (disk.is_file(destination)) {
            copy_bytes(disk, destination, out, copied);
        }
    };
    replace_files(disk, {{destination, write, permissions_of}});
}

} // namespace morvane
