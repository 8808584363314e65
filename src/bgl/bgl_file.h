// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/header.h"

#include <memory>
#include <string>
#include <string_view>

namespace morvane {

class Disk;
class ReadableFile;
class WritableFile;

/// Reads a header from the first `header_size` bytes of a file, which must all be there.
BglHeader decode_header(std::string_view bytes);

/// Reads an extension from the `extension_size` bytes after the header.
HeaderExtension decode_extension(std::string_view bytes);

/// Whether `FL_world_set` is 1, 3 or 4. A 2 makes a file invalid although the report has a line
/// for that kind; this is intended.
bool is_valid_bgl(const BglHeader& header);

/// The list "error.txt" in the program folder, to which the paths of invalid files are appended.
class InvalidFileList {
  public:
    InvalidFileList(Disk& disk, const std::string& program_folder);
    InvalidFileList(const InvalidFileList&) = delete;
    InvalidFileList& operator=(const InvalidFileList&) = delete;
    ~InvalidFileList();

    /// Appends the full path as one line. Throws RuntimeError.
    void add(const std::string& path);

  private:
    Disk& disk_;
    std::string path_;
    std::unique_ptr<WritableFile> file_; // stays open, since a search can add thousands of lines
};

enum class BglState {
    NotABgl, // missing, or its name does not end in ".bgl"
    Invalid, // its header is not that of a BGL file
    Valid,
};

/// What opening a file as a BGL file found.
struct OpenedBgl {
    BglState state = BglState::NotABgl;
    std::unique_ptr<ReadableFile> file{}; // open when valid
    BglHeader header{};
    HeaderExtension extension{};
};

/// Opens a BGL file and reads its header, and the extension when the header is valid and
/// `FL_magic` is not 0. What a short file does not hold reads as zeros. An invalid file is closed
/// again and added to the list. Throws RuntimeError when a file that is there cannot be read.
OpenedBgl open_bgl(Disk& disk, const std::string& path, InvalidFileList& invalid_files);

} // namespace morvane
