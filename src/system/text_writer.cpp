// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/text_writer.h"

#include "base/errors.h"
#include "system/disk.h"

namespace morvane {

namespace {

// Whatever is written comes out in pieces of this size, or whole multiples: the system takes them
// several times faster than smaller ones, or ones that begin anywhere.
constexpr std::size_t buffer_size = std::size_t{1} << 20;

} // namespace

void TextWriter::put(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t taken = file_.write(bytes);
        if (taken == 0) {
            throw RuntimeError(ErrorNumber::DiskFull);
        }
        bytes.remove_prefix(taken);
    }
}

void TextWriter::flush() {
    put(buffer_);
    buffer_.clear();
}

void TextWriter::write(std::string_view bytes) {
    buffer_.reserve(buffer_size);
    while (buffer_.size() + bytes.size() >= buffer_size) {
        if (buffer_.empty()) {
            const std::size_t whole = bytes.size() / buffer_size * buffer_size;
            put(bytes.substr(0, whole));
            bytes.remove_prefix(whole);
        } else {
            const std::size_t room = buffer_size - buffer_.size();
            buffer_.append(bytes.substr(0, room));
            bytes.remove_prefix(room);
            flush();
        }
    }
    buffer_.append(bytes);
}

void TextWriter::line(std::string_view text) {
    if (buffer_.size() + text.size() + 2 < buffer_size) {
        buffer_.append(text).append("\r\n", 2);
    } else {
        write(text);
        write("\r\n");
    }
}

} // namespace morvane
