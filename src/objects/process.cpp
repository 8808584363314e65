#include "objects/process.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "objects/light_states.h"
#include "objects/model_header.h"
#include "objects/rewrite.h"
#include "source/open_source_set.h"

#include <algorithm>
#include <vector>

namespace morvane {

namespace {

// What a Process may change, to put it back when it fails.
class Undo {
  public:
    Undo(OpenSet& set, std::size_t row, bool frame_too)
        : set_(set), first_(set.translation(row).block.selecting_line + 1), block_(block_lines()),
          new_code_base_(set.new_code.base), records_(set.records),
          generated_(set.generated.size()), dictionary_(set.dictionary),
          frame_changed_(set.frame_changed) {
        if (frame_too) {
            frame_ = set.frame;
        }
    }

    void put_back() {
        for (std::size_t i = 0; i < block_.size(); ++i) {
            set_.model.set_line(first_ + i, block_[i]);
        }
        set_.new_code.cut_back_to(new_code_base_);
        set_.records = records_;
        set_.generated.resize(generated_);
        set_.dictionary = dictionary_;
        set_.frame_changed = frame_changed_;
        if (frame_) {
            set_.frame = *frame_;
        }
    }

  private:
    // The lines that the rewrite may comment out: one before the triangles, one behind.
    std::vector<std::string> block_lines() const {
        const std::size_t triangles = count_triangles(set_.model, {first_ - 1, 0, 0});
        std::vector<std::string> lines;
        for (std::size_t i = first_; i < first_ + triangles + 2 && i <= set_.model.upper(); ++i) {
            lines.emplace_back(set_.model.line(i));
        }
        return lines;
    }

    OpenSet& set_;
    std::size_t first_;
    std::vector<std::string> block_;
    std::size_t new_code_base_;
    std::vector<ReplacementRecord> records_;
    std::size_t generated_;
    std::vector<DictionaryRow> dictionary_;
    bool frame_changed_;
    std::optional<LineStore> frame_;
};

bool goes_behind_bgl_end(Kind kind) {
    return kind == Kind::Library || kind == Kind::Effects;
}

// The record stands behind those with the same insertion line, so that code comes out in the
// order in which it was processed.
void file_record(OpenSet& set, std::size_t insertion_line, std::size_t first, std::size_t last) {
    if (set.records.size() == OpenSet::max_records) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "more than 100 processed materials");
    }
    if (set.generated.size() + (last + 1 - first) > OpenSet::max_generated_rows) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                           "more than 50000 lines of generated code");
    }
    const std::size_t tag = set.records.size() + 1;
    const auto place = std::upper_bound(
        set.records.begin(), set.records.end(), insertion_line,
        [](std::size_t line, const ReplacementRecord& r) { return line < r.insertion_line; });
    set.records.insert(place, {insertion_line, tag});
    for (std::size_t i = first; i <= last; ++i) {
        set.generated.push_back({tag, set.new_code.lines[i]});
    }
}

std::size_t insertion_line(const Services& services, OpenSet& set, std::size_t row, Kind kind) {
    if (!goes_behind_bgl_end(kind)) {
        return set.translation(row).block.selecting_line + 1;
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

void note_empty_block(const Services& services, const OpenSet& set, std::size_t row) {
    if (count_triangles(set.model, set.translation(row).block) == 0) {
        services.reporter.note({"material " + to_text(row) +
                                " has no triangles where it is first drawn, so nothing is "
                                "made of it; Save may refuse the set."});
    }
}

void file_code(const Services& services, OpenSet& set, std::size_t insertion, std::size_t old_base,
               bool aircraft_lights, const std::optional<std::string>& trace_folder) {
    file_record(set, insertion, old_base + 1, set.new_code.base);
    if (aircraft_lights) {
        ensure_light_states(services, set, trace_folder);
    }
}

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

} // namespace

ProcessResult process_material(const Services& services, OpenSet& set, std::size_t row, Kind kind,
                               const Parameters& parameters,
                               const std::optional<std::string>& trace_folder) {
    std::optional<Undo> undo;
    try {
        if (is_refused(services, set, row)) {
            return {};
        }
        const std::size_t insertion = insertion_line(services, set, row, kind);
        if (insertion == 0) {
            return {};
        }
        note_empty_block(services, set, row);
        const bool aircraft_lights = kind == Kind::Lights && parameters.lights.AircraftFlag;
        undo.emplace(set, row, aircraft_lights);
        const std::size_t old_base = set.new_code.base;
        const auto count = rewrite_material(services, set, row, kind, parameters, trace_folder);
        if (!count) {
            return {};
        }
        file_code(services, set, insertion, old_base, aircraft_lights, trace_folder);
        services.reporter.add_message("Lines of new code : " + to_text(*count));
        set.translation(row).processed = kind_text(kind);
        return {true, *count};
    } catch (const RuntimeError& error) {
        if (undo) {
            undo->put_back();
        }
        report_error(services.reporter, error, "Error : ", " :");
        return {};
    }
}

} // namespace morvane
