// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/process.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "objects/block_checks.h"
#include "objects/model_header.h"
#include "objects/planned_code.h"
#include "objects/save.h"
#include "source/materials.h"
#include "source/source_set.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace morvane {

FrameChange::FrameChange(const OpenSet& set)
    : lines_(set.frame), dictionary_(set.dictionary), frame_changed_(set.frame_changed) {}

void FrameChange::exchange(OpenSet& set) {
    std::swap(set.frame, lines_);
    std::swap(set.dictionary, dictionary_);
    std::swap(set.frame_changed, frame_changed_);
}

std::size_t FrameChange::bytes() const {
    return sizeof *this + lines_.upper() * sizeof(std::string_view);
}

Change::Change(const OpenSet& set, const Translation& material, std::size_t lines)
    : row_(material.row), block_(set.model.keep_lines(material.block.selecting_line + 1, lines)),
      processed_(material.processed), given_up_(material.given_up), bgl_end_(set.bgl_end),
      replacements_(set.replacements.size()), frame_changed_(set.frame_changed) {}

void Change::keep_frame(const OpenSet& set) {
    frame_.emplace(set);
}

void Change::exchange(OpenSet& set) {
    Translation& material = set.translation(row_);
    set.model.exchange(block_);
    std::swap(material.processed, processed_);
    std::swap(material.given_up, given_up_);
    std::swap(set.bgl_end, bgl_end_);
    if (!frame_) {
        std::swap(set.frame_changed, frame_changed_);
    } else {
        frame_->exchange(set);
    }
    if (set.replacements.size() > replacements_) {
        replacement_ = std::move(set.replacements.back());
        set.replacements.pop_back();
    } else if (replacement_) {
        set.replacements.push_back(std::move(*replacement_));
        replacement_.reset();
    }
}

std::size_t Change::bytes() const {
    std::size_t sum = sizeof(Change) + block_.bytes();
    if (replacement_) {
        for (const std::string& line : replacement_->code) {
            sum += sizeof(std::string) + line.capacity();
        }
    }
    return sum + (frame_ ? frame_->bytes() : 0);
}

namespace {

bool is_refused(const Services& services, const OpenSet& set, std::size_t row) {
    if (row == 0 || !set.opened) {
        services.reporter.message_box(
            "Error ! Please select material and set processing parameters first !!");
        return true;
    }
    if (!set.translation(row).processed.empty()) {
        services.reporter.message_box("This material is already processed. Please select another.");
        return true;
    }
    return false;
}

// Lines that a windsock commented out before it was given up stay as they are.
void comment_out(OpenSet& set, const Translation& material, std::size_t lines) {
    const std::size_t first = material.block.selecting_line + 1;
    for (std::size_t i = material.given_up; i < lines; ++i) {
        set.model.comment_out(first + i);
    }
}

// The line before which the code goes. 0, after a message box, when it needs a BGL_END line and
// there is none.
std::size_t insertion_line(const Services& services, OpenSet& set, const Translation& material,
                           Kind kind) {
    if (!goes_after_bgl_end(kind)) {
        return material.block.selecting_line + 1;
    }
    const std::size_t bgl_end = find_bgl_end(set.model, services.reporter, set.bgl_end);
    if (bgl_end == 0) {
        return 0;
    }
    // Lines are only ever commented out, so none before this one will become a BGL_END line, and
    // the next material need not look through them.
    set.bgl_end = bgl_end;
    return bgl_end + 1;
}

void file_code(OpenSet& set, std::size_t before_line, std::vector<std::string> code) {
    require_room(set, code.size());
    set.replacements.push_back({before_line, std::move(code)});
}

// One Process on its way.
struct Run {
    const Services& services;
    OpenSet& set;
    Translation& material;
    Kind kind;
    const Parameters& parameters;
    const std::optional<std::string>& trace_folder;

    bool aircraft_lights() const { return kind == Kind::Lights && parameters.lights.AircraftFlag; }
};

// False, after a message box, when there is no place for the code.
bool carry_out(const Run& run, Rewrite& rewrite, Change& change) {
    comment_out(run.set, run.material, rewrite.lines);
    const std::size_t before_line = insertion_line(run.services, run.set, run.material, run.kind);
    if (before_line == 0) {
        return false;
    }
    file_code(run.set, before_line, std::move(rewrite.code));
    bool frame_written = false;
    if (run.aircraft_lights()) {
        if (!holds_light_states(run.set.dictionary)) {
            change.keep_frame(run.set);
        }
        frame_written = ensure_light_states(run.services, run.set);
    }
    run.material.processed = kind_text(run.kind);
    run.material.given_up = 0;
    write_traces(run.services.disk, run.set, run.trace_folder, frame_written);
    return true;
}

// A triangle cannot be used: the lines before it stay commented out.
ProcessResult give_up(const Run& run, const Rewrite& rewrite, std::string_view message) {
    run.services.reporter.message_box(message, Icon::Exclamation);
    std::optional<Change> change;
    if (rewrite.lines > run.material.given_up) {
        change.emplace(run.set, run.material, rewrite.lines);
        comment_out(run.set, run.material, rewrite.lines);
        run.material.given_up = rewrite.lines;
    }
    const std::size_t first = run.material.block.selecting_line + 1;
    run.services.reporter.note(
        {row_and_number(run.material) + ": this triangle has no height, so lines " +
             to_text(first) + " to " + to_text(first + rewrite.lines - 1) +
             " stay commented out. Processed again, the material is taken as it was before.",
         model_file_name(run.set.base), rewrite.unusable_line, Severity::Warning, "flat-windsock"});
    return {false, 0, std::move(change)};
}

ProcessResult process(const Run& run, DrawBlock& block, std::optional<Change>& change) {
    const ObjectCode code = object_code(run.set, run.material, run.kind, run.parameters);
    Rewrite rewrite = generate_code(block, code);
    if (rewrite.unusable_line != 0) {
        return give_up(run, rewrite, code.unusable);
    }
    const std::vector<Note> notes = check_material(run.set, run.material, run.kind, run.parameters);
    change.emplace(run.set, run.material, rewrite.lines);
    if (!carry_out(run, rewrite, *change)) {
        change->exchange(run.set);
        return {};
    }
    for (const Note& note : notes) {
        run.services.reporter.note(note);
    }
    run.services.reporter.add_message("Lines of new code : " + to_text(rewrite.count));
    return {true, rewrite.count, std::move(change)};
}

// An error while a block is walked is about the line that the walk has come to.
void report_failure(const Services& services, const OpenSet& set, std::size_t row,
                    const std::optional<DrawBlock>& block, const RuntimeError& error) {
    Note note{std::string(error.description())};
    if (!error.about().empty()) {
        note.text += ": " + error.about();
    }
    if (row >= 1 && row <= set.translations.size()) {
        note.text = row_and_number(set.translation(row)) + ": " + note.text;
    }
    if (block) {
        note.path = model_file_name(set.base);
        note.line = block->line();
    }
    note.severity = Severity::Error;
    services.reporter.note(note);
    services.reporter.message_box("Error : " + std::to_string(error.number()) + " :" +
                                  error.description());
}

} // namespace

ProcessResult process_material(const Services& services, OpenSet& set, std::size_t row, Kind kind,
                               const Parameters& parameters,
                               const std::optional<std::string>& trace_folder) {
    std::optional<DrawBlock> block;
    std::optional<Change> change;
    try {
        if (is_refused(services, set, row)) {
            return {};
        }
        const Run run{services, set, set.translation(row), kind, parameters, trace_folder};
        if (const std::optional<Note> note = block_note(set, run.material)) {
            services.reporter.note(*note);
        }
        block.emplace(set.model, set.vertex_list, run.material);
        return process(run, *block, change);
    } catch (const RuntimeError& error) {
        if (change) {
            change->exchange(set);
        }
        report_failure(services, set, row, block, error);
        return {};
    }
}

namespace {

constexpr std::string_view rest_of_line = "  label BGLCODE";

bool is_closing_label(std::string_view line) {
    return line == "SKIP_FX  label BGLCODE" || line == "SKIP_LIB  label BGLCODE";
}

} // namespace

void number_repeated_label(OpenSet& set, std::size_t row) {
    if (set.replacements.empty() || set.replacements.back().code.empty() ||
        !is_closing_label(set.replacements.back().code.back())) {
        return;
    }
    std::string& last = set.replacements.back().code.back();
    const bool repeated = std::any_of(
        set.replacements.begin(), set.replacements.end() - 1, [&](const Replacement& other) {
            return std::find(other.code.begin(), other.code.end(), last) != other.code.end();
        });
    if (repeated) {
        last.insert(last.size() - rest_of_line.size(), to_text(row));
    }
}

} // namespace morvane
