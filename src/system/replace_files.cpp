// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/replace_files.h"

#include "base/errors.h"
#include "system/disk.h"
#include "system/file_bytes.h"

#include <filesystem>

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

namespace {

struct Target {
    std::string path;      // links resolved
    std::string model;     // the file whose permissions the new one takes
    std::string temporary; // the new content, once we have begun to write it
    std::string kept;      // a copy of the old content, once we have begun to write it
    // Both stay open, and with that locked, until all is over: another run that replaces the same
    // file meanwhile is refused instead of writing into what we are about to rename.
    std::unique_ptr<WritableFile> temporary_file;
    std::unique_ptr<WritableFile> kept_file;
    bool existed = false;
    bool in_place = false;
    bool touched = false; // the file itself may no longer be as it was
};

void remove_quietly(Disk& disk, const std::string& path) {
    try {
        if (!path.empty() && disk.is_file(path)) {
            disk.remove(path);
        }
    } catch (const RuntimeError&) {
        // The failure that led here is the one to report; the leftover is known by its name.
        return;
    }
}

std::string temporary_name(const Target& target) {
    return target.path + ".morvane-tmp";
}

std::string kept_name(const Target& target) {
    return target.path + ".morvane-old";
}

// `ours` receives the name as soon as the file is ours to remove.
std::unique_ptr<WritableFile> write_temporary(Disk& disk, const std::string& path,
                                              const std::string& model, std::string& ours,
                                              const std::function<void(TextWriter&)>& write) {
    auto file = disk.create_temporary(path, model);
    ours = path;
    TextWriter writer(*file);
    write(writer);
    writer.flush();
    file->sync();
    return file;
}

bool have_same_content(Disk& disk, const std::string& a, const std::string& b) {
    return disk.is_file(a) && disk.is_file(b) &&
           read_bytes(disk, a).view() == read_bytes(disk, b).view();
}

// Only a run that was interrupted while it wrote in place leaves both of its own files behind. The
// target may then hold a bit of each, and what is kept beside it is all there is.
void require_whole(Disk& disk, const Target& target) {
    if (target.in_place && disk.is_file(kept_name(target)) &&
        disk.is_file(temporary_name(target)) &&
        !have_same_content(disk, target.path, kept_name(target)) &&
        !have_same_content(disk, target.path, temporary_name(target))) {
        throw RuntimeError(ErrorNumber::PathFileAccess,
                           target.path + " was being written when a run was interrupted. " +
                               kept_name(target) +
                               " holds what it was before: copy that over it and remove it, then "
                               "try again.");
    }
}

// A copy that an interrupted run has left is of no use to anybody: what it is a copy of is whole.
void remove_stray_copy(Disk& disk, const Target& target) {
    try {
        if (disk.is_file(kept_name(target))) {
            // Refused when the copy belongs to a run that is still going on.
            const auto file = disk.create_temporary(kept_name(target), target.path);
            disk.remove(kept_name(target));
        }
    } catch (const RuntimeError&) {
        // It is in nobody's way unless a copy must be kept again, and that reports the failure.
        return;
    }
}

void keep_old_content(Disk& disk, Target& target) {
    if (!target.existed) {
        return;
    }
    target.kept_file =
        write_temporary(disk, kept_name(target), target.path, target.kept,
                        [&](TextWriter& out) { copy_bytes(disk, target.path, out); });
}

void write_in_place(Disk& disk, const std::string& from, const std::string& to) {
    const auto file = disk.open_for_update(to);
    TextWriter writer(*file);
    const std::uint64_t size = copy_bytes(disk, from, writer);
    writer.flush();
    file->truncate(size);
    file->sync();
    file->close();
}

void put_into_place(Disk& disk, Target& target) {
    if (target.in_place) {
        target.touched = true;
        write_in_place(disk, target.temporary, target.path);
        remove_quietly(disk, target.temporary);
    } else {
        disk.rename(target.temporary, target.path);
        target.touched = true;
        target.temporary_file.reset(); // Windows could not put the old file in place of an open one
    }
    target.temporary.clear();
}

// The files are in place by now; a folder that cannot be brought to the medium does not undo that.
void sync_folder_quietly(Disk& disk, const Target& target) {
    try {
        disk.sync_folder(std::filesystem::path(target.path).parent_path().string());
    } catch (const RuntimeError&) {
        return;
    }
}

void restore_old_content(Disk& disk, Target& target) {
    if (target.in_place) {
        write_in_place(disk, target.kept, target.path);
    } else if (!target.existed) {
        disk.remove(target.path);
    } else {
        disk.rename(target.kept, target.path);
        target.kept.clear();
    }
}

// Restores one target. Returns an error text, empty on success.
std::string put_back(Disk& disk, Target& target) {
    std::string failed;
    try {
        if (target.touched) {
            restore_old_content(disk, target);
        }
        remove_quietly(disk, target.kept);
    } catch (const RuntimeError&) {
        // The copy stays beside the file: it is all that is left of the old content.
        failed = "; " + target.path + " could not be put back" +
                 (target.existed ? ", its old content is in " + target.kept : "");
        if (target.in_place) {
            return failed; // it may be a mixture now; by both leftovers the next run can tell
        }
    }
    remove_quietly(disk, target.temporary);
    return failed;
}

std::string put_all_back(Disk& disk, std::vector<Target>& targets) {
    std::string failed;
    for (Target& target : targets) {
        failed += put_back(disk, target);
    }
    return failed;
}

// A file that may not be written is not replaced either, though its folder would allow it; nor is
// what is no file at all.
void require_writable(Disk& disk, const std::string& path) {
    disk.open_for_update(path)->close();
}

Target prepare(Disk& disk, const FileReplacement& file) {
    Target target;
    target.path = disk.resolve_links(file.path);
    if (disk.is_folder(target.path)) {
        throw RuntimeError(ErrorNumber::PathFileAccess, file.path + " is a folder");
    }
    target.existed = disk.is_file(target.path);
    target.in_place = disk.link_count(target.path) > 1;
    target.model = file.permissions_of.empty() ? target.path : file.permissions_of;
    if (target.existed) {
        require_writable(disk, target.path);
    }
    return target;
}

void write_all(Disk& disk, const std::vector<FileReplacement>& files,
               std::vector<Target>& targets) {
    for (const FileReplacement& file : files) {
        targets.push_back(prepare(disk, file));
        Target& target = targets.back();
        require_whole(disk, target);
        remove_stray_copy(disk, target);
        target.temporary_file = write_temporary(disk, temporary_name(target), target.model,
                                                target.temporary, file.write);
    }
    for (std::size_t i = 0; i < targets.size(); ++i) {
        // Once the last file is renamed there is nothing left to fail.
        if (targets[i].in_place || i + 1 < targets.size()) {
            keep_old_content(disk, targets[i]);
        }
    }
    for (Target& target : targets) {
        put_into_place(disk, target);
    }
}

// An error about a file of ours, in terms of the file that the user knows.
std::string in_users_terms(const std::string& about, const std::vector<Target>& targets) {
    for (const Target& target : targets) {
        for (const std::string& ours : {temporary_name(target), kept_name(target)}) {
            if (about.starts_with(ours)) {
                return target.path + about.substr(ours.size());
            }
        }
    }
    return about;
}

} // namespace

void replace_files(Disk& disk, const std::vector<FileReplacement>& files) {
    std::vector<Target> targets;
    try {
        write_all(disk, files, targets);
    } catch (const RuntimeError& error) {
        const std::string failed = put_all_back(disk, targets);
        throw RuntimeError(error.code(), in_users_terms(error.about(), targets) + failed);
    } catch (...) {
        put_all_back(disk, targets);
        throw;
    }
    for (const Target& target : targets) {
        sync_folder_quietly(disk, target);
        remove_quietly(disk, target.kept);
    }
}

void replace_file(Disk& disk, const std::string& path,
                  const std::function<void(TextWriter&)>& write) {
    replace_files(disk, {{path, write}});
}

} // namespace morvane
