// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace morvane {

class Disk;
class TextWriter;

/// The bytes of a file, allocated once and not cleared first.
struct FileBytes {
    std::unique_ptr<char[]> data;
    std::size_t size = 0;

    std::string_view view() const { return {data.get(), size}; }
};

/// Memory for `size` bytes. Throws OutOfMemory.
FileBytes allocate_bytes(std::uint64_t size);

/// Reads a file whole. Throws RuntimeError, OutOfMemory for one that is too large.
FileBytes read_bytes(Disk& disk, const std::string& path);

/// Writes all bytes of a file from `offset` on; returns how many there were. Throws RuntimeError.
std::uint64_t copy_bytes(Disk& disk, const std::string& path, TextWriter& out,
                         std::uint64_t offset = 0);

/// Copies every byte of `source` over the start of `destination`. The destination is not shortened:
/// what an older, longer file holds after the copied length stays in place.
/// The destination takes the permissions of `permissions_of`; when that is empty it keeps its own.
/// Throws RuntimeError; the old destination is then whole.
void copy_file_bytes(Disk& disk, const std::string& source, const std::string& destination,
                     const std::string& permissions_of = {});

} // namespace morvane
