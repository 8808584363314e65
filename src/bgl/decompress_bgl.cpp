// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/decompress_bgl.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "bgl/bgl_file.h"
#include "bgl/unpack/bglunpack.h"
#include "system/disk.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace morvane {

namespace {

using Words = std::vector<std::string>;
using Attempt = std::optional<ProgramEnd>; // none: the program could not be started

void hint(const Services& services, Unpacking& unpacking, const std::string& text) {
    if (unpacking.hints_given.insert(text).second) {
        services.reporter.note({text});
    }
}

// The 32-bit program comes first, since the simulator's library is 32-bit code.
Words unpacking_programs(Disk& disk, const Words& folders) {
    Words programs;
    for (const char* name : {"bglunpack.exe", "bglunpack64.exe"}) {
        for (const std::string& folder : folders) {
            const std::string program = join_path(folder, name);
            if (disk.is_file(program)) {
                programs.push_back(program);
                break;
            }
        }
    }
    return programs;
}

// What comes before a Windows program on the command line: nothing on Windows, else wine, which is
// an empty word when it is missing.
Words find_launcher(const Unpacking& unpacking) {
    return unpacking.on_windows ? Words{} : Words{unpacking.programs.find_on_path("wine")};
}

std::string what_is_missing(const Words& programs, const Words& launcher, const Words& folders) {
    if (programs.empty()) {
        std::string places;
        for (const std::string& folder : folders) {
            places += (places.empty() ? "" : " or ") + folder;
        }
        return "bglunpack.exe was not found in " + places;
    }
    return !launcher.empty() && launcher[0].empty() ? "wine is not installed" : "";
}

// Wine shows this system's files as drive Z.
std::string windows_name(const std::string& path, bool on_windows) {
    if (on_windows) {
        return absolute_path(path);
    }
    std::string name = std::filesystem::absolute(path).lexically_normal().string();
    std::replace(name.begin(), name.end(), '/', '\\');
    return name.insert(0, "Z:");
}

std::string status_reason(int status) {
    switch (status) {
    case unpack_no_library:
        return "the simulator's library sup.dll was not found or cannot be loaded (put it into "
               "the program folder, or name it in MORVANE_SUP_DLL)";
    case unpack_no_function:
        return "the library sup.dll lacks a function for reading compressed files";
    case unpack_nothing:
        return "the library sup.dll could not unpack the file";
    case unpack_cannot_write:
        return "tmp.bgl cannot be written";
    default:
        return "the unpacking program failed with status " + std::to_string(status);
    }
}

std::string reason(const Attempt& attempt) {
    if (!attempt) {
        return "the unpacking program could not be started";
    }
    switch (attempt->how) {
    case ProgramEnd::How::TimedOut:
        return "the unpacking program did not end in time. No more files are unpacked now";
    case ProgramEnd::How::Stopped:
        return "the unpacking program was stopped";
    default:
        return status_reason(attempt->status);
    }
}

bool exited_with(const Attempt& attempt, int status) {
    return attempt && attempt->how == ProgramEnd::How::Exited && attempt->status == status;
}

// Whether the other of the two programs may do what this one could not: the library may be code of
// the other width, or only one width runs here at all.
bool try_other_width(const Attempt& attempt) {
    if (!attempt) {
        return true;
    }
    return attempt->how == ProgramEnd::How::Exited && !exited_with(attempt, unpack_done) &&
           !exited_with(attempt, unpack_nothing) && !exited_with(attempt, unpack_cannot_write);
}

bool says_why(const Attempt& attempt) {
    return attempt && attempt->how == ProgramEnd::How::Exited &&
           attempt->status >= unpack_wrong_usage && attempt->status <= unpack_cannot_write;
}

/// The unpacking of one file.
struct Job {
    Disk& disk;
    const std::string& program_folder;
    Unpacking& unpacking;
    const std::string& path;
    Words folders{};
    Words programs{};
    Words launcher{};
    std::string unpacked{};
};

Words command_of(const Job& job, const std::string& program) {
    Words command = job.launcher;
    command.push_back(program);
    for (const std::string& argument : {job.path, job.unpacked, job.program_folder}) {
        command.push_back(windows_name(argument, job.unpacking.on_windows));
    }
    return command;
}

// Wine ends well even when it could not start a program of the other width.
Attempt run_one(const Job& job, const std::string& program) {
    try {
        const Unpacking& unpacking = job.unpacking;
        const ProgramEnd end = unpacking.programs.run({command_of(job, program)},
                                                      {{}, unpacking.limit, unpacking.keep_going});
        return exited_with(end, unpack_done) && !job.disk.is_file(job.unpacked) ? Attempt() : end;
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

Attempt run_programs(const Job& job) {
    Attempt result;
    for (const std::string& program : job.programs) {
        const Attempt attempt = run_one(job, program);
        if (!says_why(result) || !try_other_width(attempt)) {
            result = attempt;
        }
        if (!try_other_width(attempt)) {
            break;
        }
    }
    return result;
}

bool is_same_file(Disk& disk, const std::string& one, const std::string& other) {
    const FileStamp a = disk.stamp(one);
    const FileStamp b = disk.stamp(other);
    const bool known = a.device != 0 || a.file != 0;
    return known ? a.device == b.device && a.file == b.file
                 : absolute_path(one) == absolute_path(other);
}

bool is_compressed(Disk& disk, const std::string& path) {
    std::array<char, header_size> bytes{};
    disk.open_for_reading(path)->read_at(0, bytes.data(), bytes.size());
    const BglHeader header = decode_header({bytes.data(), bytes.size()});
    return is_valid_bgl(header) && header.FL_spare2 != 0;
}

// The name under which a file is unpacked, which nothing has any more; empty when there is none. A
// compressed file of such a name is the user's own, for what we unpack is never compressed.
std::string free_name(Disk& disk, const std::string& program_folder, const std::string& path) {
    for (const char* name : {"tmp.bgl", "tmp2.bgl"}) {
        std::string unpacked = join_path(program_folder, name);
        if (!disk.is_file(unpacked)) {
            return unpacked;
        }
        if (!is_same_file(disk, unpacked, path) && !is_compressed(disk, unpacked)) {
            disk.remove(unpacked); // nothing of an earlier file may be listed as this one's
            return unpacked;
        }
    }
    return {};
}

// What keeps the file from being unpacked; empty when it was.
std::string unpack(Job& job) {
    job.unpacked = free_name(job.disk, job.program_folder, job.path);
    if (job.unpacked.empty()) {
        return "tmp.bgl and tmp2.bgl in the program folder are compressed files themselves (move "
               "them elsewhere)";
    }
    const Attempt attempt = run_programs(job);
    job.unpacking.timed_out = attempt && attempt->how == ProgramEnd::How::TimedOut;
    job.unpacking.stopped = attempt && attempt->how == ProgramEnd::How::Stopped;
    if (!exited_with(attempt, unpack_done)) {
        return reason(attempt);
    }
    if (is_compressed(job.disk, job.unpacked)) {
        job.disk.remove(job.unpacked);
        return "the library sup.dll returned a file that is still compressed";
    }
    return {};
}

std::string unpack_or_say_why(Job& job) {
    try {
        return unpack(job);
    } catch (const RuntimeError& error) {
        return error.about() + " cannot be replaced (" + error.description() + ")";
    }
}

} // namespace

void begin_command(Unpacking& unpacking) {
    unpacking.hints_given.clear();
    unpacking.timed_out = false;
    unpacking.stopped = false;
}

std::optional<std::string> decompress_bgl(const Services& services,
                                          const std::string& program_folder, Unpacking& unpacking,
                                          const std::string& path) {
    unpacking.stopped = unpacking.keep_going && !unpacking.keep_going();
    if (unpacking.timed_out || unpacking.stopped) {
        return std::nullopt;
    }
    Job job{services.disk, program_folder, unpacking, path};
    job.folders = unpacking.folders;
    job.folders.insert(job.folders.begin(), program_folder);
    job.programs = unpacking_programs(services.disk, job.folders);
    job.launcher = find_launcher(unpacking);
    const std::string missing = what_is_missing(job.programs, job.launcher, job.folders);
    if (!missing.empty()) {
        hint(services, unpacking, "Compressed files cannot be unpacked: " + missing + ".");
        return std::nullopt;
    }
    const std::string why_not = unpack_or_say_why(job);
    if (!why_not.empty()) {
        hint(services, unpacking, path + " was not unpacked: " + why_not + ".");
        return std::nullopt;
    }
    if (unpacking.unpacked) {
        unpacking.unpacked(path, job.unpacked);
    }
    return job.unpacked;
}

} // namespace morvane
