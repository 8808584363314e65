// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/line_store.h"

#include "base/errors.h"
#include "base/text.h"
#include "system/disk.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace morvane {

namespace {

// An estimate of the lines of a file by its beginning, at most as many as take half of the file's
// size, for a beginning may mislead. Memory that is reserved and not touched costs nothing.
std::size_t estimated_lines(std::string_view beginning, std::size_t size) {
    const std::string_view sample = beginning.substr(0, 65536);
    const auto ends = static_cast<std::size_t>(std::count(sample.begin(), sample.end(), '\n'));
    const std::size_t samples = sample.empty() ? 0 : size / sample.size() + 1;
    const std::size_t most = size / (2 * sizeof(std::string_view)) + sample.size();
    return std::min(2 * (ends + 1) * samples, most) + 2;
}

// The first `c` of the characters, or their end.
const char* find(const char* begin, const char* end, char c) {
    const void* const found =
        begin == end ? nullptr : std::memchr(begin, c, static_cast<std::size_t>(end - begin));
    return found == nullptr ? end : static_cast<const char*>(found);
}

} // namespace

LineStore::LineStore() : lines_(2) {}

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
    file.prepare_for(store.lines_.data(), store.lines_.capacity() * sizeof(std::string_view));
    bytes.size = store.split(bytes.data.get(), first, [&] { return ahead.next(); });
    store.bytes_ = std::make_shared<const FileBytes>(std::move(bytes));
    return store;
}

LineStore::LineStore(const std::vector<std::string>& lines) : LineStore() {
    insert_lines(1, lines);
}

void LineStore::add_lines(const char* begin, const char* end, bool at_feed) {
    for (const char* stop = find(begin, end, '\r'); stop != end; stop = find(begin, end, '\r')) {
        lines_.emplace_back(begin, static_cast<std::size_t>(stop - begin));
        begin = stop + 1;
        if (at_feed && begin == end) {
            return; // CR LF
        }
        only_crlf_ = false;
    }
    if (at_feed || begin != end) {
        lines_.emplace_back(begin, static_cast<std::size_t>(end - begin));
    }
    only_crlf_ = only_crlf_ && !at_feed;
}

std::size_t LineStore::split(const char* bytes, std::size_t first, const ReadMore& read_more) {
    lines_.assign(1, {});
    const char* line = bytes;
    const char* looked_at = bytes; // no LF from `line` up to here
    const char* edge = bytes + first;
    for (;;) {
        const char* const feed = find(looked_at, edge, '\n');
        if (feed != edge) {
            add_lines(line, feed, true);
            line = looked_at = feed + 1;
            continue;
        }
        looked_at = edge;
        const std::size_t more = read_more();
        if (more == 0) {
            break;
        }
        edge += more;
    }
    add_lines(line, edge, false);
    lines_.emplace_back();
    return static_cast<std::size_t>(edge - bytes);
}

std::string_view LineStore::keep(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    char* const kept = static_cast<char*>(texts_->allocate(text.size(), 1));
    text.copy(kept, text.size());
    return {kept, text.size()};
}

bool LineStore::is_in_file(std::string_view line) const {
    const std::string_view bytes = loaded_bytes();
    // Pointers into different objects have an order only by std::less.
    return line.data() != nullptr && !std::less<>()(line.data(), bytes.data()) &&
           std::less<>()(line.data(), bytes.data() + bytes.size());
}

void LineStore::refuse_index(std::size_t index) {
    throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "line " + to_text(index));
}

std::string LineStore::element0() const {
    return to_text(upper());
}

LineStore::Run LineStore::unchanged_run(std::size_t first, std::size_t last) const {
    require_index(first);
    require_index(last);
    const std::string_view bytes = loaded_bytes();
    const auto is_written_as_read = [&](std::string_view line) {
        return is_in_file(line) && line.data() + line.size() + 2 <= bytes.data() + bytes.size();
    };
    if (!only_crlf_ || !is_written_as_read(lines_[first])) {
        return {};
    }
    const char* const begin = lines_[first].data();
    const char* end = begin + lines_[first].size() + 2;
    std::size_t i = first + 1;
    while (i <= last && lines_[i].data() == end && is_written_as_read(lines_[i])) {
        end += lines_[i].size() + 2;
        ++i;
    }
    return {{begin, static_cast<std::size_t>(end - begin)}, i - first};
}

void LineStore::set_line(std::size_t index, std::string_view text) {
    require_index(index);
    lines_[index] = keep(text);
}

void LineStore::comment_out(std::size_t index) {
    set_line(index, "; " + std::string(line(index)));
}

void LineStore::insert_lines(std::size_t before, const std::vector<std::string>& texts) {
    require_index(before);
    std::vector<std::string_view> kept;
    kept.reserve(texts.size());
    for (const std::string& text : texts) {
        kept.push_back(keep(text));
    }
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(before), kept.begin(), kept.end());
}

LineStore LineStore::with(const std::vector<Insertion>& insertions) const {
    std::size_t added = 0;
    for (const Insertion& insertion : insertions) {
        require_index(insertion.before);
        added += insertion.texts->size();
    }
    LineStore copy;
    copy.bytes_ = bytes_;
    copy.only_crlf_ = only_crlf_;
    copy.texts_ = texts_;
    std::vector<std::string_view>& lines = copy.lines_;
    lines.clear();
    lines.reserve(lines_.size() + added);
    auto rest = lines_.cbegin();
    for (const Insertion& insertion : insertions) {
        const auto place = lines_.cbegin() + static_cast<std::ptrdiff_t>(insertion.before);
        lines.insert(lines.end(), rest, place);
        for (const std::string& text : *insertion.texts) {
            lines.push_back(copy.keep(text));
        }
        rest = place;
    }
    lines.insert(lines.end(), rest, lines_.cend());
    return copy;
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
        kept.lines_.assign(begin, begin + static_cast<std::ptrdiff_t>(count));
    }
    return kept;
}

void LineStore::exchange(KeptLines& kept) {
    if (kept.count() > 0) {
        require_index(kept.first_ + kept.count() - 1);
        std::swap_ranges(kept.lines_.begin(), kept.lines_.end(),
                         lines_.begin() + static_cast<std::ptrdiff_t>(kept.first_));
    }
}

void LineStore::append_line(std::string_view text) {
    lines_.insert(lines_.end() - 1, keep(text));
}

} // namespace morvane
