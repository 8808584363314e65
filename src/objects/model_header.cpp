// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/model_header.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/reporter.h"
#include "base/text.h"
#include "objects/save.h"
#include "source/fields.h"
#include "source/find_line.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/file_bytes.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr std::string_view dictionary_label = "param_extension_dictionary";
constexpr std::string_view dictionary_end = "param_extension_dictionary_end";
constexpr const char* body_size_line =
    "    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4";

std::string size_line(const DictionaryTable& table) {
    return "    dd   " + plain_text(dictionary_size(table));
}

void append_body(std::vector<std::string>& lines, const DictionaryTable& table) {
    lines.emplace_back(body_size_line);
    for (const DictionaryRow& row : table) {
        lines.push_back(row.equ_line);
        lines.push_back(row.dd_line);
    }
}

std::vector<std::string> header_lines(const DictionaryTable& table) {
    std::vector<std::string> lines{"dd  param_extension_dictionary - visual_model_header",
                                   size_line(table),
                                   "    db  'F','S','8','0'",
                                   "    dd  2048",
                                   "visual_model_header_end  label dword",
                                   "  ",
                                   "    db  'D','I','C','T'",
                                   "param_extension_dictionary     label dword"};
    append_body(lines, table);
    lines.emplace_back("param_extension_dictionary_end     label dword");
    return lines;
}

std::size_t find_label_line(const LineStore& frame) {
    for (std::size_t i = 1; i < frame.upper(); ++i) {
        if (get_field(frame.line(i), 0) == dictionary_label) {
            return i;
        }
    }
    return 0;
}

// A dictionary's body. The line after the label is its size.
struct Body {
    std::vector<std::string> lines; // those that count, 300 at most
    std::size_t end = 0;            // index of the end label's line; 0 when there is none
    std::size_t count = 0;          // of the lines that would count without the limit
};

Body read_body(const LineStore& frame, std::size_t label) {
    Body body;
    for (std::size_t i = label + 2; i < frame.upper() && body.end == 0; ++i) {
        const std::string_view line = trim(frame.line(i));
        if (line.starts_with(dictionary_end)) {
            body.end = i;
        } else if (!line.empty() && line.front() != ';') {
            if (++body.count <= max_dictionary_lines) {
                body.lines.emplace_back(frame.line(i));
            }
        }
    }
    return body;
}

} // namespace

std::vector<Note> check_dictionary(const LineStore& frame, const std::string& path) {
    const std::size_t label = find_label_line(frame);
    if (label == 0) {
        if (find_trimmed_prefix("dd  0", frame) != 0) {
            return {};
        }
        return {{"there is neither a parameter dictionary nor a \"dd  0\" line to put one in, so "
                 "dict_g_lightStates, which aircraft lights test, stays undefined.",
                 path, 0, Severity::Error, "dictionary-missing"}};
    }
    const Body body = read_body(frame, label);
    std::vector<Note> notes;
    if (body.end == 0) {
        notes.push_back({"the parameter dictionary has no param_extension_dictionary_end label, so "
                         "dict_g_lightStates cannot be added to it.",
                         path, label, Severity::Error, "dictionary-end"});
    }
    if (body.count > max_dictionary_lines) {
        notes.push_back({"the parameter dictionary has more than " +
                             to_text(max_dictionary_lines / 2) +
                             " entries; those after them are dropped when it is written anew.",
                         path, label, Severity::Warning, "dictionary-full"});
    }
    return notes;
}

double dictionary_size(const DictionaryTable& table) {
    if (table.empty()) {
        return 0;
    }
    const FieldArray fields = split_fields(table.back().dd_line);
    return val(fields[2]) + val(fields[3]);
}

DictionaryTable load_ext_parameters(const Services& services, const std::string& base) {
    DictionaryTable table;
    LineStore frame;
    try {
        frame = LineStore(read_bytes(services.disk, frame_file_name(base)));
    } catch (const RuntimeError& error) {
        services.reporter.message_box(
            "File " + frame_file_name(base) +
            " cannot be opened (load_ext_parameters): " + error.description());
        throw; // an empty table would put a second dictionary into a frame that has one
    }
    const std::size_t label = find_label_line(frame);
    if (label == 0) {
        return table;
    }
    const std::vector<std::string> kept = read_body(frame, label).lines;
    for (std::size_t i = 0; i + 1 < kept.size(); i += 2) {
        table.push_back({kept[i], kept[i + 1]});
    }
    if (kept.size() % 2 != 0) {
        services.reporter.note({"the last line of the parameter dictionary has no partner and "
                                "is dropped: " +
                                    kept.back(),
                                frame_file_name(base), label});
    }
    return table;
}

void insert_model_header(Disk& disk, LineStore& frame, const DictionaryTable& table,
                         const std::optional<std::string>& trace_folder) {
    const std::size_t slot = find_trimmed_prefix("dd  0", frame);
    if (slot != 0) {
        frame.insert_lines(slot + 1, header_lines(table));
        frame.erase_lines(slot, slot);
    }
    write_frame_trace(disk, frame, trace_folder);
}

void update_model_header(Disk& disk, LineStore& frame, const DictionaryTable& table,
                         const std::optional<std::string>& trace_folder) {
    const std::size_t signature = find_trimmed_prefix("db  'F','S','8','0'", frame);
    if (signature > 1) {
        frame.set_line(signature - 1, size_line(table));
    }
    const std::size_t label = find_trimmed_prefix(dictionary_label, frame, signature + 1);
    const std::size_t end = label == 0 ? 0 : find_trimmed_prefix(dictionary_end, frame, label + 1);
    if (end != 0) {
        std::vector<std::string> body;
        append_body(body, table);
        frame.insert_lines(end, body);
        if (end > label + 1) {
            frame.erase_lines(label + 1, end - 1);
        }
    }
    write_frame_trace(disk, frame, trace_folder);
}

std::size_t find_bgl_end(const LineStore& model, Reporter& reporter, std::size_t start) {
    const std::size_t found = find_trimmed_prefix("BGL_END", model, start);
    if (found == 0) {
        reporter.message_box("Cannot find proper BGL END code. File cannot be processed.",
                             Icon::Critical);
    }
    return found;
}

namespace {

constexpr double first_offset = 152; // of the first entry in a new dictionary

DictionaryRow light_states_row(double offset) {
    const std::string text = plain_text(offset);
    return {"    dict_g_lightStates equ " + text,
            "    dd 2," + text + ",4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh"};
}

} // namespace

bool holds_light_states(const std::vector<DictionaryRow>& dictionary) {
    return std::any_of(dictionary.begin(), dictionary.end(), [](const DictionaryRow& row) {
        return trim(row.equ_line).starts_with("dict_g_lightStates");
    });
}

bool ensure_light_states(const Services& services, OpenSet& set) {
    if (set.dictionary.empty()) {
        set.dictionary = load_ext_parameters(services, set.base);
    }
    set.frame_changed = true;
    if (set.dictionary.empty()) {
        set.dictionary.push_back(light_states_row(first_offset));
        insert_model_header(services.disk, set.frame, set.dictionary);
        return true;
    }
    if (!holds_light_states(set.dictionary)) {
        set.dictionary.push_back(light_states_row(dictionary_size(set.dictionary)));
        update_model_header(services.disk, set.frame, set.dictionary);
        return true;
    }
    return false;
}

} // namespace morvane
