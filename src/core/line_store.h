#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// The bytes of a file, allocated once and not cleared first.
struct FileBytes {
    std::unique_ptr<char[]> data;
    std::size_t size = 0;

    std::string_view view() const { return {data.get(), size}; }
};

/// A text file held as numbered lines.
///
/// Lines are counted from 1; element 0 is the decimal text of the number of lines + 1, and behind
/// the last line stands one spare element, empty after loading, that is written with the others.
/// The file's bytes are kept once and unchanged lines are views on them; changed and added lines
/// lie beside. A view that `line` gave stays valid as long as the store lives, also when the line
/// is changed later.
class LineStore {
  public:
    /// A store without lines: element 0 is "1", element 1 the spare.
    LineStore();
    /// Splits the bytes at CR LF, LF and lone CR. A last line without an end counts. Throws
    /// OutOfMemory.
    explicit LineStore(FileBytes bytes);
    explicit LineStore(const std::vector<std::string>& lines);

    LineStore(const LineStore& other);
    LineStore& operator=(const LineStore& other);
    LineStore(LineStore&&) noexcept = default;
    LineStore& operator=(LineStore&&) noexcept = default;
    ~LineStore() = default;

    /// Element 0 as a number: the index of the spare element.
    std::size_t upper() const { return lines_.size() - 1; }
    /// Number of lines, the spare element not counted.
    std::size_t count() const { return upper() - 1; }
    /// Element 0 as it stands: decimal text.
    std::string element0() const;
    /// The bytes that the store was made of; empty when it was made of lines.
    std::string_view loaded_bytes() const { return bytes_ ? bytes_->view() : std::string_view(); }

    /// Line `index`, 1 .. upper(). Throws SubscriptOutOfRange elsewhere.
    std::string_view line(std::size_t index) const;
    /// Lines of the store that lie one behind the other in the file.
    struct Run {
        std::string_view bytes; // with the line ends
        std::size_t count = 0;  // of lines
    };
    /// The lines from `first` on, `last` at most, that lie in the file just as they are written;
    /// none when line `first` does not, and none in a file that has other ends than CR LF.
    Run unchanged_run(std::size_t first, std::size_t last) const;
    void set_line(std::size_t index, std::string text);
    /// Puts "; " in front of the line, which is otherwise left as it is.
    void comment_out(std::size_t index);

    /// Inserts lines before line `before` (1 .. upper(); upper() appends).
    void insert_lines(std::size_t before, const std::vector<std::string>& texts);
    /// Removes lines first .. last. Throws SubscriptOutOfRange unless 1 <= first <= last <=
    /// count().
    void erase_lines(std::size_t first, std::size_t last);
    void append_line(std::string text);

  private:
    // Where a line lies: a stretch of the file's bytes, or a text kept aside.
    using Place = std::uint64_t;

    void split(std::string_view bytes);
    Place file_place(std::string_view bytes, std::size_t begin, std::size_t end);
    Place keep_aside(std::string text);
    void require_index(std::size_t index) const;

    std::shared_ptr<const FileBytes> bytes_;
    bool only_crlf_ = true;    // no line of the file ends otherwise
    std::vector<Place> lines_; // [0] stands for element 0 and is not used, the last is the spare
    std::deque<std::string> aside_;
};

} // namespace morvane
