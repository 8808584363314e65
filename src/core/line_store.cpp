#include "core/line_store.h"

#include "core/errors.h"
#include "core/text.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace morvane {

namespace {

// A place is packed into 64 bits, because a set of a million lines has a million of them: the
// highest bit says "aside" with the number of the text below it; otherwise 40 bits of offset
// stand above 23 bits of length. Longer lines are kept aside.
constexpr unsigned length_bits = 23;
constexpr std::uint64_t length_mask = (std::uint64_t{1} << length_bits) - 1;
constexpr std::uint64_t aside_flag = std::uint64_t{1} << 63;
constexpr std::uint64_t max_offset = (std::uint64_t{1} << 40) - 1;
constexpr std::uint64_t empty_place = 0;

const char* find_byte(const char* begin, const char* end, char byte) {
    const auto size = static_cast<std::size_t>(end - begin);
    const void* found = size == 0 ? nullptr : std::memchr(begin, byte, size);
    return found == nullptr ? end : static_cast<const char*>(found);
}

// Meaningless for a text kept aside.
std::size_t offset_of(std::uint64_t place) {
    return static_cast<std::size_t>(place >> length_bits);
}

std::size_t end_of(std::uint64_t place) {
    return offset_of(place) + static_cast<std::size_t>(place & length_mask);
}

// How many lines the file is likely to have, by its beginning. Never so many that the places take
// more than half the file's size, for a beginning may mislead.
std::size_t estimated_lines(std::string_view bytes) {
    const std::string_view sample = bytes.substr(0, 65536);
    const auto ends = static_cast<std::size_t>(std::count(sample.begin(), sample.end(), '\n'));
    const std::size_t samples = sample.empty() ? 0 : bytes.size() / sample.size() + 1;
    return std::min((ends + 1) * samples, bytes.size() / 16 + sample.size()) + 2;
}

} // namespace

LineStore::LineStore() : lines_{empty_place, empty_place} {}

LineStore::LineStore(FileBytes bytes)
    : bytes_(std::make_shared<const FileBytes>(std::move(bytes))) {
    try {
        split(bytes_->view());
    } catch (const std::bad_alloc&) {
        throw RuntimeError(ErrorNumber::OutOfMemory);
    }
}

LineStore::LineStore(const std::vector<std::string>& lines) : LineStore() {
    insert_lines(1, lines);
}

LineStore::LineStore(const LineStore& other) = default;
LineStore& LineStore::operator=(const LineStore& other) = default;

void LineStore::split(std::string_view bytes) {
    lines_.reserve(estimated_lines(bytes));
    lines_.push_back(empty_place);
    const char* const begin = bytes.data();
    const char* const end = begin + bytes.size();
    const char* line = begin;
    const char* next_lf = find_byte(line, end, '\n');
    const char* next_cr = find_byte(line, end, '\r');
    while (line != end) {
        const char* const stop = std::min(next_lf, next_cr);
        lines_.push_back(file_place(bytes, static_cast<std::size_t>(line - begin),
                                    static_cast<std::size_t>(stop - begin)));
        const bool both = stop == next_cr && next_lf != end && next_lf == stop + 1;
        only_crlf_ = only_crlf_ && (both || stop == end);
        line = stop == end ? end : stop + (both ? 2 : 1);
        next_lf = next_lf < line ? find_byte(line, end, '\n') : next_lf;
        next_cr = next_cr < line ? find_byte(line, end, '\r') : next_cr;
    }
    lines_.push_back(empty_place);
}

LineStore::Place LineStore::file_place(std::string_view bytes, std::size_t begin, std::size_t end) {
    const std::size_t length = end - begin;
    if (length > length_mask || begin > max_offset) {
        return keep_aside(std::string(bytes.substr(begin, length)));
    }
    return (static_cast<Place>(begin) << length_bits) | length;
}

LineStore::Place LineStore::keep_aside(std::string text) {
    if (text.empty()) {
        return empty_place;
    }
    aside_.push_back(std::move(text));
    return aside_flag | (aside_.size() - 1);
}

void LineStore::require_index(std::size_t index) const {
    if (index < 1 || index > upper()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "line " + to_text(index));
    }
}

std::string LineStore::element0() const {
    return to_text(upper());
}

std::string_view LineStore::line(std::size_t index) const {
    require_index(index);
    const Place place = lines_[index];
    if ((place & aside_flag) != 0) {
        return aside_[place & ~aside_flag];
    }
    const std::size_t length = place & length_mask;
    return length == 0 ? std::string_view() : bytes_->view().substr(offset_of(place), length);
}

LineStore::Run LineStore::unchanged_run(std::size_t first, std::size_t last) const {
    require_index(first);
    require_index(last);
    const std::string_view bytes = bytes_ && only_crlf_ ? bytes_->view() : std::string_view();
    const auto has_end = [&](Place place) {
        return place != empty_place && (place & aside_flag) == 0 &&
               end_of(place) + 2 <= bytes.size();
    };
    if (!has_end(lines_[first])) {
        return {};
    }
    std::size_t i = first;
    while (i < last && has_end(lines_[i + 1]) &&
           offset_of(lines_[i + 1]) == end_of(lines_[i]) + 2) {
        ++i;
    }
    const std::size_t begin = offset_of(lines_[first]);
    return {bytes.substr(begin, end_of(lines_[i]) + 2 - begin), i + 1 - first};
}

void LineStore::set_line(std::size_t index, std::string text) {
    require_index(index);
    lines_[index] = keep_aside(std::move(text));
}

void LineStore::comment_out(std::size_t index) {
    set_line(index, "; " + std::string(line(index)));
}

void LineStore::insert_lines(std::size_t before, const std::vector<std::string>& texts) {
    require_index(before);
    std::vector<Place> places;
    places.reserve(texts.size());
    for (const std::string& text : texts) {
        places.push_back(keep_aside(text));
    }
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(before), places.begin(),
                  places.end());
}

void LineStore::erase_lines(std::size_t first, std::size_t last) {
    require_index(first);
    if (last < first || last > count()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "line " + to_text(last));
    }
    const auto begin = lines_.begin() + static_cast<std::ptrdiff_t>(first);
    lines_.erase(begin, lines_.begin() + static_cast<std::ptrdiff_t>(last) + 1);
}

void LineStore::append_line(std::string text) {
    lines_.insert(lines_.end() - 1, keep_aside(std::move(text)));
}

} // namespace morvane
