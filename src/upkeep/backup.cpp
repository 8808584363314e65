// SPDX-License-Identifier: GPL-3.0-or-later
#include "upkeep/backup.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "source/materials.h"
#include "source/source_set.h"
#include "system/disk.h"

#include <algorithm>
#include <functional>

namespace morvane {

namespace {

constexpr std::string_view backup_error = "Error while copying: ";

std::vector<FileCopy> backup_copies(const std::vector<std::string>& bases) {
    std::vector<FileCopy> copies;
    for (const std::string& base : bases) {
        copies.push_back({base, frame_file_name(base), frame_backup_name(base)});
        copies.push_back({base, model_file_name(base), model_backup_name(base)});
    }
    return copies;
}

std::vector<FileCopy> restore_copies(const std::vector<std::string>& bases) {
    std::vector<FileCopy> copies = backup_copies(bases);
    for (FileCopy& copy : copies) {
        std::swap(copy.from, copy.to);
    }
    return copies;
}

void note_copied(Reporter& reporter, const std::vector<FileCopy>& copied) {
    for (const FileCopy& copy : copied) {
        reporter.note({copy.to + " had already been written from " + copy.from + "."});
    }
}

// An empty base is a box of the window that was not filled in: nobody expects a file of it.
void note_missing(Reporter& reporter, const std::vector<FileCopy>& missing) {
    for (const FileCopy& copy : missing) {
        if (!copy.base.empty()) {
            reporter.note({"there is no such file, so it was not copied.", copy.from});
        }
    }
}

// Whose permissions a copy gets, by the file's name; empty for those that it has already.
using PermissionsOf = std::function<std::string(const FileCopy&)>;

// Stops at the first failure, after its message.
CopyResult copy_existing(const Services& services, const std::vector<FileCopy>& copies,
                         const PermissionsOf& permissions_of, std::string_view error_text) {
    CopyResult result;
    try {
        for (const FileCopy& copy : copies) {
            if (services.disk.is_file(copy.from)) {
                copy_text_file(services, copy.from, copy.to, permissions_of(copy));
                result.copied.push_back(copy);
            } else {
                result.missing.push_back(copy);
            }
        }
    } catch (const RuntimeError& error) {
        note_copied(services.reporter, result.copied);
        report_error(services.reporter, error, error_text, " : ");
        result.outcome = Outcome::Failed;
    }
    note_missing(services.reporter, result.missing);
    return result;
}

CopyResult back_up(const Services& services, const std::vector<std::string>& bases) {
    return copy_existing(
        services, backup_copies(bases), [](const FileCopy& copy) { return copy.from; },
        backup_error);
}

CopyResult ask_and_back_up(const Services& services, const std::vector<std::string>& bases,
                           const std::vector<std::string>& earlier, std::string_view question) {
    const bool any = std::any_of(earlier.begin(), earlier.end(), [&](const std::string& name) {
        return services.disk.is_file(name);
    });
    if (any && !services.reporter.ask(question, Icon::Exclamation)) {
        return {Outcome::Declined, {}, {}};
    }
    return back_up(services, bases);
}

bool is_rewritten_file(Disk& disk, const std::string& path) {
    return disk.is_file(path) && has_rewritten_block(LineStore::read(*disk.open_for_reading(path)));
}

bool would_lose_export(const Services& services, const std::string& base) {
    const std::string model = model_file_name(base);
    const std::string kept = model_backup_name(base);
    const bool lost = services.disk.is_file(kept) && is_rewritten_file(services.disk, model) &&
                      !is_rewritten_file(services.disk, kept);
    if (lost) {
        services.reporter.message_box(
            kept + " holds the model as it was exported, and " + model +
                " was rewritten since. Nothing was copied; --force copies it all the same.",
            Icon::Critical);
    }
    return lost;
}

} // namespace

std::string frame_backup_name(std::string_view base) {
    return std::string(base) + "_azm.bck";
}

std::string model_backup_name(std::string_view base) {
    return std::string(base) + "_asm.bck";
}

std::vector<std::string> CopyResult::bases_without_files() const {
    std::vector<std::string> bases;
    for (std::size_t i = 0; i + 1 < missing.size(); ++i) {
        if (missing[i].base == missing[i + 1].base) { // the two files of a set follow each other
            bases.push_back(missing[i++].base);
        }
    }
    return bases;
}

CopyResult backup_source_set(const Services& services, const std::string& base) {
    // Kept on purpose: "_0_asm.bck" is asked for, though the backup is written as "_asm.bck", so
    // that an earlier "_asm.bck" alone raises no question.
    return ask_and_back_up(services, {base}, {frame_backup_name(base), base + "_0_asm.bck"},
                           "A previous backup of the file exists. Do you want to overwrite it ?");
}

CopyResult backup_without_asking(const Services& services, const std::string& base) {
    return back_up(services, {base});
}

CopyResult backup_aircraft_sets(const Services& services, const std::vector<std::string>& bases) {
    std::vector<std::string> earlier;
    for (const FileCopy& copy : backup_copies(bases)) {
        earlier.push_back(copy.to);
    }
    return ask_and_back_up(
        services, bases, earlier,
        "A previous backup of the selected files exists. Do you want to overwrite it ?");
}

CopyResult restore_source_sets(const Services& services, const std::vector<std::string>& bases) {
    if (!services.reporter.ask("Do you want to overwrite the working files ?", Icon::Exclamation)) {
        return {Outcome::Declined, {}, {}};
    }
    // A backup made by an earlier version may have permissions of its own.
    const auto permissions_of = [&](const FileCopy& copy) {
        return services.disk.is_file(copy.to) ? std::string() : copy.from;
    };
    return copy_existing(services, restore_copies(bases), permissions_of,
                         "Error while restoring: ");
}

bool would_lose_export(const Services& services, const std::vector<std::string>& bases) {
    try {
        return std::any_of(bases.begin(), bases.end(), [&](const std::string& base) {
            return would_lose_export(services, base);
        });
    } catch (const RuntimeError& error) {
        report_error(services.reporter, error, backup_error, " : ");
        return true;
    }
}

} // namespace morvane
