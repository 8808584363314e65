#include "core/line_store.h"

#include "core/disk.h"
#include "core/errors.h"
#include "core/text.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace morvane {

namespace {

const char* find_byte(const char* begin, const char* end, char byte) {
    const auto size = static_cast<std::size_t>(end - begin);
    const void* found = size == 0 ? nullptr : std::memchr(begin, byte, size);
    return found == nullptr ? end : static_cast<const char*>(found);
}

// How many lines a file of `size` bytes is likely to have, by its beginning. Never so many that the
// places take more than half the file's size, for a beginning may mislead.
std::size_t estimated_lines(std::string_view beginning, std::size_t size) {
    const std::string_view sample = beginning.substr(0, 65536);
    const auto ends = static_cast<std::size_t>(std::count(sample.begin(), sample.end(), '\n'));
    const std::size_t samples = sample.empty() ? 0 : size / sample.size() + 1;
    return std::min((ends + 1) * samples, size / 16 + sample.size()) + 2;
}

} // namespace

LineStore::LineStore() : lines_{empty_place, empty_place} {}

FileBytes allocate_bytes(std::uint64_t size) {
    FileBytes bytes;
    bytes.size = static_cast<std::size_t>(size);
    try {
        bytes.data = std::make_unique_for_overwrite<char[]>(bytes.size);
    } catch (const std::bad_alloc&) {
        throw RuntimeError(ErrorNumber::OutOfMemory);
    }
    return bytes;
}

LineStore::LineStore(FileBytes bytes) {
    split(bytes, bytes.size, [](std::size_t) { return 0; });
    bytes_ = std::make_shared<const FileBytes>(std::move(bytes));
}

LineStore LineStore::read(ReadableFile& file) {
    constexpr std::size_t stretch = std::size_t{512} * 1024;
    FileBytes bytes = allocate_bytes(file.size());
    file.prepare_for(bytes.data.get(), bytes.size);
    LineStore store;
    bytes.size = store.split(bytes, 0, [&](std::size_t there) {
        return file.read_at(there, bytes.data.get() + there, std::min(stretch, bytes.size - there));
    });
    store.bytes_ = std::make_shared<const FileBytes>(std::move(bytes));
    return store;
}

LineStore::LineStore(const std::vector<std::string>& lines) : LineStore() {
    insert_lines(1, lines);
}

LineStore::LineStore(const LineStore& other) = default;
LineStore& LineStore::operator=(const LineStore& other) = default;

std::size_t LineStore::split(const FileBytes& bytes, std::size_t there, const ReadMore& read_more) {
    const char* const begin = bytes.data.get();
    const char* edge = begin + (there == 0 ? read_more(0) : there); // of what has come in
    const char* end = begin + bytes.size;
    lines_.clear();
    lines_.reserve(estimated_lines({begin, static_cast<std::size_t>(edge - begin)}, bytes.size));
    lines_.push_back(empty_place);
    const char* line = begin;
    const char* next_lf = find_byte(line, edge, '\n');
    const char* next_cr = find_byte(line, edge, '\r');
    while (line != end) {
        const char* const stop = std::min(next_lf, next_cr);
        if (edge != end && stop + 1 >= edge) { // a CR at the edge may have its LF behind it
            const char* const old_edge = edge;
            edge += read_more(static_cast<std::size_t>(edge - begin));
            end = edge == old_edge ? edge : end; // the file has become shorter meanwhile
            next_lf = next_lf == old_edge ? find_byte(old_edge, edge, '\n') : next_lf;
            next_cr = next_cr == old_edge ? find_byte(old_edge, edge, '\r') : next_cr;
            continue;
        }
        lines_.push_back(file_place(begin, static_cast<std::size_t>(line - begin),
                                    static_cast<std::size_t>(stop - begin)));
        const bool both = stop == next_cr && next_lf != end && next_lf == stop + 1;
        only_crlf_ = only_crlf_ && (both || stop == end);
        line = stop == end ? end : stop + (both ? 2 : 1);
        next_lf = next_lf < line ? find_byte(line, edge, '\n') : next_lf;
        next_cr = next_cr < line ? find_byte(line, edge, '\r') : next_cr;
    }
    lines_.push_back(empty_place);
    return static_cast<std::size_t>(end - begin);
}

LineStore::Place LineStore::file_place(const char* bytes, std::size_t begin, std::size_t end) {
    const std::size_t length = end - begin;
    if (length > length_mask || begin > max_offset) {
        return keep_aside(std::string(bytes + begin, length));
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

void LineStore::refuse_index(std::size_t index) {
    throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "line " + to_text(index));
}

std::size_t LineStore::offset_of(Place place) {
    return static_cast<std::size_t>(place >> length_bits);
}

std::size_t LineStore::end_of(Place place) {
    return offset_of(place) + static_cast<std::size_t>(place & length_mask);
}

std::string LineStore::element0() const {
    return to_text(upper());
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
