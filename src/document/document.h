// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "document/document_listener.h"
#include "document/reload.h"
#include "document/step.h"
#include "objects/save.h"
#include "recipe/recipe.h"
#include "source/open_set.h"
#include "system/services.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// Which message boxes of a command the user is to see; the others become lines of the log. A
/// question that nobody sees is answered with No.
enum class Boxes { All, NoSuccess, None };

/// The open source set with everything that belongs to it: the parameters in force, what was done
/// to it and can be undone, and the notes about it. What the user is told goes through the
/// services' reporter.
class Document {
  public:
    /// `trace_folder`: where Process writes its trace files; none when it is empty. The services
    /// and the listener must outlive the document.
    Document(const Services& services, DocumentListener& listener,
             std::optional<std::string> trace_folder = {});
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document();

    const OpenSet& set() const { return set_; }
    const Parameters& parameters() const { return parameters_; }
    /// What was reported since Open began, oldest first.
    const std::vector<Note>& notes() const { return notes_; }
    /// The steps that are in force, oldest first.
    const std::vector<Step>& done() const { return done_; }
    /// The steps that were undone; the last is the next to be redone.
    const std::vector<Step>& undone() const { return undone_; }

    /// The Open command for a base path. False, after a message box, when the set cannot be used;
    /// when its files are missing the set that was open stays. The history is empty afterwards.
    bool open(const std::string& base);

    /// Opens the open set's files again and applies `recipe` to the materials that are marked now,
    /// in one step; an assignment that matches none is omitted. No message box is shown. The
    /// parameters in force stay. `is_current` is asked once the files have been read: whether they
    /// are still those that were to be read.
    Reload reload(Recipe recipe, const std::function<bool()>& is_current);

    /// Whether labels are numbered that would occur twice, as a recipe's unique_labels does. Counts
    /// for what is processed from now on.
    void set_unique_labels(bool unique) { unique_labels_ = unique; }
    bool unique_labels() const { return unique_labels_; }

    /// Adds a note about the set.
    void note(const Note& note);

    /// Puts other parameters in force. A step, unless nothing changes.
    void set_parameters(const Parameters& parameters);
    /// Puts parameters in force without a step: defaults that are known only at the start.
    void set_default_parameters(const Parameters& parameters);

    /// The Process command for a row of the list (0: none is selected) with the parameters in
    /// force, which are checked and noted. A step when anything changed.
    ProcessResult process(std::size_t row, Kind kind);
    /// The same for several rows, a step each, up to the first that is refused. `wanted` is asked
    /// before each row; false ends the work. The trace files, of which every row's replace those of
    /// the one before, are written once. Returns how many rows were processed.
    std::size_t process(const std::vector<std::size_t>& rows, Kind kind,
                        const std::function<bool(std::size_t row)>& wanted);

    /// Carries out the plan of a recipe: one step, even when it stops at a material.
    ApplyResult apply(const Recipe& recipe, const RecipePlan& plan);

    /// The Save command. Afterwards the steps can be read, but not undone.
    SaveResult save(const std::string& output, Boxes boxes = Boxes::All);

    bool can_undo() const { return undo_refusal().empty() && !done_.empty(); }
    bool can_redo() const { return undo_refusal().empty() && !undone_.empty(); }
    /// Why nothing can be undone or redone although there are steps; empty when it can.
    std::string undo_refusal() const;
    /// Undo the last step, redo the one undone last. Nothing happens when it cannot be.
    void undo();
    void redo();
    /// Undoes or redoes until `steps` steps are in force.
    void go_to(std::size_t steps);

    /// Whether something was processed that is not saved.
    bool has_unsaved_work() const;
    /// The recipe that does again what was done: an assignment for each processed material, and the
    /// macros that recipes have included.
    Recipe recipe() const;
    /// The processed materials, in the order of Process.
    std::vector<const StepMaterial*> processed_materials() const;
    /// The step that processed a material; null for one that is not processed.
    const StepMaterial* made(std::size_t row) const;
    /// The code of a processed material and where it goes; null for one that is not.
    const Replacement* replacement_of(std::size_t row) const;
    /// What was made of which material, in its order.
    std::vector<MadeMaterial> made_materials() const;
    /// The code of a processed material; null for one that is not.
    const std::vector<std::string>* code_of(std::size_t row) const;

    /// The frame as it was opened.
    const LineStore& opened_frame() const { return opened_frame_; }

    /// Codes of problems that are switched off for the set, by its recipe or by hand. Open empties
    /// the list; `recipe` takes it over.
    const std::vector<std::string>& allowed() const { return allowed_; }
    void set_allowed(std::vector<std::string> codes);

  private:
    class NoteKeeper;

    ProcessResult process(std::size_t row, Kind kind, const std::optional<std::string>& traces);
    void add_step(Step step);
    void allow_too(const std::vector<std::string>& codes);
    void replace_set(OpenSet set);
    std::vector<Assignment> apply_again(Recipe recipe);
    void with_boxes(Boxes boxes, const std::function<void()>& command);
    void exchange(Step& step, bool backwards);
    Services services();

    Services services_;
    DocumentListener& listener_;
    std::optional<std::string> trace_folder_;
    std::unique_ptr<NoteKeeper> reporter_;
    OpenSet set_;
    Parameters parameters_;
    std::vector<Step> done_;
    std::vector<Step> undone_;
    std::vector<Note> notes_;
    std::vector<std::string> allowed_;
    LineStore opened_frame_;
    bool unique_labels_ = false;
};

} // namespace morvane
