// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/document.h"
#include "project/export_watch.h"
#include "system/services.h"

#include <cstddef>
#include <string>
#include <vector>

namespace morvane {

/// What the user wants of new exports of the set that is open.
struct LiveOptions {
    bool watch = false;          // read them by themselves
    bool apply_and_save = false; // and save what comes of it, after a backup
};

/// What a look at the files has come to.
enum class LiveNews {
    Nothing,
    Reloaded, // the document holds the new export, with what was done applied to it again
    Asks,     // a new export is there, and so is work that is not saved: `apply` or `keep`
    Stale,    // a new export is there that cannot be read: see stale_reason
    Same,     // the files are again as the document knows them
};

/// Follows the files of the set that a document holds while another program writes them. What the
/// program writes itself is no export: the owner reports it by `follow`.
class LiveSet {
  public:
    using Clock = ExportWatch::Clock;

    /// The document and the services must outlive this.
    LiveSet(Document& document, const Services& services)
        : document_(document), services_(services) {}

    LiveOptions options;

    /// Takes the files as they are now for those that the document was read from, or was saved to:
    /// to be called after Open, Save and Restore.
    void follow(Clock::time_point now);

    /// Looks at the files; to be called several times a second. An export is reported once, as soon
    /// as both of its files have been unchanged for a second. `output` is where Save would write.
    LiveNews look(Clock::time_point now, const std::string& output);

    /// Reads the export that is waiting and applies what was done; Nothing when it has changed in
    /// the meantime, and look will report it again.
    LiveNews apply(const std::string& output);
    /// Leaves the document as it is until the next export.
    void keep() { asks_ = false; }

    /// Whether an export waits for `apply` or `keep`.
    bool asks() const { return asks_; }
    /// Why the document is not what the files hold; empty when nothing is known against it.
    const std::string& stale_reason() const { return stale_; }
    /// Rows of the list before the last reload, see same_rows.
    const std::vector<std::size_t>& rows() const { return rows_; }
    /// Whether the last reload was saved.
    bool was_saved() const { return was_saved_; }

  private:
    bool has_work_of_the_user() const;
    std::string content() const;
    void save(const std::string& output);
    void settle();

    Document& document_;
    Services services_;
    ExportWatch watch_{};
    std::string content_;           // of the files that the document was read from
    std::string waiting_;           // content of the export that was found last
    std::size_t settled_steps_ = 0; // that were applied by a reload, or are in the files
    std::vector<Assignment> idle_;  // no material fell to them, but one may in the next export
    std::vector<std::size_t> rows_;
    std::string stale_;
    bool asks_ = false;
    bool was_saved_ = false;
};

/// Where rows of the list are after a reload, given the rows of all materials (see same_rows);
/// those that are gone are left out.
std::vector<std::size_t> rows_after_reload(const std::vector<std::size_t>& all,
                                           const std::vector<std::size_t>& rows);

/// Whether Save under that base path would replace files that are not those of the open set.
bool replaces_other_files(Disk& disk, const OpenSet& set, const std::string& output);

/// Copies a set's files to their backups, without a question and a message box. Whatever is wrong
/// is noted. An export's backup is not replaced by a rewritten set: it stays, and that is right so.
/// False when there is no backup afterwards.
bool back_up_before_saving(const Services& services, const std::string& base);

} // namespace morvane
