#include "bgl/open_bgl.h"

#include "base/errors.h"
#include "base/paths.h"
#include "system/absolute_path.h"
#include "system/disk.h"
#include "system/text_writer.h"

#include <array>

namespace morvane {

namespace {

template <std::size_t size>
std::string_view read_record(ReadableFile& file, std::size_t offset,
                             std::array<char, size>& buffer) {
    buffer.fill(0);
    file.read_at(offset, buffer.data(), size);
    return {buffer.data(), size};
}

// One call instead of a question and a call: a search opens tens of thousands of files.
std::unique_ptr<ReadableFile> open_if_there(Disk& disk, const std::string& path) {
    try {
        return disk.open_for_reading(path);
    } catch (const RuntimeError& error) {
        if (error.code() == ErrorNumber::FileNotFound || disk.is_folder(path)) {
            return nullptr;
        }
        throw;
    }
}

} // namespace

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
        bgl.handle = invalid_bgl;
        invalid_files.add(path);
        return bgl;
    }
    if (bgl.header.FL_magic != 0) {
        std::array<char, extension_size> extension_bytes;
        bgl.extension = decode_extension(read_record(*bgl.file, header_size, extension_bytes));
    }
    bgl.handle = 1;
    return bgl;
}

} // namespace morvane
