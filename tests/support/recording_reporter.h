// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace morvane::test {

/// A reporter that writes down everything it is told and answers questions as it was set up to.
class RecordingReporter final : public Reporter {
  public:
    struct Box {
        std::string text;
        Icon icon = Icon::None;
        bool operator==(const Box&) const = default;
    };
    struct Question {
        std::string text;
        Icon icon = Icon::None;
        std::string title;
    };

    void add_message(std::string_view text) override { messages.emplace_back(text); }
    void note(const Note& note) override {
        Reporter::note(note);
        notes.push_back(note);
    }
    void clear_messages() override {
        messages.clear();
        notes.clear();
    }
    void message_box(std::string_view text, Icon icon) override {
        boxes.push_back({std::string(text), icon});
    }
    bool ask(std::string_view text, Icon icon, std::string_view title) override {
        questions.push_back({std::string(text), icon, std::string(title)});
        return answer;
    }
    bool progress(std::string_view /*what*/, std::size_t done, std::size_t /*total*/) override {
        last_progress = done;
        return keep_going;
    }

    /// Log lines that are no hints of the program's own, oldest first.
    std::vector<std::string> plain_messages() const {
        std::vector<std::string> result;
        for (const std::string& message : messages) {
            if (message.rfind("Note: ", 0) != 0) {
                result.push_back(message);
            }
        }
        return result;
    }

    std::vector<std::string> messages; // oldest first, notes too
    std::vector<Note> notes;
    std::vector<Box> boxes;
    std::vector<Question> questions;
    bool answer = true;
    bool keep_going = true;
    std::size_t last_progress = 0;
};

inline void PrintTo(const RecordingReporter::Box& box, std::ostream* out) {
    *out << "box " << static_cast<int>(box.icon) << " '" << box.text << "'";
}

} // namespace morvane::test
