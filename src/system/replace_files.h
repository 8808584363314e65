// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

class Disk;
class WritableFile;

/// Writes bytes and text lines to a file through a buffer, counting what the file took.
class TextWriter {
  public:
    explicit TextWriter(WritableFile& file) : file_(file) {}
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    /// Throws DiskFull when the file takes no more bytes, besides what the file itself throws.
    void write(std::string_view bytes);
    /// Writes the text and CR LF, the line end of every file this program writes.
    void line(std::string_view text);
    /// Hands everything buffered to the file. Must be called at the end.
    void flush();

  private:
    void put(std::string_view bytes);

    WritableFile& file_;
    std::string buffer_;
};

/// A file to be replaced and what it is to hold.
struct FileReplacement {
    std::string path;
    std::function<void(TextWriter&)> write;
    std::string permissions_of{}; // the file whose permissions it takes; empty: it keeps its own
};

/// Replaces files whole, so that each is always the old one or the new one.
///
/// Every new content is written to a temporary file beside its target ("NAME.morvane-tmp"),
/// counted, brought to the medium, and only when all are complete are they renamed into place in
/// the order given. When a rename fails, those already replaced are put back from a copy
/// ("NAME.morvane-old"). Symbolic links are followed, permissions kept; a file that has several
/// names (hard links) is written in place after a copy was kept. A file that may not be written is
/// PermissionDenied even where its folder would let it be replaced.
///
/// A run that is killed leaves each file the old one or the new one, and at most those two beside
/// it, which the next run replaces or removes. Only a file written in place can be a mixture then:
/// the next run notices, refuses, and says where the old content is.
///
/// Throws RuntimeError; then all files are as they were and no temporary file is left. Should even
/// the putting back fail, the error says where the old content is.
void replace_files(Disk& disk, const std::vector<FileReplacement>& files);

/// replace_files for one file.
void replace_file(Disk& disk, const std::string& path,
                  const std::function<void(TextWriter&)>& write);

} // namespace morvane
