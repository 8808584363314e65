// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/create_library.h"

#include "base/encodings.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "base/version.h"
#include "source/opened_file.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <algorithm>

namespace morvane {

namespace {

std::string label(std::size_t position) {
    return "LIBRARY_" + to_text(position);
}

std::string distance(const std::string& end, const std::string& begin) {
    return "    dd  (offset " + end + ") - (offset " + begin + ")";
}

std::string decimal(std::int32_t value) {
    return std::to_string(value);
}

void write_comments(TextWriter& out, const std::string& file_name) {
    out.line("; Library Compiler - morvane " + std::string(version_caption));
    out.line("; Compile with 'BGLC /BGL " + source_text(file_name).value_or("FILE") + "'");
    out.line("; ");
}

// The smallest and the largest identifier by their texts; zeros for an empty list.
std::pair<Guid128, Guid128> corners(const LibraryList& list) {
    std::vector<Guid128> guids;
    for (const LibraryLine& line : list.lines) {
        guids.push_back(list.entry_of(line).guid);
    }
    if (guids.empty()) {
        return {};
    }
    const auto [least, largest] =
        std::minmax_element(guids.begin(), guids.end(), [](const Guid128& a, const Guid128& b) {
            return identifier_text(a, true) < identifier_text(b, true);
        });
    return {*least, *largest};
}

void write_corner(TextWriter& out, const Guid128& guid) {
    for (const std::size_t word : {0, 1}) {
        out.line("    dd  0" + hex_text(static_cast<std::uint32_t>(guid[word])) + "h");
    }
}

// The last zeros are two bytes more than the rest of the 128-byte header, so that the library data
// starts at 130. That is the layout which the simulator's own libraries are known to work with.
void write_header(TextWriter& out, const LibraryList& list) {
    out.line("header label word");
    out.line("    dw  0001");       // the kind of file
    out.line("    dd  000989D57H"); // north bound
    out.line("    dd  0FF6914C5H"); // south bound
    out.line("    dd  07FFFFFFFH"); // east bound
    out.line("    dd  080B60B62H"); // west bound
    out.line("    dw  22 dup(0)");
    out.line(distance("LIBRARY_DATA", "header"));
    out.line("    dw  10 dup(0)");
    const auto [least, largest] = corners(list);
    write_corner(out, least);
    write_corner(out, largest);
    out.line("    dw  14 dup(0)");
}

void write_index(TextWriter& out, const LibraryList& list) {
    out.line("LIBRARY_DATA label word");
    for (std::size_t i = 0; i < list.lines.size(); ++i) {
        out.line(distance(label(i), "LIBRARY_DATA"));
        out.line("    dd  " + identifier_text(list.entry_of(list.lines[i]).guid, true));
    }
    out.line("    dd  0,6,8");
    out.line("    dd  (offset LIBRARY_DATA)");
}

void write_object(TextWriter& out, const LibraryLine& line, const LibraryEntry& entry,
                  const std::string& name) {
    out.line(name + " label word");
    out.line("    dd  " + identifier_text(entry.guid, true));
    out.line("    db  " + decimal(entry.image_power));
    out.line(distance(name + "_HE", name));
    out.line(distance(name + "_END", name + "_START"));
    out.line("    dd  " + decimal(entry.object_size));
    out.line("    dd  " + decimal(entry.stored_scale));
    out.line("    dd  " + decimal(entry.object_type));
    out.line("    dd  " + decimal(entry.fourth_dword));
    out.line("    db \"" + std::string(trim(entry.name)) + "\"");
    out.line("    dd 0");
    out.line(name + "_HE label word");
    out.line(name + "_START label word");
    out.line("    include " + source_text(line.base).value() + "_0.asm");
    out.line(name + "_END label word");
}

} // namespace

void write_library_source(TextWriter& out, const LibraryList& list, const std::string& file_name) {
    write_comments(out, file_name);
    write_header(out, list);
    write_index(out, list);
    for (std::size_t i = 0; i < list.lines.size(); ++i) {
        write_object(out, list.lines[i], list.entry_of(list.lines[i]), label(i));
    }
    out.line("    dd 0,0,0,0");
}

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
