#include "core/text_files.h"

#include "core/disk.h"
#include "core/errors.h"
#include "core/replace_files.h"
#include "core/reporter.h"
#include "core/text_writer.h"

#include <algorithm>
#include <array>

namespace morvane {

FileBytes read_bytes(Disk& disk, const std::string& path) {
    const auto file = disk.open_for_reading(path);
    FileBytes bytes = allocate_bytes(file->size());
    file->prepare_for(bytes.data.get(), bytes.size);
    bytes.size = file->read_at(0, bytes.data.get(), bytes.size);
    return bytes;
}

std::size_t load_file2array(const Services& services, const std::string& path, LineStore& store) {
    if (!services.disk.is_file(path)) {
        services.reporter.message_box("Error ! File does not exist: (" + path + ").",
                                      Icon::Critical);
        return 0;
    }
    try {
        store = LineStore::read(*services.disk.open_for_reading(path));
        return store.upper();
    } catch (const RuntimeError& error) {
        report_error(services.reporter, error, "Error in load_file2array: ", " :");
        return 0;
    }
}

void save_array2file(Disk& disk, const std::string& path, const LineStore& store) {
    replace_file(disk, path, [&](TextWriter& out) { out.lines(store, 1, store.upper()); });
}

bool copy_text_file(const Services& services, const std::string& source,
                    const std::string& destination) {
    LineStore store;
    if (load_file2array(services, source, store) == 0) {
        return false;
    }
    save_array2file(services.disk, destination, store);
    return true;
}

std::uint64_t copy_bytes(Disk& disk, const std::string& path, TextWriter& out,
                         std::uint64_t offset) {
    const auto file = disk.open_for_reading(path);
    std::array<char, 65536> buffer;
    const std::uint64_t start = offset;
    while (const std::size_t got = file->read_at(offset, buffer.data(), buffer.size())) {
        out.write({buffer.data(), got});
        offset += got;
    }
    return offset - start;
}

void copy_file_bytes(Disk& disk, const std::string& source, const std::string& destination) {
    replace_file(disk, destination, [&](TextWriter& out) {
        const std::uint64_t copied = copy_bytes(disk, source, out);
        if (disk.is_file(destination)) {
            copy_bytes(disk, destination, out, copied);
        }
    });
}

} // namespace morvane
