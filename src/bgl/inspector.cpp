#include "bgl/inspector.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "bgl/header_report.h"
#include "bgl/object_lines.h"
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
    analysis.handle = bgl.handle;
    analysis.header = bgl.header;
    analysis.extension = bgl.extension;
    if (bgl.handle == not_a_bgl_name) {
        note_nothing_to_analyse(inspector.services, path);
        return;
    }
    if (bgl.handle == invalid_bgl) {
        inspector.box.out_line("This file has not a valid BGL format");
        dump_raw_header(inspector.box, bgl.header, bgl.extension);
        return;
    }
    report_header(inspector.box, bgl.header, bgl.extension, show_raw);
    if (bgl.header.FL_library_ptr != 0) {
        list_any_objects(inspector, path, bgl, invalid_files, analysis.objects);
        report_objects(inspector.box, analysis.objects);
    }
    inspector.box.write_results();
    analysis.done = true;
}

} // namespace

Inspector::Inspector(Services the_services, std::string the_program_folder,
                     std::vector<std::string> unpack_folders)
    : services(the_services), program_folder(std::move(the_program_folder)),
      box(services, program_folder), unpacking(system_unpacking(std::move(unpack_folders))) {}

Analysis analyse_file(Inspector& inspector, const std::string& path, bool show_raw,
                      bool auto_clear) {
    inspector.unpacking.hints_given.clear();
    inspector.box.begin_command(auto_clear);
    Analysis analysis;
    try {
        inspector.box.out_line(path);
        report_file(inspector, path, show_raw, analysis);
    } catch (const RuntimeError& error) {
        report_error(inspector.services.reporter, error, "Error while analysing: ", " : ");
    }
    return analysis;
}

int list_any_objects(Inspector& inspector, const std::string& path, OpenedBgl& bgl,
                     InvalidFileList& invalid_files, std::vector<LibraryObject>& entries) {
    const int count = list_objects(path, bgl, entries);
    if (count != compressed_library) {
        return count;
    }
    bgl.file.reset();
    if (!decompress_bgl(inspector.services, inspector.program_folder, inspector.unpacking, path)) {
        return compressed_library;
    }
    return list_library(inspector.services.disk, unpacked_path(inspector.program_folder),
                        invalid_files, entries);
}

} // namespace morvane
