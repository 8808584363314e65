// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/encodings.h"
#include "base/paths.h"
#include "system/results_viewer.h"

#include <algorithm>
#include <windows.h>

namespace morvane {

namespace {

// Not the first one on the PATH: the current folder comes before that.
std::string notepad_program() {
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetSystemDirectoryW(folder.data(), MAX_PATH));
    return join_path(narrow_text(folder), "notepad.exe");
}

// Notepad takes what begins with "/" for an option.
std::string with_backslashes(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

void activate(HWND window) {
    if (IsIconic(window) != 0) {
        ShowWindow(window, SW_RESTORE);
    }
    SetForegroundWindow(window);
}

class Notepad final : public ResultsViewer {
  public:
    explicit Notepad(Programs& programs) : programs_(programs) {}

    // The title is all there is to know a window by: it names the file without its folder.
    void show_file(const std::string& path) override {
        const std::string title = file_name_part(path) + " - Notepad";
        if (HWND window = FindWindowExA(nullptr, nullptr, nullptr, title.c_str())) {
            activate(window);
        } else {
            open(path);
        }
    }

    // At once: what Notepad shows is what has been written by then.
    void follow(const std::string& path, std::unique_ptr<RunningProgram> /*program*/) override {
        open(path);
    }

  private:
    void open(const std::string& path) {
        programs_.start({{notepad_program(), with_backslashes(path)}}, {});
    }

    Programs& programs_;
};

} // namespace

std::unique_ptr<ResultsViewer> make_system_viewer(Programs& programs) {
    return std::make_unique<Notepad>(programs);
}

} // namespace morvane
