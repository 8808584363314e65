// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/opened_file.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace morvane {

namespace {

constexpr std::chrono::seconds longest_clock_step(2);

bool is_settled(const FileStamp& stamp) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::chrono::nanoseconds last(std::max(stamp.modified_ns, stamp.changed_ns));
    return last + longest_clock_step < now;
}

bool holds(Disk& disk, const std::string& path, std::string_view bytes) {
    const auto file = disk.open_for_reading(path);
    if (file->size() != bytes.size()) {
        return false;
    }
    std::array<char, 65536> buffer;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t got = file->read_at(at, buffer.data(), buffer.size());
        if (got == 0 || bytes.substr(at, got) != std::string_view(buffer.data(), got)) {
            return false;
        }
        at += got;
    }
    return true;
}

} // namespace

OpenedFile look_at_file(Disk& disk, const std::string& path) {
    const FileStamp stamp = disk.stamp(path);
    return {stamp, is_settled(stamp)};
}

bool was_changed(Disk& disk, const std::string& path, const OpenedFile& opened,
                 std::string_view bytes) {
    if (!disk.is_file(path)) {
        return false;
    }
    return !(opened.settled && disk.stamp(path) == opened.stamp) && !holds(disk, path, bytes);
}

bool is_same_file(Disk& disk, const std::string& a, const std::string& b) {
    if (a == b) {
        return true;
    }
    if (!disk.is_file(a) || !disk.is_file(b)) {
        return false;
    }
    const FileStamp first = disk.stamp(a);
    const FileStamp second = disk.stamp(b);
    return first.file != 0 && first.file == second.file && first.device == second.device;
}

} // namespace morvane
