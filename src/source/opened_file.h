// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/disk.h"

#include <string>
#include <string_view>

namespace morvane {

/// What is remembered of a file that was read, to tell later whether another program has changed
/// it since.
struct OpenedFile {
    FileStamp stamp;
    // The file had been left alone for a while when it was read, so that any later change gives it
    // another stamp. Clocks of file systems tick in steps of up to two seconds: what is written
    // within the same step as the stamp need not show in it.
    bool settled = false;
};

/// Looks at a file that is about to be read. Throws RuntimeError when it is not there.
OpenedFile look_at_file(Disk& disk, const std::string& path);

/// Whether a file no longer holds the `bytes` that were read from it behind look_at_file. As long
/// as a settled file keeps its stamp it is not read again; otherwise contents are compared, so that
/// a file that was only touched or copied back counts as unchanged. A file that is gone has not
/// been changed: there is nothing in it to lose. Throws RuntimeError when it cannot be read.
bool was_changed(Disk& disk, const std::string& path, const OpenedFile& opened,
                 std::string_view bytes);

/// Whether two paths lead to one file at this moment.
bool is_same_file(Disk& disk, const std::string& a, const std::string& b);

} // namespace morvane
