// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/temp_folder.h"
#include "system/results_viewer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <windows.h>

namespace morvane::test {
namespace {

void pump_messages() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

/// A top-level window that is seen by its title alone.
class Window {
  public:
    explicit Window(const std::string& title)
        : handle_(CreateWindowExA(0, "STATIC", title.c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                  0, 200, 100, nullptr, nullptr, nullptr, nullptr)) {
        pump_messages();
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() { DestroyWindow(handle_); }
    HWND handle() const { return handle_; }

  private:
    HWND handle_;
};

int count_windows(const std::string& title) {
    int count = 0;
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, nullptr, title.c_str())) != nullptr) {
        ++count;
    }
    return count;
}

class NotepadOnWindows : public testing::Test {
  protected:
    NotepadOnWindows() {
        const std::string random = folder.path().substr(folder.path().size() - 6);
        name = "out" + random + ".txt"; // no other test's window
        path = folder.write("two blanks/" + name, "found it\r\n");
        title = name + " - Notepad";
    }

    void SetUp() override {
        if (!IsWindow(Window("a window").handle())) {
            GTEST_SKIP() << "there is no screen";
        }
    }

    ~NotepadOnWindows() override {
        HWND window = nullptr;
        while ((window = FindWindowExA(nullptr, window, "Notepad", title.c_str())) != nullptr) {
            PostMessageA(window, WM_CLOSE, 0, 0);
        }
        wait_for_windows(0);
    }

    bool wait_for_windows(int count, int tries = 1000) const {
        for (int i = 0; i < tries && count_windows(title) != count; ++i) {
            pump_messages();
        }
        return count_windows(title) == count;
    }
    // A window of another program, which has to answer first.
    static bool comes_to_front(HWND window) {
        for (int i = 0; i < 1000 && GetForegroundWindow() != window; ++i) {
            pump_messages();
        }
        return GetForegroundWindow() == window;
    }
    bool another_opens() const { return wait_for_windows(2, 100); }

    TempFolder folder;
    std::string name;
    std::string path;
    std::string title;
    std::unique_ptr<Programs> programs = make_system_programs();
    std::unique_ptr<ResultsViewer> viewer = make_system_viewer(*programs);
};

TEST_F(NotepadOnWindows, AWindowOfThatTitleIsActivatedAndNoneStarted) {
    const Window wanted(title);
    const Window other("something else");
    SetForegroundWindow(other.handle());
    ASSERT_EQ(GetForegroundWindow(), other.handle());
    viewer->show_file(path);
    EXPECT_EQ(GetForegroundWindow(), wanted.handle());
    EXPECT_FALSE(another_opens());
}

TEST_F(NotepadOnWindows, AMinimizedWindowIsRestored) {
    const Window wanted(title);
    ShowWindow(wanted.handle(), SW_MINIMIZE);
    ASSERT_NE(IsIconic(wanted.handle()), 0);
    viewer->show_file(path);
    EXPECT_EQ(IsIconic(wanted.handle()), 0);
}

TEST_F(NotepadOnWindows, ATitleThatIsNotExactlyThatIsNotTaken) {
    const Window longer("*" + title);
    SetForegroundWindow(longer.handle());
    viewer->show_file(path);
    EXPECT_TRUE(wait_for_windows(1));
}

TEST_F(NotepadOnWindows, TheSecondTimeTheFirstNotepadIsActivated) {
    viewer->show_file(path);
    ASSERT_TRUE(wait_for_windows(1));
    const Window other("something else");
    SetForegroundWindow(other.handle());
    viewer->show_file(path);
    EXPECT_TRUE(comes_to_front(FindWindowExA(nullptr, nullptr, nullptr, title.c_str())));
    EXPECT_FALSE(another_opens());
}

TEST_F(NotepadOnWindows, AFileThatIsBeingWrittenIsShownAnewEachTime) {
    viewer->follow(path, nullptr);
    ASSERT_TRUE(wait_for_windows(1));
    viewer->follow(path, nullptr);
    EXPECT_TRUE(wait_for_windows(2));
}

} // namespace
} // namespace morvane::test
