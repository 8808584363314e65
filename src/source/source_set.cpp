// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/source_set.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <optional>

namespace morvane {

std::string model_file_name(std::string_view base) {
    return std::string(base) + "_0.asm";
}

std::string frame_file_name(std::string_view base) {
    return std::string(base) + ".asm";
}

LoadedSet load_source_set(const Services& services, const std::string& base, LineStore& model,
                          LineStore& frame) {
    const std::string model_name = model_file_name(base);
    const std::string frame_name = frame_file_name(base);
    const LoadedSet loaded{load_file2array(services, model_name, model),
                           load_file2array(services, frame_name, frame)};
    const bool failed = (loaded.model == 0 && services.disk.is_file(model_name)) ||
                        (loaded.frame == 0 && services.disk.is_file(frame_name));
    if (failed) {
        services.reporter.message_box("Error ! Make sure you do not specify the extension, and "
                                      "both azm and asm files are in the same folder.");
        return {};
    }
    return loaded;
}

std::optional<std::string> base_of_chosen_file(std::string_view name) {
    if (name.size() < 5) {
        return std::nullopt;
    }
    return std::string(name.substr(0, name.size() - 4));
}

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
