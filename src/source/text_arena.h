#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// Keeps texts one behind the other in a few large pieces of memory: a million changed lines would
/// take twice the room as strings of their own. What was added stays where it is as long as the
/// arena or a copy of it lives. Copies share what they have in common.
class TextArena {
  public:
    /// Names a text that was added; less than 2^63.
    using Handle = std::uint64_t;

    TextArena() = default;
    TextArena(const TextArena& other);
    TextArena& operator=(const TextArena& other);
    TextArena(TextArena&&) noexcept = default;
    TextArena& operator=(TextArena&&) noexcept = default;
    ~TextArena() = default;

    Handle add(std::string_view text);

    std::string_view operator[](Handle handle) const {
        if ((handle & long_flag) != 0) {
            return *long_texts_[handle & ~long_flag];
        }
        const std::size_t offset = handle >> length_bits;
        return {pieces_[offset / piece_size].get() + offset % piece_size,
                static_cast<std::size_t>(handle & length_mask)};
    }

  private:
    static constexpr std::size_t piece_size = std::size_t{1} << 20;
    // Longer texts have memory of their own, so that no piece is left nearly empty.
    static constexpr std::size_t longest = piece_size / 8;
    // Above the length stands the offset in all pieces together.
    static constexpr unsigned length_bits = 23;
    static constexpr Handle length_mask = (Handle{1} << length_bits) - 1;
    static constexpr Handle long_flag = Handle{1} << 62;
    static_assert(longest <= length_mask);

    std::vector<std::shared_ptr<char[]>> pieces_;
    std::size_t used_ = piece_size; // of the last piece; all of it when it is shared with another
    std::vector<std::shared_ptr<const std::string>> long_texts_;
};

} // namespace morvane
