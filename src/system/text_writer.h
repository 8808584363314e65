// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace morvane {

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

} // namespace morvane
