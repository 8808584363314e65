// SPDX-License-Identifier: GPL-3.0-or-later
#include "upkeep/rename_labels.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "base/windows1252.h"
#include "source/text_files.h"
#include "upkeep/label_suffix.h"

#include <algorithm>

namespace morvane {

namespace {

// Whether the text can be the end of a name in assembler source.
bool can_end_a_name(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
               c == '_' || c == '@' || c == '$' || c == '?';
    });
}

void note_suffix(const Services& services, const std::string& path, std::string_view suffix) {
    if (suffix.empty()) {
        services.reporter.note({"the suffix is empty, so that no label changes.", path});
    } else if (!can_end_a_name(suffix)) {
        services.reporter.note({"with the suffix \"" + to_utf8(suffix) +
                                    "\" the labels are not names: an assembler takes letters, "
                                    "digits, _ @ $ and ? only.",
                                path});
    }
}

Outcome rename_and_save(const Services& services, const std::string& path,
                        std::string_view suffix) {
    Reporter& reporter = services.reporter;
    LineStore store;
    if (load_file2array(services, path, store) == 0 || store.count() == 0) {
        reporter.message_box("File returns no lines.", Icon::Critical);
        return Outcome::Failed;
    }
    reporter.add_message("Open file returned " + store.element0() + " lines of code");
    note_suffix(services, path, suffix);
    const std::size_t labels = append_label_suffix(store, suffix);
    reporter.add_message("Labels mofilied : " + to_text(labels));
    if (!reporter.ask("Do you want to save the changes ? ", Icon::None, "File replace")) {
        return Outcome::Declined;
    }
    save_array2file(services.disk, path, store);
    reporter.add_message("File saved");
    return Outcome::Done;
}

} // namespace

Outcome rename_labels(const Services& services, const std::string& path, std::string_view suffix) {
    const std::optional<std::string> bytes = source_text(suffix);
    if (!bytes) {
        services.reporter.message_box(cannot_be_written("The suffix", suffix), Icon::Critical);
        return Outcome::Failed;
    }
    try {
        return rename_and_save(services, path, *bytes);
    } catch (const RuntimeError& error) {
        // The odd blank before the second colon is part of the text.
        report_error(services.reporter, error, "Error : ", " :");
        return Outcome::Failed;
    }
}

} // namespace morvane
