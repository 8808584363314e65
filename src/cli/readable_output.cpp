// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/readable_output.h"

#include "base/encodings.h"

namespace morvane::cli {

namespace {

// How many bytes at the end may be the beginning of one character, of which the rest will follow.
std::size_t unfinished_bytes(std::string_view text) {
    constexpr std::size_t longest = 4;
    for (std::size_t count = 1; count < longest && count <= text.size(); ++count) {
        const auto byte = static_cast<unsigned char>(text[text.size() - count]);
        if (byte >= 0xC0U) { // begins a character
            const std::size_t length = byte >= 0xF0U ? 4 : byte >= 0xE0U ? 3 : 2;
            return count < length ? count : 0;
        }
        if (byte < 0x80U) {
            return 0;
        }
    }
    return 0;
}

} // namespace

ReadableOutput::~ReadableOutput() {
    pass_on(pending_.size());
}

bool ReadableOutput::pass_on(std::size_t count) {
    const std::string text = readable_text(std::string_view(pending_).substr(0, count));
    pending_.erase(0, count);
    const auto size = static_cast<std::streamsize>(text.size());
    return terminal_.sputn(text.data(), size) == size;
}

ReadableOutput::int_type ReadableOutput::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) {
        return traits_type::not_eof(character);
    }
    const char byte = traits_type::to_char_type(character);
    return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
}

std::streamsize ReadableOutput::xsputn(const char* bytes, std::streamsize count) {
    pending_.append(bytes, static_cast<std::size_t>(count));
    const std::size_t line_end = pending_.rfind('\n');
    return line_end == std::string::npos || pass_on(line_end + 1) ? count : 0;
}

int ReadableOutput::sync() {
    const bool passed = pass_on(pending_.size() - unfinished_bytes(pending_));
    return passed && terminal_.pubsync() == 0 ? 0 : -1;
}

} // namespace morvane::cli
