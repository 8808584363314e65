// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/bgl_file.h"

#include "base/errors.h"
#include "base/paths.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <array>

namespace morvane {

namespace {

// Fills every field of a record from `bytes`, whose first byte is at `start` in the file.
template <typename Record>
Record decode(std::string_view bytes, std::size_t start) {
    Record record;
    for_each_field(record, [&](std::size_t offset, const char* /*name*/, auto& field) {
        field = little_endian<std::remove_reference_t<decltype(field)>>(bytes, offset - start);
    });
    return record;
}

template <std::size_t size>
std::string_view read_record(ReadableFile& file, std::size_t offset,
                             std::array<char, size>& buffer) {
    buffer.fill(0);
    file.read_at(offset, buffer.data(), size);
    return {buffer.data(), size};
}

// Whether an open failed because there is no such file: a name that cannot exist (below a file, too
// long, a link in a circle) is as missing as any other.
bool is_missing(Disk& disk, const std::string& path, const RuntimeError& error) {
    return error.code() == ErrorNumber::FileNotFound || disk.is_folder(path) ||
           (error.code() == ErrorNumber::PathFileAccess && !disk.is_file(path));
}

// One call instead of a question and a call: a search opens tens of thousands of files.
std::unique_ptr<ReadableFile> open_if_there(Disk& disk, const std::string& path) {
    try {
        return disk.open_for_reading(path);
    } catch (const RuntimeError& error) {
        if (is_missing(disk, path, error)) {
            return nullptr;
        }
        throw;
    }
}

} // namespace

BglHeader decode_header(std::string_view bytes) {
    return decode<BglHeader>(bytes, 0);
}

HeaderExtension decode_extension(std::string_view bytes) {
    return decode<HeaderExtension>(bytes, header_size);
}

bool is_valid_bgl(const BglHeader& header) {
    return header.FL_world_set == 1 || header.FL_world_set == 3 || header.FL_world_set == 4;
}

InvalidFileList::InvalidFileList(Disk& disk, const std::string& program_folder)
    : disk_(disk), path_(join_path(program_folder, "error.txt")) {}

InvalidFileList::~InvalidFileList() = default;

void InvalidFileList::add(const std::string& path) {
    if (!file_) {
        file_ = disk_.open_for_appending(path_);
    }
    TextWriter out(*file_);
    out.line(absolute_path(path));
    out.flush();
}

OpenedBgl open_bgl(Disk& disk, const std::string& path, InvalidFileList& invalid_files) {
    OpenedBgl bgl;
    if (!has_ending(path, ".BGL")) {
        return bgl;
    }
    bgl.file = open_if_there(disk, path);
    if (!bgl.file) {
        return bgl;
    }
    std::array<char, header_size> header_bytes;
    bgl.header = decode_header(read_record(*bgl.file, 0, header_bytes));
    if (!is_valid_bgl(bgl.header)) {
        bgl.file.reset();
        bgl.state = BglState::Invalid;
        invalid_files.add(path);
        return bgl;
    }
    if (bgl.header.FL_magic != 0) {
        std::array<char, extension_size> extension_bytes;
        bgl.extension = decode_extension(read_record(*bgl.file, header_size, extension_bytes));
    }
    bgl.state = BglState::Valid;
    return bgl;
}

} // namespace morvane
