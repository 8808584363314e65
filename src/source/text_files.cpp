// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/text_files.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "system/disk.h"
#include "system/replace_files.h"
#include "system/text_writer.h"

#include <optional>

namespace morvane {

namespace {

// Returns the error, after its message; none when the store holds the file.
std::optional<RuntimeError> load(const Services& services, const std::string& path,
                                 LineStore& store) {
    if (!services.disk.is_file(path)) {
        services.reporter.message_box("Error ! File does not exist: (" + path + ").",
                                      Icon::Critical);
        return RuntimeError(ErrorNumber::FileNotFound, path);
    }
    try {
        store = LineStore::read(*services.disk.open_for_reading(path));
        return std::nullopt;
    } catch (const RuntimeError& error) {
        report_error(services.reporter, error, "Error in load_file2array: ", " :");
        return error;
    }
}

} // namespace

std::size_t load_file2array(const Services& services, const std::string& path, LineStore& store) {
    return load(services, path, store) ? 0 : store.upper();
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

void save_array2file(Disk& disk, const std::string& path, const LineStore& store,
                     const std::string& permissions_of) {
    replace_files(disk, {{path, [&](TextWriter& out) { write_lines(out, store, 1, store.upper()); },
                          permissions_of}});
}

void copy_text_file(const Services& services, const std::string& source,
                    const std::string& destination, const std::string& permissions_of) {
    LineStore store;
    if (const auto error = load(services, source, store)) {
        throw *error;
    }
    save_array2file(services.disk, destination, store, permissions_of);
}

} // namespace morvane
