// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace morvane {

/// Keeps what an operation says until it is known whether anybody is to hear it. Message boxes
/// become notes; every question is answered with No.
class KeptReports final : public Reporter {
  public:
    void add_message(std::string_view text) override {
        said_.emplace_back([text = std::string(text)](Reporter& to) { to.add_message(text); });
    }
    void note(const Note& note) override {
        said_.emplace_back([note](Reporter& to) { to.note(note); });
    }
    void clear_messages() override {
        said_.emplace_back([](Reporter& to) { to.clear_messages(); });
    }
    void message_box(std::string_view text, Icon /*icon*/) override {
        boxes_.emplace_back(text);
        note({std::string(text), {}, 0, Severity::Warning});
    }
    bool ask(std::string_view text, Icon icon, std::string_view /*title*/) override {
        message_box(text, icon);
        return false;
    }

    /// What the message boxes would have said, oldest first.
    const std::vector<std::string>& boxes() const { return boxes_; }

    /// Says everything again, in its order.
    void say_to(Reporter& reporter) const {
        for (const auto& say : said_) {
            say(reporter);
        }
    }

  private:
    std::vector<std::function<void(Reporter&)>> said_;
    std::vector<std::string> boxes_;
};

} // namespace morvane
