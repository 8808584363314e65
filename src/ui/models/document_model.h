// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/document.h"

#include <QObject>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace morvane {

/// The open document for the window: what happens to it as signals.
class DocumentModel : public QObject {
    Q_OBJECT

  public:
    DocumentModel(const Services& services, std::optional<std::string> trace_folder);
    ~DocumentModel() override;

    Document& document() { return *document_; }
    const Document& document() const { return *document_; }
    const OpenSet& set() const { return document_->set(); }

    /// The material as the last step left it; null for a row that is not processed.
    const StepMaterial* made(std::size_t row) const { return document_->made(row); }
    /// Whether materials were processed that are in no file: also those processed after Save, which
    /// cannot be saved any more.
    bool has_unsaved_work() const;
    /// Whether the set was saved, so that work done since cannot be.
    bool was_saved() const { return set().saved; }

    /// Whether `opened` is about the files of the same set, which were read again: views keep their
    /// places then.
    bool is_reloading() const { return reloading_; }

  Q_SIGNALS:
    void opened();
    void row_changed(std::size_t row);
    void parameters_changed();
    void history_changed();
    void notes_changed();
    void allowed_changed();
    void saved();

  private:
    class Listener;

    std::size_t processed_rows() const;

    std::unique_ptr<Listener> listener_;
    std::unique_ptr<Document> document_;
    bool reloading_ = false;
    std::size_t rows_in_files_ = 0; // processed when the set was opened or saved
};

} // namespace morvane
