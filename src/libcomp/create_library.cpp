#include "libcomp/create_library.h"

#include "core/disk.h"
#include "core/errors.h"
#include "core/paths.h"
#include "core/replace_files.h"
#include "core/reporter.h"
#include "core/source_set.h"
#include "core/text.h"
#include "core/text_writer.h"
#include "libcomp/library_source.h"

#include <algorithm>

namespace morvane {

namespace {

// What the outside compiler would stop at.
void note_hindrances(const Services& services, const LibraryList& list) {
    for (const LibraryLine& line : list.lines) {
        if (!services.disk.is_file(model_file_name(line.location))) {
            add_note(services.reporter, "the design " + line.base + " has no file " +
                                            model_file_name(line.base) +
                                            ", where the compiler will stop.");
        }
        if (trim(list.entry_of(line).name).empty()) {
            add_note(services.reporter, "the object of the design " + line.base +
                                            " has no name, which the compiler will not take.");
        }
    }
}

} // namespace

std::optional<std::string> duplicated_identifier(const LibraryList& list) {
    std::vector<std::string> sorted;
    for (const LibraryLine& line : list.lines) {
        sorted.push_back(identifier_text(list.entry_of(line).guid, true));
    }
    std::sort(sorted.begin(), sorted.end());
    const auto equal = std::adjacent_find(sorted.begin(), sorted.end());
    return equal == sorted.end() ? std::nullopt : std::optional(*equal);
}

bool create_library(const Services& services, const LibraryList& list,
                    const std::string& output_path) {
    Reporter& reporter = services.reporter;
    if (output_path.empty()) {
        reporter.message_box("Enter an output file.", Icon::Exclamation);
        return false;
    }
    if (const auto identifier = duplicated_identifier(list)) {
        reporter.message_box("Duplicated ID found : " + *identifier, Icon::Exclamation);
        return false;
    }
    try {
        replace_file(services.disk, output_path, [&](TextWriter& out) {
            write_library_source(out, list, file_name_part(output_path));
        });
    } catch (const RuntimeError& error) {
        report_error(reporter, error, "Error : ", " : ");
        return false;
    }
    note_hindrances(services, list);
    reporter.message_box("The output file was created successfully. Compile with 'BGLC /BGL " +
                             output_path + "'.",
                         Icon::Information);
    return true;
}

} // namespace morvane
