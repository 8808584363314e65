#include "core/replace_files.h"

#include "core/disk.h"
#include "core/errors.h"
#include "core/text_files.h"
#include "core/text_writer.h"

#include <filesystem>

namespace morvane {

namespace {

struct Target {
    std::string path;      // links resolved
    std::string temporary; // the new content, once we have begun to write it
    std::string kept;      // a copy of the old content, once we have begun to write it
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
        // The failure that led here is the one to report; the stray is known by its name.
        return;
    }
}

// `ours` receives the name as soon as the file is ours to remove.
void write_temporary(Disk& disk, const std::string& path, const std::string& model,
                     std::string& ours, const std::function<void(TextWriter&)>& write) {
    const auto file = disk.create_temporary(path, model);
    ours = path;
    TextWriter writer(*file);
    write(writer);
    writer.flush();
    file->sync();
    file->close();
}

void keep_old_content(Disk& disk, Target& target) {
    if (!target.existed) {
        return;
    }
    write_temporary(disk, target.path + ".morvane-old", target.path, target.kept,
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

// Says what could not be put back, or nothing.
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
        write_temporary(disk, target.path + ".morvane-tmp", target.path, target.temporary,
                        file.write);
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

} // namespace

void replace_files(Disk& disk, const std::vector<FileReplacement>& files) {
    std::vector<Target> targets;
    try {
        write_all(disk, files, targets);
    } catch (const RuntimeError& error) {
        const std::string failed = put_all_back(disk, targets);
        if (failed.empty()) {
            throw;
        }
        throw RuntimeError(error.code(), error.about() + failed);
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
