// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/universal.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "bgl/bgl_file.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "system/replace_files.h"

namespace morvane {

namespace {

constexpr std::size_t ending_size = 4; // ".BGL", ".bck"

// The copy of a file, by whatever letter case its ending has; empty when there is none.
std::string existing_backup(Disk& disk, const std::string& file) {
    for (const char* ending : {".bck", ".BCK"}) {
        if (disk.is_file(file + ending)) {
            return file + ending;
        }
    }
    return {};
}

// `FL_world_set` and the bounds of a file whose objects can be placed anywhere: from a
// north bound beyond one pole to a south bound beyond the other, and once around.
std::string universal_header_start() {
    std::string bytes;
    append_little_endian<std::int16_t>(bytes, 1);
    append_little_endian<std::int32_t>(bytes, 10485760);
    append_little_endian<std::int32_t>(bytes, -10485760);
    append_little_endian<std::int32_t>(bytes, 0);
    append_little_endian<std::int32_t>(bytes, -1);
    return bytes;
}

void widen_bounds(Disk& disk, const std::string& path, const std::string& backup) {
    const std::string start = universal_header_start();
    replace_file(disk, path, [&](TextWriter& out) {
        out.write(start);
        copy_bytes(disk, backup, out, start.size());
    });
}

// A leftover copy would mark the file as modified, which it is not.
void widen_or_undo(Disk& disk, const std::string& path, const std::string& backup) {
    try {
        widen_bounds(disk, path, backup);
    } catch (const RuntimeError&) {
        disk.remove(backup);
        throw;
    }
}

bool may_modify(const Services& services, const std::string& path,
                const std::string& program_folder) {
    if (!existing_backup(services.disk, path).empty()) {
        services.reporter.message_box("This file has already been modified.\n You can only use "
                                      "'Revert' to restore original",
                                      Icon::Information);
        return false;
    }
    if (!is_library_file(services.disk, path, program_folder)) {
        services.reporter.message_box(
            "This is not a library file.\n Only library files can be modified", Icon::Exclamation);
        return false;
    }
    return services.reporter.ask(
        "ATTENTION ! This will modify the header of the library file to make it available outside "
        "the intended area.\n"
        "A copy of the original will be saved under the '.bck' extension.\n"
        "You can restore the original file by clicking the 'Revert' button anytime you wish.\n"
        "Are you sure you want to proceed ? ",
        Icon::Exclamation);
}

// The file that a selected name means: itself, or what a selected copy is a copy of. Empty
// for any other name.
std::string file_to_revert(const std::string& path) {
    const std::string extension = extension_part(path);
    if (extension == "BCK") {
        return path.substr(0, path.size() - ending_size);
    }
    return extension == "BGL" ? path : std::string();
}

} // namespace

bool is_library_file(Disk& disk, const std::string& path, const std::string& program_folder) {
    InvalidFileList invalid_files(disk, program_folder);
    const OpenedBgl bgl = open_bgl(disk, path, invalid_files);
    return bgl.state == BglState::Valid && bgl.header.FL_library_ptr != 0;
}

bool make_universal(const Services& services, const std::string& path,
                    const std::string& program_folder) {
    if (!has_ending(path, ".BGL")) {
        services.reporter.note(
            {path + " is no BGL file: its name does not end in \".bgl\". Nothing was done."});
        return false;
    }
    if (!may_modify(services, path, program_folder)) {
        return false;
    }
    const std::string backup = path + ".bck";
    copy_file_bytes(services.disk, path, backup, path);
    widen_or_undo(services.disk, path, backup);
    return true;
}

bool revert(const Services& services, const std::string& path) {
    const std::string file = file_to_revert(path);
    if (file.empty()) {
        services.reporter.note(
            {path + " is neither a BGL file nor the backup of one. Nothing was done."});
        return false;
    }
    const bool copy_selected = path != file && services.disk.is_file(path);
    const std::string backup = copy_selected ? path : existing_backup(services.disk, file);
    if (backup.empty()) {
        services.reporter.message_box("No backup file found. Nothing to do", Icon::Exclamation);
        return false;
    }
    if (extension_part(file) != "BGL" || !services.disk.is_file(file)) {
        services.reporter.note({file + " is no BGL file or is missing. Nothing was done."});
        return false;
    }
    copy_file_bytes(services.disk, backup, file);
    services.reporter.message_box("File restored.", Icon::Information);
    services.disk.remove(backup);
    return true;
}

} // namespace morvane
