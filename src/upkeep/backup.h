// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "system/services.h"

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// The names of the backups of a source set, by its base path.
std::string frame_backup_name(std::string_view base); // base & "_azm.bck"
std::string model_backup_name(std::string_view base); // base & "_asm.bck"

/// One file that a backup or a restore copies.
struct FileCopy {
    std::string base; // of its set
    std::string from;
    std::string to;
};

/// What a backup or a restore did. After a failure, which was shown to the user, the files copied
/// until then stay copied.
struct CopyResult {
    Outcome outcome = Outcome::Done;
    std::vector<FileCopy> copied;
    std::vector<FileCopy> missing; // those without a file to copy

    /// The bases of which neither file was there to be copied.
    std::vector<std::string> bases_without_files() const;
};

/// Copies the two files of one set to their backups, after asking when an earlier backup seems to
/// be there. A backup has the permissions of its original. A file that is missing is omitted, with
/// a note.
CopyResult backup_source_set(const Services& services, const std::string& base);

/// backup_source_set without its question.
CopyResult backup_without_asking(const Services& services, const std::string& base);

/// The same for the sets of an aircraft, with one question for all of them.
CopyResult backup_aircraft_sets(const Services& services, const std::vector<std::string>& bases);

/// Asks, then copies the backups of all sets over the working files, which keep their permissions.
/// A backup that is missing is omitted, with a note.
CopyResult restore_source_sets(const Services& services, const std::vector<std::string>& bases);

/// True, after a message box, when a backup of any of the sets would copy a rewritten model file
/// over the backup of one that was not rewritten, or when that cannot be found out.
bool would_lose_export(const Services& services, const std::vector<std::string>& bases);

} // namespace morvane
