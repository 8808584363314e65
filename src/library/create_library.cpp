// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/create_library.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "base/windows1252.h"
#include "library/library_source.h"
#include "source/opened_file.h"
#include "source/source_set.h"
#include "system/absolute_path.h"
#include "system/disk.h"
#include "system/replace_files.h"
#include "system/text_writer.h"

#include <algorithm>

namespace morvane {

namespace {

// What the outside compiler would stop at.
void note_hindrances(const Services& services, const LibraryList& list) {
    for (const LibraryLine& line : list.lines) {
        if (!services.disk.is_file(model_file_name(line.location))) {
            services.reporter.note({"the design " + line.base + " has no file " +
                                    model_file_name(line.base) +
                                    ", where the compiler will stop."});
        }
        if (trim(list.entry_of(line).name).empty()) {
            services.reporter.note({"the object of the design " + line.base +
                                    " has no name, which the compiler will not take."});
        }
    }
}

// What keeps the library from being written, as the text of a message; empty when nothing does.
std::string hindrance(const Services& services, const LibraryList& list,
                      const std::string& output_path) {
    if (output_path.empty()) {
        return "Enter an output file.";
    }
    if (const auto identifier = duplicated_identifier(list)) {
        return "Duplicated ID found : " + *identifier;
    }
    if (const auto design = overwritten_design(services.disk, list, output_path)) {
        return "The output file " + output_path + " is a file of a design: " + *design;
    }
    for (const LibraryLine& line : list.lines) {
        if (!source_text(line.base)) {
            return cannot_be_written("The design", line.base);
        }
    }
    return {};
}

} // namespace

std::optional<std::string> overwritten_design(Disk& disk, const LibraryList& list,
                                              const std::string& output_path) {
    const std::string output = absolute_path(output_path);
    for (const LibraryLine& line : list.lines) {
        for (const std::string& file :
             {frame_file_name(line.location), model_file_name(line.location)}) {
            if (is_same_file(disk, output, absolute_path(file))) {
                return file;
            }
        }
    }
    return std::nullopt;
}

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
    if (const std::string problem = hindrance(services, list, output_path); !problem.empty()) {
        reporter.message_box(problem, Icon::Exclamation);
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
