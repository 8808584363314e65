// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/program_run.h"

#include "support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>

namespace morvane::test {

namespace fs = std::filesystem;

namespace {

std::string quoted(const std::string& path) {
    return "'" + path + "'"; // no path of a test holds a quote
}

} // namespace

ProgramRun run_commands(const std::string& folder, const std::string& commands) {
    const TempFolder own;
    const std::string script = own.write("commands", commands);
    const std::string programs = fs::path(MORVANE_CLI).parent_path().string();
    fs::create_directory(own.file("settings"));
    for (const std::string& path : {own.path(), own.file("settings")}) {
        fs::permissions(path, fs::perms(0777)); // a test may run the program as another user
    }
    const std::string line = "cd " + quoted(folder) + " && PATH=" + quoted(programs) +
                             ":\"$PATH\" MORVANE_HOME=" + quoted(own.file("settings")) + " sh " +
                             quoted(script) + " </dev/null >" + quoted(own.file("output")) + " 2>" +
                             quoted(own.file("errors"));
    const int result = std::system(line.c_str());
    return {WIFEXITED(result) ? WEXITSTATUS(result) : -1, own.read("output"), own.read("errors")};
}

std::map<std::string, std::string> files_below(const std::string& folder) {
    std::map<std::string, std::string> files;
    if (!fs::is_directory(folder)) {
        return files;
    }
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            const std::string name = fs::relative(entry.path(), folder).generic_string();
            files[name] = read_file(entry.path().string());
        }
    }
    return files;
}

void copy_into(const std::string& from, const std::string& to) {
    if (fs::exists(from)) {
        fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    }
}

} // namespace morvane::test
