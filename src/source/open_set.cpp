// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/open_set.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "source/fields.h"
#include "source/materials.h"
#include "source/open_notes.h"
#include "source/source_set.h"
#include "system/disk.h"

#include <algorithm>
#include <string>
#include <utility>

namespace morvane {

const Translation& OpenSet::translation(std::size_t row) const {
    if (row < 1 || row > translations.size()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "material " + to_text(row));
    }
    return translations[row - 1];
}

Translation& OpenSet::translation(std::size_t row) {
    return const_cast<Translation&>(std::as_const(*this).translation(row));
}

std::size_t OpenSet::unprocessed() const {
    return static_cast<std::size_t>(
        std::count_if(translations.begin(), translations.end(),
                      [](const Translation& row) { return row.processed.empty(); }));
}

namespace {

// A base typed with the ending of one of its files is the usual slip.
void note_typed_extension(const Services& services, const std::string& base) {
    for (const std::string_view ending : {"_0.asm", ".asm"}) {
        if (has_ending(base, ending)) {
            const std::string without = base.substr(0, base.size() - ending.size());
            services.reporter.note({"The path is typed without an ending: '" + without +
                                    "' instead of '" + base + "'."});
            return;
        }
    }
}

bool files_exist(const Services& services, const std::string& base) {
    for (const std::string& name : {model_file_name(base), frame_file_name(base)}) {
        if (!services.disk.is_file(name)) {
            services.reporter.message_box(
                "Please enter valid input file. " + name + " file not found", Icon::Critical);
            note_typed_extension(services, base);
            if (services.disk.is_folder(base)) {
                services.reporter.note({"'" + base + "' is a folder."});
            }
            return false;
        }
    }
    return true;
}

bool is_usable(const OpenSet& set, Reporter& reporter) {
    // Without a marked material the line looked at is the first of the file: such a set is refused.
    const std::size_t selecting =
        set.translations.empty() ? 0 : set.translation(1).block.selecting_line;
    if (selecting == set.model.upper()) {
        reporter.note(refusal_cause(set)); // and reading the line after it fails
    }
    return trim(set.model.line(selecting + 1)).starts_with("DRA");
}

void list_colors(const OpenSet& set, Reporter& reporter) {
    reporter.add_message("");
    for (const Translation& row : set.translations) {
        reporter.add_message("  " + row.color);
    }
    reporter.add_message("Material colors : ");
}

bool analyse(const Services& services, OpenSet& set) {
    Reporter& reporter = services.reporter;
    reporter.add_message("ASM file:" + set.model.element0() + " lines of code");
    reporter.add_message("AZM file:" + set.frame.element0() + " lines of code");
    set.materials = find_material_list(set.model);
    reporter.add_message("Materials found : " + to_text(set.materials.size()) + " ");
    set.vertex_list = find_vertex_list(set.model);
    with_file(model_file_name(set.base),
              [&] { set.translations = build_translation_list(set.model, set.materials); });
    reporter.add_message("Materials for translation : " + to_text(set.translations.size()));
    if (!is_usable(set, reporter)) {
        reporter.note(refusal_cause(set));
        reporter.message_box("This file cannot be used. (Already processed ?)", Icon::Critical);
        return false;
    }
    list_colors(set, reporter);
    return true;
}

// The list is filled by now: what needs no placement can be made without one.
void add_placement(OpenSet& set, Reporter& reporter) {
    const std::string frame = frame_file_name(set.base);
    try {
        set.placement = with_file(frame, [&] { return read_placement(set.frame, reporter); });
    } catch (const RuntimeError& error) {
        report_error(reporter, error, "Error : ", " :");
        set.placement.unreadable = "the placement could not be read from " + frame;
        if (error.line() != 0) {
            set.placement.unreadable += " because of line " + to_text(error.line());
        }
    }
}

} // namespace

bool open_source_set(const Services& services, OpenSet& set, const std::string& base) {
    if (!files_exist(services, base)) {
        return false;
    }
    try {
        set = OpenSet();
        set.base = base;
        services.reporter.clear_messages();
        set.model_file = look_at_file(services.disk, model_file_name(base));
        set.frame_file = look_at_file(services.disk, frame_file_name(base));
        // With only half of it Save would write over a file that was never read.
        if (!load_source_set(services, base, set.model, set.frame).whole()) {
            set = OpenSet();
            return false;
        }
        set.opened = analyse(services, set);
        if (set.opened) {
            add_placement(set, services.reporter);
            for (const Note& note : opening_notes(set)) {
                services.reporter.note(note);
            }
        }
        return set.opened;
    } catch (const RuntimeError& error) {
        report_error(services.reporter, error, "Error : ", " :");
        return false;
    }
}

std::size_t count_triangles(const LineStore& model, const MaterialBlock& block) {
    std::size_t count = 0;
    for (std::size_t i = block.selecting_line + 2; i <= model.upper(); ++i) {
        if (!trim(model.line(i)).starts_with("DRAW_TRI ")) {
            break;
        }
        ++count;
    }
    return count;
}

namespace {

// Drops the last character, the "h" of a MASM number; a plain "0" thereby reads as 0 too.
double masm_hex(std::string_view operand) {
    return hex_value(operand.substr(0, operand.empty() ? 0 : operand.size() - 1));
}

double read_rotation(std::string_view line, Reporter& reporter) {
    const FieldArray fields = split_fields(line);
    if (!fields[0].starts_with("INSTANCE_CALL")) {
        return 0;
    }
    const double rotation = hex_value(fields[4]);
    reporter.add_message("Rotation is " + plain_text(rotation * 360 / 65536) + " degrees");
    return rotation;
}

// Reads a line of the frame into `result` if it is a SCALE_AGL line; false for any other.
bool read_scale(std::string_view line, Placement& result) {
    const FieldArray fields = split_fields(line);
    if (!fields[0].starts_with("SCALE_AGL")) {
        return false;
    }
    const double fraction = masm_hex(fields[8]) / 65536;
    result.longitude = masm_hex(fields[7]) + fraction;
    result.latitude = masm_hex(fields[5]) + fraction;
    result.latitude_degrees = result.latitude / 12734620 * 360 / pi;
    result.scale_line = line;
    return true;
}

} // namespace

Placement read_placement(const LineStore& frame, Reporter& reporter) {
    Placement result;
    for (std::size_t i = 1; i <= frame.upper(); ++i) {
        if (with_line(i, [&] { return read_scale(frame.line(i), result); })) {
            result.rotation =
                with_line(i + 1, [&] { return read_rotation(frame.line(i + 1), reporter); });
        }
    }
    return result;
}

} // namespace morvane
