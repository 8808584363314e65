#include "core/text_writer.h"

#include "core/disk.h"
#include "core/errors.h"
#include "core/line_store.h"

namespace morvane {

namespace {

constexpr std::size_t buffer_size = std::size_t{256} * 1024;

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
    if (buffer_.capacity() < buffer_size) {
        buffer_.reserve(buffer_size);
    }
    if (buffer_.size() + bytes.size() > buffer_size) {
        flush();
    }
    if (bytes.size() > buffer_size) {
        put(bytes);
    } else {
        buffer_.append(bytes);
    }
}

void TextWriter::line(std::string_view text) {
    write(text);
    write("\r\n");
}

void TextWriter::lines(const LineStore& store, std::size_t first, std::size_t last) {
    for (std::size_t i = first; i <= last;) {
        // Most of a large file is written just as it was read, in one piece.
        const LineStore::Run run = store.unchanged_run(i, last);
        write(run.bytes);
        i += run.count;
        if (run.count == 0) {
            line(store.line(i++));
        }
    }
}

} // namespace morvane
