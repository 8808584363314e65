// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/inspector.h"

#include "base/encodings.h"
#include "base/errors.h"
#include "base/reporter.h"
#include "bgl/report.h"
#include "system/disk.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

void report_objects(OutputBox& box, const std::vector<LibraryObject>& objects) {
    box.out_line("Library Objects : " + std::to_string(objects.size()));
    for (const LibraryObject& object : objects) {
        box.out_line(analysis_line(object));
    }
    box.out_line("=============================================");
}

// A file that is missing or misnamed ends the command quietly but for a hint.
void note_nothing_to_analyse(const Services& services, const std::string& path) {
    const bool there = services.disk.is_file(path);
    services.reporter.note({path + (there ? " is no BGL file: its name does not end in \".bgl\"."
                                          : " does not exist.")});
}

void report_file(Inspector& inspector, const std::string& path, bool show_raw, Analysis& analysis) {
    InvalidFileList invalid_files(inspector.services.disk, inspector.program_folder);
    OpenedBgl bgl = open_bgl(inspector.services.disk, path, invalid_files);
    analysis.state = bgl.state;
    analysis.header = bgl.header;
    analysis.extension = bgl.extension;
    if (bgl.state == BglState::NotABgl) {
        note_nothing_to_analyse(inspector.services, path);
        return;
    }
    if (bgl.state == BglState::Invalid) {
        inspector.box.out_line("This file has not a valid BGL format");
        dump_raw_header(inspector.box, bgl.header, bgl.extension);
        return;
    }
    report_header(inspector.box, bgl.header, bgl.extension, show_raw);
    if (bgl.header.FL_library_ptr != 0) {
        analysis.objects = list_any_objects(inspector, path, bgl, invalid_files).objects;
        report_objects(inspector.box, analysis.objects);
    }
    inspector.box.write_results();
    analysis.done = true;
}

// The unpacked file cannot make the compressed one invalid: that only its own header can.
Listing list_unpacked(Inspector& inspector, const std::string& path, const std::string& unpacked,
                      InvalidFileList& invalid_files) {
    try {
        return list_library(inspector.services.disk, unpacked, invalid_files);
    } catch (const RuntimeError& error) {
        if (error.code() == ErrorNumber::SubscriptOutOfRange) {
            throw;
        }
        inspector.services.reporter.note({path + " was unpacked, but " + unpacked +
                                          " cannot be read (" + error.description() + ")."});
        return {Listing::State::Compressed};
    }
}

} // namespace

Inspector::Inspector(Services the_services, std::string the_program_folder, Programs& programs,
                     std::vector<std::string> helper_folders)
    : services(the_services), program_folder(std::move(the_program_folder)),
      box(services, program_folder), unpacking{programs, std::move(helper_folders)} {}

Analysis analyse_file(Inspector& inspector, const std::string& path, bool show_raw,
                      bool auto_clear) {
    begin_command(inspector.unpacking);
    inspector.unpacking.keep_going = [&reporter = inspector.services.reporter,
                                      begun = std::chrono::steady_clock::now()] {
        const auto passed = std::chrono::steady_clock::now() - begun;
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(passed).count();
        return reporter.progress("Unpacking, seconds", static_cast<std::size_t>(seconds), 0);
    };
    inspector.box.begin_command(auto_clear);
    Analysis analysis;
    try {
        inspector.box.out_line(source_text(path).value_or(path)); // as names of objects are
        report_file(inspector, path, show_raw, analysis);
    } catch (const RuntimeError& error) {
        report_error(inspector.services.reporter, error, "Error while analysing: ", " : ");
    }
    inspector.unpacking.keep_going = {};
    return analysis;
}

Listing list_any_objects(Inspector& inspector, const std::string& path, OpenedBgl& bgl,
                         InvalidFileList& invalid_files) {
    Listing listing = list_objects(path, bgl);
    if (listing.state != Listing::State::Compressed) {
        return listing;
    }
    bgl.file.reset();
    const auto unpacked =
        decompress_bgl(inspector.services, inspector.program_folder, inspector.unpacking, path);
    return unpacked ? list_unpacked(inspector, path, *unpacked, invalid_files) : listing;
}

} // namespace morvane
