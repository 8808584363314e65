#pragma once

#include "base/outcome.h"
#include "system/services.h"

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// The names of the backups of a source set, by its base path.
std::string frame_backup_name(std::string_view base); // base & "_azm.bck"
std::string model_backup_name(std::string_view base); // base & "_asm.bck"

/// Copies the two files of one set to their backups, after asking when an earlier backup seems to
/// be there. A file that is missing is passed over.
Outcome backup_source_set(const Services& services, const std::string& base);

/// The same for the sets of an aircraft, with one question for all of them.
Outcome backup_aircraft_sets(const Services& services, const std::vector<std::string>& bases);

/// Asks, then copies the backups of all sets over the working files. A backup that is missing is
/// passed over.
Outcome restore_source_sets(const Services& services, const std::vector<std::string>& bases);

} // namespace morvane
