// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace morvane {

/// Learns what happens to a document. Called after the document has changed; none of the calls may
/// change it in turn.
class DocumentListener {
  public:
    DocumentListener() = default;
    DocumentListener(const DocumentListener&) = delete;
    DocumentListener& operator=(const DocumentListener&) = delete;
    virtual ~DocumentListener() = default;

    /// Another set is open, or none is any more because the files could not be used.
    virtual void opened() {}
    /// The files of the set that is open were read again: nothing is processed, as after `opened`,
    /// but it is the same set, and views keep their places.
    virtual void reloaded() { opened(); }
    /// A row of the material list (from 1) was processed, given up, undone or redone.
    virtual void changed(std::size_t /*row*/) {}
    /// The parameters in force are others, by set_parameters, undo or redo.
    virtual void parameters_changed() {}
    /// The lists of what can be undone and redone are others.
    virtual void history_changed() {}
    /// The document's notes are others.
    virtual void notes_changed() {}
    /// Other codes of problems are switched off.
    virtual void allowed_changed() {}
    /// The set was saved.
    virtual void saved() {}
};

} // namespace morvane
