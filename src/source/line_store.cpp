#include "source/line_store.h"

#include "base/errors.h"
#include "base/text.h"
#include "source/line_ends.h"
#include "system/disk.h"

#include <algorithm>
#include <new>

namespace morvane {

namespace {

// How many lines a file of `size` bytes may well have, by its beginning. Never so many that the
// places take more than half the file's size, for a beginning may mislead. What is reserved and not
// touched costs nothing.
std::size_t estimated_lines(std::string_view beginning, std::size_t size) {
    const std::string_view sample = beginning.substr(0, 65536);
    const auto ends = static_cast<std::size_t>(std::count(sample.begin(), sample.end(), '\n'));
    const std::size_t samples = sample.empty() ? 0 : size / sample.size() + 1;
    return std::min(2 * (ends + 1) * samples, size / 16 + sample.size()) + 2;
}

} // namespace

LineStore::LineStore() : lines_{empty_place, empty_place} {}

LineStore::LineStore(FileBytes bytes) {
    lines_.reserve(estimated_lines(bytes.view(), bytes.size));
    split(bytes.data.get(), bytes.size, [] { return 0; });
    bytes_ = std::make_shared<const FileBytes>(std::move(bytes));
}

LineStore LineStore::read(ReadableFile& file, std::size_t stretch) {
    FileBytes bytes = allocate_bytes(file.size());
    file.prepare_for(bytes.data.get(), bytes.size);
    ReadAhead ahead(file, bytes.data.get(), bytes.size, stretch);
    const std::size_t first = ahead.next();
    LineStore store;
    store.lines_.reserve(estimated_lines({bytes.data.get(), first}, bytes.size));
    file.prepare_for(store.lines_.data(), store.lines_.capacity() * sizeof(Place));
    bytes.size = store.split(bytes.data.get(), first, [&] { return ahead.next(); });
    store.bytes_ = std::make_shared<const FileBytes>(std::move(bytes));
    return store;
}

LineStore::LineStore(const std::vector<std::string>& lines) : LineStore() {
    insert_lines(1, lines);
}

LineStore::LineStore(const LineStore& other) = default;
LineStore& LineStore::operator=(const LineStore& other) = default;

std::size_t LineStore::split(const char* bytes, std::size_t first, const ReadMore& read_more) {
    LineEnds ends(bytes);
    ends.extend(first);
    lines_.assign(1, empty_place);
    const char* line = bytes;
    for (;;) {
        const char* const stop = ends.next();
        if (stop == ends.edge()) {
            const std::size_t more = read_more();
            if (more == 0) {
                break;
            }
            ends.extend(more);
            continue;
        }
        if (*stop == '\r' && stop + 1 == ends.edge()) { // its LF may be the next to come
            ends.extend(read_more());
        }
        const bool both = *stop == '\r' && stop + 1 != ends.edge() && stop[1] == '\n';
        lines_.push_back(file_place(bytes, line, stop));
        only_crlf_ = only_crlf_ && both;
        line = both ? ends.next() + 1 : stop + 1;
    }
    if (line != ends.edge()) {
        lines_.push_back(file_place(bytes, line, ends.edge()));
    }
    lines_.push_back(empty_place);
    return static_cast<std::size_t>(ends.edge() - bytes);
}

LineStore::Place LineStore::file_place(const char* bytes, const char* begin, const char* end) {
    const auto offset = static_cast<std::size_t>(begin - bytes);
    const auto length = static_cast<std::size_t>(end - begin);
    if (length > length_mask || offset > max_offset) {
        return keep_aside({begin, end});
    }
    return (static_cast<Place>(offset) << length_bits) | length;
}

LineStore::Place LineStore::keep_aside(std::string_view text) {
    return text.empty() ? empty_place : aside_flag | aside_.add(text);
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

void LineStore::set_line(std::size_t index, std::string_view text) {
    require_index(index);
    lines_[index] = keep_aside(text);
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

LineStore::KeptLines LineStore::keep_lines(std::size_t first, std::size_t count) const {
    KeptLines kept;
    if (count > 0) {
        require_index(first);
        require_index(first + count - 1);
        const auto begin = lines_.begin() + static_cast<std::ptrdiff_t>(first);
        kept.first_ = first;
        kept.places_.assign(begin, begin + static_cast<std::ptrdiff_t>(count));
    }
    return kept;
}

void LineStore::exchange(KeptLines& kept) {
    if (kept.count() > 0) {
        require_index(kept.first_ + kept.count() - 1);
        std::swap_ranges(kept.places_.begin(), kept.places_.end(),
                         lines_.begin() + static_cast<std::ptrdiff_t>(kept.first_));
    }
}

void LineStore::append_line(std::string_view text) {
    lines_.insert(lines_.end() - 1, keep_aside(text));
}

} // namespace morvane
