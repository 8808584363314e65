#include "source/text_arena.h"

#include <cstring>

namespace morvane {

// The copy begins a piece of its own: the room behind the last text is the original's.
TextArena::TextArena(const TextArena& other)
    : pieces_(other.pieces_), long_texts_(other.long_texts_) {}

TextArena& TextArena::operator=(const TextArena& other) {
    return *this = TextArena(other);
}

TextArena::Handle TextArena::add(std::string_view text) {
    if (text.size() > longest) {
        long_texts_.push_back(std::make_shared<const std::string>(text));
        return long_flag | (long_texts_.size() - 1);
    }
    if (used_ + text.size() >= piece_size) { // an empty text stands inside a piece, too
        pieces_.push_back(std::make_shared_for_overwrite<char[]>(piece_size));
        used_ = 0;
    }
    std::memcpy(pieces_.back().get() + used_, text.data(), text.size());
    const std::size_t offset = (pieces_.size() - 1) * piece_size + used_;
    used_ += text.size();
    return (static_cast<Handle>(offset) << length_bits) | text.size();
}

} // namespace morvane
