// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/document.h"

#include "base/paths.h"
#include "base/reporter.h"
#include "objects/parameter_checks.h"
#include "objects/process.h"
#include "objects/save.h"
#include "recipe/recipe.h"
#include "source/materials.h"
#include "source/open_set.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

std::string process_name(const Translation& material) {
    return "Process of " + row_and_number(material).substr(std::string_view("row ").size());
}

} // namespace

/// Passes everything on to the user and keeps the notes for the document.
class Document::NoteKeeper final : public Reporter {
  public:
    explicit NoteKeeper(Document& document)
        : document_(document), user_(document.services_.reporter) {}

    void add_message(std::string_view text) override { user_.add_message(text); }
    void note(const Note& note) override {
        user_.note(note);
        document_.notes_.push_back(note);
        document_.listener_.notes_changed();
    }
    void clear_messages() override {
        user_.clear_messages();
        document_.notes_.clear();
        document_.listener_.notes_changed();
    }
    void message_box(std::string_view text, Icon icon) override {
        if (boxes == Boxes::All || (boxes == Boxes::NoSuccess && icon != Icon::Information)) {
            user_.message_box(text, icon);
        } else if (icon == Icon::Information) {
            add_message(text);
        } else {
            note({std::string(text), {}, 0, Severity::Warning});
        }
    }
    bool ask(std::string_view text, Icon icon, std::string_view title) override {
        if (boxes != Boxes::None) {
            return user_.ask(text, icon, title);
        }
        message_box(text, icon);
        return false;
    }
    bool progress(std::string_view what, std::size_t done, std::size_t total) override {
        return user_.progress(what, done, total);
    }

    Boxes boxes = Boxes::All;

  private:
    Document& document_;
    Reporter& user_;
};

std::size_t Step::bytes() const {
    std::size_t sum = sizeof *this + name.capacity();
    for (const StepMaterial& material : materials) {
        sum += sizeof material - sizeof material.change + material.change.bytes();
    }
    return sum + (frame ? frame->bytes() : 0);
}

Document::Document(const Services& services, DocumentListener& listener,
                   std::optional<std::string> trace_folder)
    : services_(services), listener_(listener), trace_folder_(std::move(trace_folder)),
      reporter_(std::make_unique<NoteKeeper>(*this)) {}

Document::~Document() = default;

Services Document::services() {
    return {services_.disk, *reporter_};
}

bool Document::open(const std::string& base) {
    const bool opened = open_source_set(services(), set_, base);
    if (opened || !set_.opened) { // else the files are missing and the set that was open stays
        done_.clear();
        undone_.clear();
        opened_frame_ = set_.frame;
        allowed_.clear();
        listener_.opened();
        listener_.history_changed();
    }
    return opened;
}

void Document::note(const Note& note) {
    reporter_->note(note);
}

void Document::replace_set(OpenSet set) {
    set_ = std::move(set);
    opened_frame_ = set_.frame;
    done_.clear();
    undone_.clear();
}

void Document::with_boxes(Boxes boxes, const std::function<void()>& command) {
    const Boxes before = std::exchange(reporter_->boxes, boxes);
    try {
        command();
    } catch (...) {
        reporter_->boxes = before;
        throw;
    }
    reporter_->boxes = before;
}

void Document::set_default_parameters(const Parameters& parameters) {
    parameters_ = parameters;
    listener_.parameters_changed();
}

void Document::set_parameters(const Parameters& parameters) {
    if (parameters == parameters_) {
        return;
    }
    Step step{"change of parameters", {}, {}, parameters_};
    set_default_parameters(parameters);
    add_step(std::move(step));
}

ProcessResult Document::process(std::size_t row, Kind kind) {
    return process(row, kind, trace_folder_);
}

std::size_t Document::process(const std::vector<std::size_t>& rows, Kind kind,
                              const std::function<bool(std::size_t row)>& wanted) {
    const bool frame_was_changed = set_.frame_changed;
    std::size_t done = 0;
    for (const std::size_t row : rows) {
        if (!wanted(row) || !process(row, kind, std::nullopt).processed) {
            break;
        }
        ++done;
    }
    if (done > 0) {
        write_traces(services().disk, set_, trace_folder_,
                     set_.frame_changed && !frame_was_changed);
    }
    return done;
}

ProcessResult Document::process(std::size_t row, Kind kind,
                                const std::optional<std::string>& traces) {
    ProcessResult result = process_material(services(), set_, row, kind, parameters_, traces);
    if (!result.change) {
        return result;
    }
    if (result.processed && unique_labels_) {
        number_repeated_label(set_, row);
    }
    if (result.processed) {
        for (Note note : parameter_notes(kind, parameters_)) {
            note.text = row_and_number(set_.translation(row)) + ": " + note.text;
            reporter_->note(note);
        }
    }
    Step step{process_name(set_.translation(row)), {}};
    step.unique_labels = unique_labels_;
    step.materials.push_back({row, kind, parameters_, result.processed, std::move(*result.change)});
    result.change.reset();
    listener_.changed(row);
    add_step(std::move(step));
    return result;
}

ApplyResult Document::apply(const Recipe& given, const RecipePlan& plan) {
    Recipe recipe = given;
    recipe.unique_labels = recipe.unique_labels || unique_labels_;
    ApplyResult result = apply_recipe(services(), set_, recipe, plan, trace_folder_);
    allow_too(recipe.allow);
    Step step{"recipe " + file_name_part(recipe.file), {}};
    step.macros = recipe.macros;
    step.unique_labels = recipe.unique_labels;
    for (ProcessedMaterial& material : result.processed) {
        step.materials.push_back(
            {material.row, material.kind, material.parameters, true, std::move(material.change)});
    }
    if (result.given_up) {
        const PlannedStep& planned = plan.steps.at(result.processed.size());
        const Assignment& assignment = recipe.assignments.at(planned.assignment);
        step.materials.push_back({planned.row, assignment.kind, assignment.parameters, false,
                                  std::move(*result.given_up)});
        result.given_up.reset();
    }
    step.frame = std::move(result.frame);
    result.frame.reset();
    if (step.materials.empty() && !step.frame) {
        return result;
    }
    for (const StepMaterial& material : step.materials) {
        listener_.changed(material.row);
    }
    add_step(std::move(step));
    return result;
}

void Document::set_allowed(std::vector<std::string> codes) {
    if (codes != allowed_) {
        allowed_ = std::move(codes);
        listener_.allowed_changed();
    }
}

void Document::allow_too(const std::vector<std::string>& codes) {
    std::vector<std::string> all = allowed_;
    for (const std::string& code : codes) {
        if (std::find(all.begin(), all.end(), code) == all.end()) {
            all.push_back(code);
        }
    }
    set_allowed(std::move(all));
}

SaveResult Document::save(const std::string& output, Boxes boxes) {
    SaveResult result;
    with_boxes(boxes, [&] { result = save_set(services(), set_, output); });
    if (result.saved) {
        listener_.saved();
        listener_.history_changed();
    }
    return result;
}

std::string Document::undo_refusal() const {
    return set_.saved ? "The set has been saved. Restore its backup and open it again to do it "
                        "differently."
                      : std::string();
}

void Document::undo() {
    if (!can_undo()) {
        return;
    }
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    exchange(undone_.back(), true);
}

void Document::redo() {
    if (!can_redo()) {
        return;
    }
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    exchange(done_.back(), false);
}

void Document::go_to(std::size_t steps) {
    while (done_.size() > steps && can_undo()) {
        undo();
    }
    while (done_.size() < steps && can_redo()) {
        redo();
    }
}

void Document::add_step(Step step) {
    done_.push_back(std::move(step));
    undone_.clear();
    listener_.history_changed();
}

void Document::exchange(Step& step, bool backwards) {
    std::vector<StepMaterial>& materials = step.materials;
    if (step.frame && backwards) {
        step.frame->exchange(set_);
    }
    for (std::size_t i = 0; i < materials.size(); ++i) {
        StepMaterial& material = materials[backwards ? materials.size() - 1 - i : i];
        material.change.exchange(set_);
        listener_.changed(material.row);
    }
    if (step.frame && !backwards) {
        step.frame->exchange(set_);
    }
    if (step.parameters) {
        std::swap(parameters_, *step.parameters);
        listener_.parameters_changed();
    }
    listener_.history_changed();
}

bool Document::has_unsaved_work() const {
    return set_.opened && !set_.saved && !set_.replacements.empty();
}

std::vector<const StepMaterial*> Document::processed_materials() const {
    std::vector<const StepMaterial*> materials;
    for (const Step& step : done_) {
        for (const StepMaterial& material : step.materials) {
            if (material.processed) {
                materials.push_back(&material);
            }
        }
    }
    return materials;
}

std::vector<MadeMaterial> Document::made_materials() const {
    std::vector<MadeMaterial> made;
    for (const StepMaterial* material : processed_materials()) {
        made.push_back({material->row, material->kind, material->parameters});
    }
    return made;
}

Recipe Document::recipe() const {
    Recipe recipe = record_recipe(set_, made_materials());
    recipe.allow = allowed_;
    recipe.unique_labels = unique_labels_;
    for (const Step& step : done_) {
        recipe.macros = step.macros.empty() ? recipe.macros : step.macros;
        recipe.unique_labels = recipe.unique_labels || step.unique_labels;
    }
    return recipe;
}

const StepMaterial* Document::made(std::size_t row) const {
    const std::vector<const StepMaterial*> materials = processed_materials();
    const auto found = std::find_if(materials.begin(), materials.end(),
                                    [row](const auto* material) { return material->row == row; });
    return found == materials.end() ? nullptr : *found;
}

const Replacement* Document::replacement_of(std::size_t row) const {
    const std::vector<const StepMaterial*> materials = processed_materials();
    const auto found = std::find_if(materials.begin(), materials.end(),
                                    [row](const auto* material) { return material->row == row; });
    if (found == materials.end()) {
        return nullptr;
    }
    // The set has a replacement for each processed material, in the same order.
    return &set_.replacements.at(static_cast<std::size_t>(found - materials.begin()));
}

const std::vector<std::string>* Document::code_of(std::size_t row) const {
    const Replacement* replacement = replacement_of(row);
    return replacement == nullptr ? nullptr : &replacement->code;
}

} // namespace morvane
