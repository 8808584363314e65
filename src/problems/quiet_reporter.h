// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"

#include <string>
#include <string_view>

namespace morvane {

/// Shows nothing and answers No, but keeps the last message box: for trying out what an operation
/// would do.
class QuietReporter final : public Reporter {
  public:
    void add_message(std::string_view /*text*/) override {}
    void note(const Note& /*note*/) override {}
    void clear_messages() override {}
    void message_box(std::string_view text, Icon /*icon*/) override {
        last_box = text;
        all_boxes += (all_boxes.empty() ? "" : "\n") + last_box;
    }
    bool ask(std::string_view /*text*/, Icon /*icon*/, std::string_view /*title*/) override {
        return false;
    }

    std::string last_box;
    std::string all_boxes; // a line each
};

} // namespace morvane
