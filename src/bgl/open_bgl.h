#pragma once

#include "bgl/header.h"

#include <memory>
#include <string>

namespace morvane {

class Disk;
class ReadableFile;
class WritableFile;

/// Why there is no open file, or no list of objects. Counts of objects are never negative.
inline constexpr int not_a_bgl_name = -1; // missing, or its name does not end in ".bgl"
inline constexpr int no_library_data = -2;
inline constexpr int compressed_library = -4;
inline constexpr int invalid_bgl = -8;

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

/// A file opened as BGL file, with its header.
struct OpenedBgl {
    int handle = not_a_bgl_name; // not_a_bgl_name, invalid_bgl, or 1: `file` is open
    std::unique_ptr<ReadableFile> file;
    BglHeader header;
    HeaderExtension extension;
};

/// Opens a BGL file and reads its header, and the extension when the header is valid and
/// `FL_magic` is not 0. What a short file does not hold reads as zeros. An invalid file is closed
/// again and added to the list. Throws RuntimeError when a file that is there cannot be read.
OpenedBgl open_bgl(Disk& disk, const std::string& path, InvalidFileList& invalid_files);

} // namespace morvane
