// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/console_reporter.h"

#include "base/encodings.h"
#include "cli/console.h"

#include <iostream>

namespace morvane::cli {

namespace {

const char* icon_name(Icon icon) {
    switch (icon) {
    case Icon::Critical:
        return "critical";
    case Icon::Exclamation:
        return "exclamation";
    case Icon::Information:
        return "information";
    case Icon::Question:
        return "question";
    case Icon::None:
        break;
    }
    return "message";
}

} // namespace

void ConsoleReporter::add_message(std::string_view text) {
    messages_.emplace_back(text);
}

void ConsoleReporter::note(const Note& note) {
    Reporter::note(note);
    notes_.push_back(note);
    if (notes_at_once_) {
        end_progress();
        std::cerr << "Note: " << readable_text(place_and_text(note)) << std::endl;
    }
}

void ConsoleReporter::clear_messages() {
    messages_.clear();
    notes_.clear();
}

void ConsoleReporter::message_box(std::string_view text, Icon icon) {
    end_progress();
    std::cerr << '[' << icon_name(icon) << "] " << readable_text(text) << std::endl;
    last_refusal_ = text;
}

bool ConsoleReporter::ask(std::string_view text, Icon /*icon*/, std::string_view /*title*/) {
    end_progress();
    std::cerr << "[question] " << readable_text(text) << std::endl;
    if (answer()) {
        return true;
    }
    last_refusal_ = "answered No: " + std::string(text);
    return false;
}

bool ConsoleReporter::answer() const {
    if (answer_ != Answer::Ask) {
        return answer_ == Answer::Yes;
    }
    if (!input_is_terminal()) {
        std::cerr << "Note: nobody is there to answer, so the answer is No; --yes answers Yes."
                  << std::endl;
        return false;
    }
    std::cerr << "Yes or no? [y/N] " << std::flush;
    std::string line;
    std::getline(std::cin, line);
    return !line.empty() && (line.front() == 'y' || line.front() == 'Y');
}

bool ConsoleReporter::progress(std::string_view what, std::size_t done, std::size_t total) {
    if (errors_can_be_overwritten()) {
        std::cerr << '\r' << what << ' ' << done;
        if (total > 0) {
            std::cerr << " of " << total;
        }
        std::cerr << "\x1b[K" << std::flush;
        progress_shown_ = true;
    }
    return true;
}

void ConsoleReporter::end_progress() {
    if (progress_shown_) {
        std::cerr << "\r\x1b[K" << std::flush;
        progress_shown_ = false;
    }
}

void ConsoleReporter::print_log() const {
    for (const std::string& message : messages_) {
        if (!quiet_) {
            std::cout << readable_text(message) << '\n';
        }
    }
}

void ConsoleReporter::print_notes() const {
    for (const Note& note : notes_) {
        std::cerr << "Note: " << readable_text(place_and_text(note)) << '\n';
    }
}

} // namespace morvane::cli
