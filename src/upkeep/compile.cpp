#include "upkeep/compile.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/replace_files.h"
#include "system/text_writer.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace morvane {

namespace {

// The folders that count as the set's own. A base without a folder means the root, as the
// compiler's command line has always been built; the current folder is where it really lies.
std::vector<std::string> compiler_folders(const std::string& base) {
    const std::string folder = folder_part(base);
    if (folder.empty() && base.find_first_of("/\\") == std::string::npos) {
        return {"", "."};
    }
    return {folder};
}

// There "bglc" names the program with whatever ending it has, and none runs through wine.
#ifdef _WIN32
constexpr bool on_windows = true;
constexpr char separator = '\\';
#else
constexpr bool on_windows = false;
constexpr char separator = '/';
#endif

// A program that Windows runs would take a path that begins with "/" for one of its switches.
std::string windows_path(std::string path) {
    if (path.starts_with('/')) {
        std::replace(path.begin(), path.end(), '/', '\\');
        path.insert(0, "Z:");
    }
    return path;
}

/// Looks for the compiler and collects what to tell when there is none.
class CompilerSearch {
  public:
    CompilerSearch(const Services& services, Programs& programs, const std::string& base)
        : services_(services), programs_(programs), source_(frame_file_name(base)) {}

    std::optional<ProgramCall> in_folder(const std::string& folder) {
        const std::string native = folder + separator + "bglc";
        if (programs_.can_execute(native)) {
            return ProgramCall{{native, "/bgl", source_}};
        }
        looked_for(native, "is there, but cannot be executed");
        const std::string windows = native + ".exe";
        const std::string wine = !on_windows && services_.disk.is_file(windows)
                                     ? programs_.find_on_path("wine")
                                     : std::string();
        if (!wine.empty()) {
            return ProgramCall{{wine, windows, "/bgl", windows_path(source_)}};
        }
        looked_for(windows, on_windows
                                ? "is there, but cannot be executed"
                                : "is there, but \"wine\" to run it was not found on the PATH");
        return std::nullopt;
    }
    const std::string& told() const { return told_; }

  private:
    void looked_for(const std::string& path, std::string_view why_not) {
        told_ += "\n" + path + " ";
        told_ += services_.disk.is_file(path) ? why_not : "is not there";
    }

    const Services& services_;
    Programs& programs_;
    std::string source_;
    std::string told_;
};

std::optional<ProgramCall> find_compiler(const Services& services, Programs& programs,
                                         const std::string& base) {
    CompilerSearch search(services, programs, base);
    for (const std::string& folder : compiler_folders(base)) {
        if (auto call = search.in_folder(folder)) {
            if (!services.disk.is_file(frame_file_name(base))) {
                services.reporter.note({"there is no file " + frame_file_name(base) + "."});
            }
            return call;
        }
    }
    services.reporter.message_box("Error ! The compiler bglc was not found:" + search.told(),
                                  Icon::Critical);
    return std::nullopt;
}

void report_launch_error(Reporter& reporter, const RuntimeError& error) {
    report_error(reporter, error, "Run-time error '", "': ");
}

void keep_output(const Services& services, const std::string& path, const std::string& text) {
    try {
        replace_file(services.disk, path, [&](TextWriter& out) { out.write(text); });
    } catch (const RuntimeError& error) {
        services.reporter.note({path + " could not be written (" + error.description() + ")."});
    }
}

} // namespace

std::string compile_output_file(const CompileJob& job) {
    return join_path(job.program_folder, "comp.txt");
}

std::unique_ptr<RunningProgram> start_compile(const Services& services, Programs& programs,
                                              const CompileJob& job) {
    try {
        const auto call = find_compiler(services, programs, job.base);
        return call ? programs.start(*call, compile_output_file(job)) : nullptr;
    } catch (const RuntimeError& error) {
        report_launch_error(services.reporter, error);
        return nullptr;
    }
}

Outcome run_compile(const Services& services, Programs& programs, const CompileJob& job,
                    const std::function<void(std::string_view)>& output) {
    const auto call = find_compiler(services, programs, job.base);
    if (!call) {
        return Outcome::Failed;
    }
    try {
        std::string kept;
        const int status = programs
                               .run(*call, {[&](std::string_view text) {
                                   kept += text;
                                   output(text);
                               }})
                               .status;
        keep_output(services, compile_output_file(job), kept);
        if (status == 0) {
            return Outcome::Done;
        }
        services.reporter.message_box("The compiler reported a failure (exit status " +
                                          std::to_string(status) + ").",
                                      Icon::Critical);
    } catch (const RuntimeError& error) {
        report_launch_error(services.reporter, error);
    }
    return Outcome::Failed;
}

} // namespace morvane
