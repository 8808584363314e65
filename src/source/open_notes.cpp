// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/open_notes.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"
#include "source/fields.h"
#include "source/materials.h"
#include "source/source_set.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

namespace morvane {

namespace {

// A little more than 0.02, which 0.98 misses by rounding.
constexpr double nearly = 0.02 + 1e-9;

// The red, green and blue parts of a highlight as they are written.
using Parts = std::array<std::string, 3>;

struct Highlight {
    Parts parts;
    double distance = 0; // of the value farthest from 0 or 1; the whole is pure at 0
    bool black = true;   // all parts are nearer to 0 than to 1
};

std::optional<Highlight> read_highlight(const Material& material) {
    try {
        const FieldArray fields = split_fields(material.text);
        Highlight highlight;
        for (std::size_t i = 0; i < highlight.parts.size(); ++i) {
            const std::string_view part = trim(fields[8 + i]);
            const double value = val(part);
            highlight.parts[i] = part.empty() ? "nothing" : std::string(part);
            highlight.distance =
                std::max(highlight.distance, std::min(std::abs(value), std::abs(value - 1)));
            highlight.black = highlight.black && value < 0.5;
        }
        return highlight;
    } catch (const RuntimeError&) { // too many operands, or a number too large
        return std::nullopt;
    }
}

std::string parts_text(const Highlight& highlight) {
    return highlight.parts[0] + ", " + highlight.parts[1] + ", " + highlight.parts[2];
}

Note model_note(const OpenSet& set, std::string text, std::size_t line) {
    return {std::move(text), model_file_name(set.base), line, Severity::Warning, "not-usable"};
}

Note no_materials(const OpenSet& set) {
    for (std::size_t i = 1; i < set.model.upper(); ++i) {
        const std::string_view line = set.model.line(i);
        const std::size_t start = line.find_first_not_of(" \t");
        if (start != std::string_view::npos &&
            line.substr(start).starts_with("MATERIAL_LIST_BEGIN")) {
            const bool tabs = line.find('\t') != std::string_view::npos;
            return model_note(set,
                              tabs ? "no material list is found, because this line begins with a "
                                     "tab; only blanks may come before a keyword."
                              : trim(line) == "MATERIAL_LIST_BEGIN"
                                  ? "the material list is empty."
                                  : "no material list is found: this line holds more than "
                                    "MATERIAL_LIST_BEGIN.",
                              i);
        }
    }
    return model_note(set, "there is no MATERIAL_LIST_BEGIN line, so this is not a model file.", 0);
}

Note none_pure(const OpenSet& set) {
    const std::string count = to_text(set.materials.size());
    const std::string none =
        set.materials.size() == 1
            ? "the only material has no pure highlight colour"
            : "none of the " + count + " materials has a pure highlight colour";
    std::optional<Highlight> nearest;
    std::size_t number = 0;
    for (std::size_t i = 0; i < set.materials.size(); ++i) {
        const std::optional<Highlight> highlight = read_highlight(set.materials[i]);
        if (highlight && !highlight->black &&
            (!nearest || highlight->distance < nearest->distance)) {
            nearest = highlight;
            number = i;
        }
    }
    if (!nearest) {
        return model_note(set, none + ", so nothing is marked.", set.materials.front().list_line);
    }
    return model_note(set,
                      none + "; the nearest is MATERIAL " + to_text(number) + " with " +
                          parts_text(*nearest) +
                          ". Red, green and blue must each be exactly 0 or 1.",
                      set.materials[number].list_line);
}

void add_nearly_pure(const OpenSet& set, std::vector<Note>& notes) {
    for (std::size_t i = 0; i < set.materials.size(); ++i) {
        const std::optional<Highlight> highlight = read_highlight(set.materials[i]);
        if (highlight && !highlight->black && highlight->distance > 0 &&
            highlight->distance <= nearly) {
            notes.push_back({"MATERIAL " + to_text(i) + " is not marked: its highlight " +
                                 parts_text(*highlight) +
                                 " is nearly pure, but each part must be exactly 0 or 1.",
                             model_file_name(set.base), set.materials[i].list_line,
                             Severity::Warning, "near-highlight"});
        }
    }
}

} // namespace

Note refusal_cause(const OpenSet& set) {
    if (set.materials.empty()) {
        return no_materials(set);
    }
    if (set.translations.empty()) {
        return none_pure(set);
    }
    const Translation& first = set.translations.front();
    if (first.block.selecting_line >= set.model.upper()) {
        return model_note(set, row_and_number(first) + " is drawn nowhere.", first.list_line);
    }
    const std::size_t next = first.block.selecting_line + 1;
    const std::string name = row_and_number(first);
    if (is_rewritten(set.model, first.block)) {
        return model_note(set,
                          name + " is already rewritten. Restore the backup or export the model "
                                 "again.",
                          next);
    }
    return model_note(set,
                      "the line after the MATERIAL line of " + name + " is \"" +
                          std::string(trim(set.model.line(next)).substr(0, 60)) +
                          "\", not a block of triangles.",
                      next);
}

std::vector<Note> opening_notes(const OpenSet& set) {
    std::vector<Note> notes;
    add_nearly_pure(set, notes);
    for (const Translation& row : set.translations) {
        const std::size_t places = row.block.further_places;
        if (places > 0) {
            notes.push_back({row_and_number(row) + " is drawn in " + to_text(places) +
                                 (places == 1 ? " more place, which stays as it is."
                                              : " more places, which stay as they are."),
                             model_file_name(set.base), row.block.selecting_line, Severity::Note,
                             "further-places"});
        }
    }
    return notes;
}

} // namespace morvane
