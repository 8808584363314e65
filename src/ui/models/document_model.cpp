// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/document_model.h"

#include <utility>

namespace morvane {

class DocumentModel::Listener final : public DocumentListener {
  public:
    explicit Listener(DocumentModel& model) : model_(model) {}

    void opened() override {
        model_.rows_in_files_ = 0;
        Q_EMIT model_.opened();
    }
    void reloaded() override {
        model_.reloading_ = true;
        opened();
        model_.reloading_ = false;
    }
    void changed(std::size_t row) override { Q_EMIT model_.row_changed(row); }
    void parameters_changed() override { Q_EMIT model_.parameters_changed(); }
    void history_changed() override { Q_EMIT model_.history_changed(); }
    void notes_changed() override { Q_EMIT model_.notes_changed(); }
    void allowed_changed() override { Q_EMIT model_.allowed_changed(); }
    void saved() override {
        model_.rows_in_files_ = model_.processed_rows();
        Q_EMIT model_.saved();
    }

  private:
    DocumentModel& model_;
};

DocumentModel::DocumentModel(const Services& services, std::optional<std::string> trace_folder)
    : listener_(std::make_unique<Listener>(*this)),
      document_(std::make_unique<Document>(services, *listener_, std::move(trace_folder))) {}

DocumentModel::~DocumentModel() = default;

std::size_t DocumentModel::processed_rows() const {
    return set().opened ? set().translations.size() - set().unprocessed() : 0;
}

bool DocumentModel::has_unsaved_work() const {
    return processed_rows() > rows_in_files_;
}

} // namespace morvane
