#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace morvane {

/// Finds the line ends in bytes that come in a stretch at a time, eight bytes in one step: two line
/// ends lie too near each other for a search that begins anew at each.
class LineEnds {
  public:
    explicit LineEnds(const char* begin) : at_(begin), edge_(begin) {}

    /// Behind the last byte that has come in.
    const char* edge() const { return edge_; }
    void extend(std::size_t count) { edge_ += count; }

    /// The next LF or CR; edge() when there is none.
    const char* next() {
        for (;;) {
            while (found_ == 0) {
                if (edge_ - at_ < word_size) {
                    return next_in_tail();
                }
                std::uint64_t word = 0;
                std::memcpy(&word, at_, sizeof word);
                found_ = small_bytes(word);
                at_ += word_size;
            }
            const char* const byte = at_ - word_size + std::countr_zero(found_) / 8;
            found_ &= found_ - 1;
            if (is_end(*byte)) {
                return byte;
            }
        }
    }

  private:
    static_assert(std::endian::native == std::endian::little, "bytes are counted from the lowest");
    static constexpr std::ptrdiff_t word_size = sizeof(std::uint64_t);

    static bool is_end(char c) { return c == '\n' || c == '\r'; }

    // The highest bit of each byte that is 0 .. 13, as the ends are and hardly anything else; and
    // perhaps, by a borrow, of a byte above such a one.
    static std::uint64_t small_bytes(std::uint64_t word) {
        constexpr std::uint64_t each = 0x0101010101010101;
        return (word - 14 * each) & ~word & (0x80 * each);
    }

    const char* next_in_tail() {
        while (at_ != edge_ && !is_end(*at_)) {
            ++at_;
        }
        return at_ == edge_ ? edge_ : at_++;
    }

    const char* at_; // the bytes from here on were not looked at
    const char* edge_;
    std::uint64_t found_ = 0; // bytes of the word before at_ that are still to be looked at
};

} // namespace morvane
