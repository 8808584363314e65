#include "upkeep/rename_labels.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "source/text_files.h"
#include "upkeep/label_suffix.h"

namespace morvane {

namespace {

Outcome rename_and_save(const Services& services, const std::string& path,
                        std::string_view suffix) {
    Reporter& reporter = services.reporter;
    LineStore store;
    if (load_file2array(services, path, store) == 0 || store.count() == 0) {
        reporter.message_box("File returns no lines.", Icon::Critical);
        return Outcome::Failed;
    }
    reporter.add_message("Open file returned " + store.element0() + " lines of code");
    const std::size_t labels = append_label_suffix(store, suffix);
    reporter.add_message("Labels mofilied : " + to_text(labels));
    if (!reporter.ask("Do you want to save the changes ? ", Icon::None, "File replace")) {
        return Outcome::Declined;
    }
    save_array2file(services.disk, path, store);
    reporter.add_message("File saved");
    return Outcome::Done;
}

} // namespace

Outcome rename_labels(const Services& services, const std::string& path, std::string_view suffix) {
    try {
        return rename_and_save(services, path, suffix);
    } catch (const RuntimeError& error) {
        // The odd blank before the second colon is part of the text.
        report_error(services.reporter, error, "Error : ", " :");
        return Outcome::Failed;
    }
}

} // namespace morvane
