// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/read_ahead.h"
#include "system/file_bytes.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

class ReadableFile;
class TextWriter;

/// A text file held as numbered lines.
///
/// Lines are counted from 1; element 0 is the decimal text of the number of lines + 1, and after
/// the last line there is one spare element, empty after loading, that is written with the others.
/// The file's bytes are kept once and unchanged lines are views of them; changed and added lines
/// are kept beside. A view that `line` returned stays valid as long as the store or a copy of it
/// lives, also when the line is changed later.
class LineStore {
  public:
    /// A store without lines: element 0 is "1", element 1 the spare.
    LineStore();
    /// Splits the bytes at CR LF, LF and lone CR. A last line without an end counts. Throws
    /// OutOfMemory.
    explicit LineStore(FileBytes bytes);
    explicit LineStore(const std::vector<std::string>& lines);
    /// Reads a file and splits it, each stretch of so many bytes while the next come in. Throws
    /// RuntimeError.
    static LineStore read(ReadableFile& file, std::size_t stretch = ReadAhead::usual_stretch);

    /// Element 0 as a number: the index of the spare element.
    std::size_t upper() const { return lines_.size() - 1; }
    /// Number of lines, the spare element not counted.
    std::size_t count() const { return upper() - 1; }
    /// Element 0: decimal text.
    std::string element0() const;
    /// The bytes that the store was made of; empty when it was made of lines.
    std::string_view loaded_bytes() const { return bytes_ ? bytes_->view() : std::string_view(); }

    /// Line `index`, 1 .. upper(). Throws SubscriptOutOfRange elsewhere.
    std::string_view line(std::size_t index) const {
        require_index(index);
        return lines_[index];
    }
    /// Lines of the store that follow each other in the file.
    struct Run {
        std::string_view bytes; // with the line ends
        std::size_t count = 0;  // of lines
    };
    /// The lines from `first` on, `last` at most, that the file holds just as they are written;
    /// none when line `first` was changed, and none in a file that has other ends than CR LF.
    Run unchanged_run(std::size_t first, std::size_t last) const;
    void set_line(std::size_t index, std::string_view text);
    /// Puts "; " in front of the line, which is otherwise left as it is.
    void comment_out(std::size_t index);

    /// Inserts lines before line `before` (1 .. upper(); upper() appends).
    void insert_lines(std::size_t before, const std::vector<std::string>& texts);
    /// Lines that are to be inserted before a line.
    struct Insertion {
        std::size_t before = 0;
        const std::vector<std::string>* texts = nullptr; // not kept
    };
    /// A copy with lines inserted at several places, made in one pass. The places count the lines
    /// of this store and ascend. Throws SubscriptOutOfRange.
    LineStore with(const std::vector<Insertion>& insertions) const;
    /// Removes lines first .. last. Throws SubscriptOutOfRange unless 1 <= first <= last <=
    /// count().
    void erase_lines(std::size_t first, std::size_t last);
    void append_line(std::string_view text);

    class KeptLines;
    /// Remembers `count` lines from `first` on as they are now. Throws SubscriptOutOfRange.
    KeptLines keep_lines(std::size_t first, std::size_t count) const;
    /// Exchanges the lines that were kept with what is in their places now, so that a second
    /// call takes the first back. No text is copied. The store must have kept its number of lines.
    void exchange(KeptLines& kept);

  private:
    // Returns how many more bytes have come in; 0 at the end, also when asked again.
    using ReadMore = std::function<std::size_t()>;

    // Begins with the `first` bytes; returns how many there were in the end.
    std::size_t split(const char* bytes, std::size_t first, const ReadMore& read_more);
    // Adds the lines up to `end`, where there is a LF (`at_feed`) or the file ends.
    void add_lines(const char* begin, const char* end, bool at_feed);
    std::string_view keep(std::string_view text);
    bool is_in_file(std::string_view line) const;
    void require_index(std::size_t index) const {
        if (index < 1 || index > upper()) {
            refuse_index(index);
        }
    }
    [[noreturn]] static void refuse_index(std::size_t index);

    std::shared_ptr<const FileBytes> bytes_;
    bool only_crlf_ = true;               // no line of the file ends otherwise
    std::vector<std::string_view> lines_; // [0] is not used, the last is the spare
    // Changed and added lines; grows only, and a copy of the store goes on with the same.
    std::shared_ptr<std::pmr::monotonic_buffer_resource> texts_ =
        std::make_shared<std::pmr::monotonic_buffer_resource>();
};

/// Lines of a store as they were at some time. Their texts stay in the store.
class LineStore::KeptLines {
  public:
    KeptLines() = default;
    std::size_t count() const { return lines_.size(); }
    /// Memory that is held beside the store.
    std::size_t bytes() const { return lines_.capacity() * sizeof(std::string_view); }

  private:
    friend class LineStore;
    std::size_t first_ = 0;
    std::vector<std::string_view> lines_;
};

} // namespace morvane
