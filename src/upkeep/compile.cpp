// SPDX-License-Identifier: GPL-3.0-or-later
#include "upkeep/compile.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "system/program_places.h"
#include "system/replace_files.h"

#include <algorithm>

namespace morvane {

namespace {

using Words = std::vector<std::string>;

// There "bglc" names the program with whatever ending it has, and none runs through wine.
#ifdef _WIN32
constexpr bool on_windows = true;
constexpr char separator = '\\';
#else
constexpr bool on_windows = false;
constexpr char separator = '/';
#endif

bool has_folder(std::string_view path) {
    return path.find_first_of("/\\") != std::string_view::npos;
}

bool is_full_path(std::string_view path) {
    return !path.empty() &&
           (path[0] == '/' || path[0] == '\\' || (path.size() > 1 && path[1] == ':'));
}

// The folders that count as the set's own. A base without a folder means the root, as the
// compiler's command line has always been built; the current folder is where it really is.
Words set_folders(const std::string& base) {
    const std::string folder = folder_part(base);
    return folder.empty() && !has_folder(base) ? Words{"", "."} : Words{folder};
}

// A program that Windows runs would take a path that begins with "/" for one of its switches.
std::string windows_path(std::string path) {
    if (path.starts_with('/')) {
        std::replace(path.begin(), path.end(), '/', '\\');
        path.insert(0, "Z:");
    }
    return path;
}

bool runs_through_wine(const Words& command) {
    return !on_windows && (file_name_part(command[0]).starts_with("wine") ||
                           std::any_of(command.begin(), command.end(),
                                       [](const auto& word) { return has_ending(word, ".EXE"); }));
}

/// Looks for the compiler and collects what to report when there is none.
class CompilerSearch {
  public:
    CompilerSearch(const Services& services, Programs& programs)
        : services_(services), programs_(programs) {}

    /// The words that run the program at a path, with or without its ending; none when it is not
    /// there.
    Words at_path(const std::string& path) {
        const bool windows_program = !on_windows && has_ending(path, ".EXE");
        if (!windows_program) {
            if (programs_.can_execute(path)) {
                return {path};
            }
            looked_for(path, "is there, but cannot be executed");
        }
        return on_windows ? Words{} : through_wine(windows_program ? path : path + ".exe");
    }

    Words on_path(const std::string& name) {
        if (std::string native = programs_.find_on_path(name); !native.empty()) {
            return !on_windows && has_ending(native, ".EXE") ? through_wine(native)
                                                             : Words{std::move(native)};
        }
        const std::string windows = on_windows ? "" : programs_.find_on_path(name + ".exe");
        return windows.empty() ? Words{} : through_wine(windows);
    }

    Words given(Words words) {
        const bool by_name = !has_folder(words[0]);
        Words command = by_name ? on_path(words[0]) : at_path(words[0]);
        if (command.empty()) {
            told_ += by_name ? "\n" + words[0] + " is not on the PATH" : "";
            return {};
        }
        command.insert(command.end(), words.begin() + 1, words.end());
        return command;
    }

    Words of_set(const std::string& base) {
        for (const std::string& folder : set_folders(base)) {
            if (Words command = at_path(folder + separator + "bglc"); !command.empty()) {
                return command;
            }
        }
        return on_path("bglc");
    }

    const std::string& told() const { return told_; }

  private:
    Words through_wine(const std::string& program) {
        const std::string wine =
            services_.disk.is_file(program) ? programs_.find_on_path("wine") : std::string();
        if (wine.empty()) {
            looked_for(program, "is there, but \"wine\" to run it was not found on the PATH");
            return {};
        }
        return {wine, program};
    }

    void looked_for(const std::string& path, std::string_view why_not) {
        told_ += "\n" + path + " ";
        told_ += services_.disk.is_file(path) ? why_not : "is not there";
    }

    const Services& services_;
    Programs& programs_;
    std::string told_;
};

void report_missing(Reporter& reporter, const std::string& name, const std::string& told) {
    reporter.message_box("Error ! The compiler " + name + " was not found:" + told, Icon::Critical);
}

// The compiler that was asked for; no words when it is to be looked for. Nothing, after a message,
// when what was asked for is not a command.
std::optional<Words> wanted_compiler(Reporter& reporter, const CompileJob& job) {
    const std::string variable = environment_variable("MORVANE_COMPILER");
    if (!job.compiler.empty() || variable.empty()) {
        return job.compiler;
    }
    std::optional<Words> words = command_words(variable);
    if (!words) {
        reporter.message_box("Error ! MORVANE_COMPILER is not a command: " + variable,
                             Icon::Critical);
    }
    return words;
}

Words find_compiler(const Services& services, Programs& programs, const CompileJob& job) {
    const auto wanted = wanted_compiler(services.reporter, job);
    if (!wanted) {
        return {};
    }
    CompilerSearch search(services, programs);
    Words command = wanted->empty() ? search.of_set(job.base) : search.given(*wanted);
    if (command.empty()) {
        report_missing(services.reporter, wanted->empty() ? "bglc" : wanted->front(),
                       search.told());
    }
    return command;
}

// Where the compiler runs, and the frame file's name as seen from there: as typed where that still
// leads to it.
struct SourcePlace {
    std::string folder; // empty: the current one
    std::string frame;
};

SourcePlace source_place(Disk& disk, const std::string& base) {
    const std::string frame = frame_file_name(base);
    const std::string folder = folder_part(base);
    if (folder.empty() || folder == "." || !disk.is_folder(folder)) {
        return {"", frame};
    }
    return {folder, is_full_path(frame) ? frame : file_name_part(frame)};
}

// The line that only the frame of an aircraft has, from 1; 0 when there is none.
std::size_t aircraft_line(std::string_view text) {
    std::size_t number = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = trim(text.substr(0, end));
        ++number;
        if (line.starts_with("visual_model_header") || line.starts_with("db  'M','D','L'")) {
            return number;
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return 0;
}

// What will hardly work; a frame file that cannot be read is the compiler's to report.
void note_frame(const Services& services, const CompileJob& job) {
    const std::string frame = frame_file_name(job.base);
    if (!services.disk.is_file(frame)) {
        services.reporter.note({"there is no file " + frame + "."});
        return;
    }
    try {
        const std::size_t line =
            job.mdl ? 0 : aircraft_line(read_bytes(services.disk, frame).view());
        if (line > 0) {
            services.reporter.note(
                {"this is the frame of an aircraft, which compiles with /mdl (compile --mdl)",
                 frame, line});
        }
    } catch (const RuntimeError&) {
        return;
    }
}

std::optional<ProgramCall> compiler_call(const Services& services, Programs& programs,
                                         const CompileJob& job) {
    ProgramCall call{find_compiler(services, programs, job)};
    if (call.arguments.empty()) {
        return std::nullopt;
    }
    note_frame(services, job);
    const SourcePlace place = source_place(services.disk, job.base);
    const bool wine = runs_through_wine(call.arguments);
    call.arguments.emplace_back(job.mdl ? "/mdl" : "/bgl");
    call.arguments.push_back(wine ? windows_path(place.frame) : place.frame);
    call.folder = place.folder;
    return call;
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

std::optional<Words> command_words(std::string_view text) {
    Words words;
    char quote = '\0'; // that is open
    bool in_word = false;
    for (const char c : text) {
        if (quote == '\0' && (c == ' ' || c == '\t')) {
            in_word = false;
            continue;
        }
        if (!in_word) {
            words.emplace_back();
            in_word = true;
        }
        if (c == quote) {
            quote = '\0';
        } else if (quote == '\0' && (c == '"' || c == '\'')) {
            quote = c;
        } else {
            words.back() += c;
        }
    }
    const bool usable = quote == '\0' && !words.empty() && !words[0].empty();
    return usable ? std::optional(words) : std::nullopt;
}

std::string compile_output_file(const CompileJob& job) {
    return join_path(job.program_folder, "comp.txt");
}

std::unique_ptr<RunningProgram> start_compile(const Services& services, Programs& programs,
                                              const CompileJob& job) {
    try {
        const auto call = compiler_call(services, programs, job);
        return call ? programs.start(*call, compile_output_file(job)) : nullptr;
    } catch (const RuntimeError& error) {
        report_launch_error(services.reporter, error);
        return nullptr;
    }
}

Outcome run_compile(const Services& services, Programs& programs, const CompileJob& job,
                    const std::function<void(std::string_view)>& output) {
    const auto call = compiler_call(services, programs, job);
    if (!call) {
        return Outcome::Failed;
    }
    try {
        std::string kept;
        const auto keep = [&](std::string_view text) {
            kept += text;
            output(text);
        };
        const int status = programs.run(*call, {keep}).status;
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
