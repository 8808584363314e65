#include "source/text_files.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "system/disk.h"
#include "system/replace_files.h"
#include "system/text_writer.h"

namespace morvane {

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

void write_lines(TextWriter& out, const LineStore& store, std::size_t first, std::size_t last) {
    for (std::size_t i = first; i <= last;) {
        // Most of a large file is written just as it was read, in one piece.
        const LineStore::Run run = store.unchanged_run(i, last);
        if (run.count == 0) {
            out.line(store.line(i++));
        } else {
            out.write(run.bytes);
            i += run.count;
        }
    }
}

void save_array2file(Disk& disk, const std::string& path, const LineStore& store) {
    replace_file(disk, path, [&](TextWriter& out) { write_lines(out, store, 1, store.upper()); });
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

} // namespace morvane
