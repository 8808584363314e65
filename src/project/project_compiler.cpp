// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/project_compiler.h"

#include "base/errors.h"
#include "base/paths.h"
#include "system/programs.h"

#include <utility>

namespace morvane {

namespace {

bool is_path(const std::string& program) {
    return file_name_part(program) != program;
}

std::string find_compiler(Programs& programs, const std::string& program,
                          const std::string& project_file) {
    return is_path(program) ? absolute_path(path_beside(project_file, program))
                            : programs.find_on_path(program);
}

CompilerEnd run_compiler(Programs& programs, const std::string& project_file,
                         const std::function<bool()>& keep_going, std::vector<std::string> words,
                         const std::string& folder) {
    CompilerEnd end;
    const std::string program = find_compiler(programs, words.front(), project_file);
    if (program.empty()) {
        end.problem = "the compiler " + words.front() + " was not found";
        return end;
    }
    words.front() = program;
    RunOptions options;
    options.output = [&](std::string_view text) { end.output += text; };
    options.keep_going = keep_going;
    try {
        const ProgramEnd ended = programs.run({std::move(words), folder}, options);
        end.ok = ended.how == ProgramEnd::How::Exited && ended.status == 0;
        end.problem = ended.how == ProgramEnd::How::Exited
                          ? "the compiler ended with status " + std::to_string(ended.status)
                          : "the compiler was ended";
    } catch (const RuntimeError& error) {
        end.problem = "the compiler cannot be started: " + std::string(error.what());
    }
    return end;
}

} // namespace

CompilerRunner project_compiler(Programs& programs, const std::string& project_file,
                                std::function<bool()> keep_going) {
    return [&programs, project_file, keep_going = std::move(keep_going)](
               const std::vector<std::string>& words, const std::string& folder) {
        return run_compiler(programs, project_file, keep_going, words, folder);
    };
}

} // namespace morvane
