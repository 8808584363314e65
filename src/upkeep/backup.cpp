#include "upkeep/backup.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "source/source_set.h"
#include "source/text_files.h"
#include "system/disk.h"

#include <algorithm>

namespace morvane {

namespace {

struct Copy {
    std::string from;
    std::string to;
};

std::vector<Copy> backup_copies(const std::vector<std::string>& bases) {
    std::vector<Copy> copies;
    for (const std::string& base : bases) {
        copies.push_back({frame_file_name(base), frame_backup_name(base)});
        copies.push_back({model_file_name(base), model_backup_name(base)});
    }
    return copies;
}

std::vector<Copy> restore_copies(const std::vector<std::string>& bases) {
    std::vector<Copy> copies = backup_copies(bases);
    for (Copy& copy : copies) {
        std::swap(copy.from, copy.to);
    }
    return copies;
}

void note_finished(Reporter& reporter, const std::vector<Copy>& copies) {
    for (const Copy& copy : copies) {
        reporter.note({copy.to + " had already been written from " + copy.from + "."});
    }
}

// Stops at the first failure; what was copied until then stays copied, and the user is told.
Outcome copy_existing(const Services& services, const std::vector<Copy>& copies,
                      std::string_view error_text) {
    std::vector<Copy> finished;
    try {
        for (const Copy& copy : copies) {
            if (!services.disk.is_file(copy.from)) {
                continue;
            }
            if (!copy_text_file(services, copy.from, copy.to)) {
                note_finished(services.reporter, finished);
                return Outcome::Failed;
            }
            finished.push_back(copy);
        }
    } catch (const RuntimeError& error) {
        note_finished(services.reporter, finished);
        report_error(services.reporter, error, error_text, " : ");
        return Outcome::Failed;
    }
    if (finished.empty() && !copies.empty()) {
        services.reporter.note({"nothing was copied, since there is no file " + copies[0].from +
                                " or " + copies[1].from + "."});
    }
    return Outcome::Done;
}

bool any_is_file(Disk& disk, const std::vector<std::string>& names) {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& name) { return disk.is_file(name); });
}

Outcome backup(const Services& services, const std::vector<std::string>& bases,
               const std::vector<std::string>& earlier, std::string_view question) {
    if (any_is_file(services.disk, earlier) &&
        !services.reporter.ask(question, Icon::Exclamation)) {
        return Outcome::Declined;
    }
    return copy_existing(services, backup_copies(bases), "Error while copying: ");
}

} // namespace

std::string frame_backup_name(std::string_view base) {
    return std::string(base) + "_azm.bck";
}

std::string model_backup_name(std::string_view base) {
    return std::string(base) + "_asm.bck";
}

Outcome backup_source_set(const Services& services, const std::string& base) {
    // Kept on purpose: "_0_asm.bck" is asked for, though the backup is written as "_asm.bck", so
    // that an earlier "_asm.bck" alone raises no question.
    return backup(services, {base}, {frame_backup_name(base), base + "_0_asm.bck"},
                  "A previous backup of the file exists. Do you want to overwrite it ?");
}

Outcome backup_aircraft_sets(const Services& services, const std::vector<std::string>& bases) {
    std::vector<std::string> earlier;
    for (const Copy& copy : backup_copies(bases)) {
        earlier.push_back(copy.to);
    }
    return backup(services, bases, earlier,
                  "A previous backup of the selected files exists. Do you want to overwrite it ?");
}

Outcome restore_source_sets(const Services& services, const std::vector<std::string>& bases) {
    if (!services.reporter.ask("Do you want to overwrite the working files ?", Icon::Exclamation)) {
        return Outcome::Declined;
    }
    return copy_existing(services, restore_copies(bases), "Error while restoring: ");
}

} // namespace morvane
