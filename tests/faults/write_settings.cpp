// SPDX-License-Identifier: GPL-3.0-or-later

// Writes all settings files into a folder, as the window does when its forms close, for the test
// that lets every call of it fail.

#include "base/errors.h"
#include "base/reporter.h"
#include "system/disk.h"
#include "upkeep/settings.h"

#include <iostream>

namespace {

class PlainReporter final : public morvane::Reporter {
  public:
    void add_message(std::string_view text) override { std::cout << text << '\n'; }
    void clear_messages() override {}
    void message_box(std::string_view text, morvane::Icon /*icon*/) override {
        std::cerr << "[message] " << text << '\n';
    }
    bool ask(std::string_view, morvane::Icon, std::string_view) override { return true; }
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    const std::string folder = argv[1];
    const auto disk = morvane::make_system_disk();
    PlainReporter reporter;
    try {
        morvane::write_main_paths(*disk, folder, {"c:\\scenery\\airport", "c:\\result"});
        morvane::write_aircraft_paths(*disk, folder, {"complete", "fuselage", "high", "low", "s"});
        morvane::write_library_folder(*disk, folder, "c:\\scenery");
    } catch (const morvane::RuntimeError& error) {
        morvane::report_error(reporter, error, "Error : ", " :");
        return 1;
    }
    return 0;
}
