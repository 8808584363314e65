// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/bgl_file.h"
#include "bgl/library_objects.h"
#include "system/disk.h"

#include <random>
#include <string>
#include <vector>

namespace morvane::test {

std::string encode(const BglHeader& header);
std::string encode(const HeaderExtension& extension);

/// An object to be put into a library file.
struct ObjectSpec {
    Guid128 guid{};
    std::uint8_t power = 100;
    std::int32_t stored_scale = 65536;
    std::int32_t type = 0;
    std::string name = "NewObject"; // any length; written without padding
    std::string code = "drawing code";
};

struct LibrarySpec {
    BglHeader header{.FL_world_set = 1};
    HeaderExtension extension{};
    std::size_t library_start = 200; // bytes from the start of the file
    std::vector<ObjectSpec> objects{};
};

/// A library file: header, extension, index with its end mark, object records each followed by its
/// drawing code.
std::string library_file(const LibrarySpec& spec);

/// The same with the 19-byte object records of older simulators: identifier, power, two bytes.
std::string old_library_file(const LibrarySpec& spec);

/// A valid file without library data.
std::string object_file();

/// What a library of this object is listed as.
LibraryObject listed(const ObjectSpec& spec);

/// Objects with random fields, names of 0 to 80 letters and 0 to 300 bytes of drawing code.
std::vector<ObjectSpec> random_objects(std::mt19937& random, std::size_t count);

/// A file in memory that counts what is read.
class MemoryFile final : public ReadableFile {
  public:
    explicit MemoryFile(std::string bytes) : bytes_(std::move(bytes)) {}
    std::uint64_t size() override { return bytes_.size(); }
    std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) override;

    std::size_t bytes_read = 0;
    std::vector<std::pair<std::size_t, std::size_t>> ranges; // first, last + 1 of each read

  private:
    std::string bytes_;
};

/// Reads the header of a file in memory and lists it, as list_library does with a file on disk.
Listing list_bytes(const std::string& bytes);

} // namespace morvane::test
