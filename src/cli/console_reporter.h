// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"

#include <string>
#include <vector>

namespace morvane::cli {

/// How questions are answered: by the options --yes and --no, else by the user at the terminal.
enum class Answer { Ask, Yes, No };

/// Message boxes and questions go to standard error as they come; the log is kept until the
/// command is done.
class ConsoleReporter final : public Reporter {
  public:
    void set_answer(Answer answer) { answer_ = answer; }
    /// Omits the log on standard output.
    void set_quiet() { quiet_ = true; }
    /// Prints hints to standard error as they come, for commands that print no log; they then stand
    /// before what they are about.
    void print_notes_at_once() { notes_at_once_ = true; }
    /// The notes that the log holds, oldest first.
    const std::vector<Note>& notes() const { return notes_; }
    /// The message log, oldest first.
    const std::vector<std::string>& messages() const { return messages_; }
    /// The last message box, or the last question that was answered No; empty when there was none.
    const std::string& last_refusal() const { return last_refusal_; }

    void add_message(std::string_view text) override;
    void note(const Note& note) override;
    void clear_messages() override;
    void message_box(std::string_view text, Icon icon) override;
    bool ask(std::string_view text, Icon icon, std::string_view title) override;
    bool progress(std::string_view what, std::size_t done, std::size_t total) override;

    /// Prints the log's lines to standard output, unless quiet.
    void print_log() const;
    /// Prints the log's hints to standard error, for commands whose output is something else.
    void print_notes() const;
    /// Wipes the progress line, if there is one.
    void end_progress();

  private:
    bool answer() const;

    std::vector<std::string> messages_;
    std::vector<Note> notes_;
    std::string last_refusal_;
    Answer answer_ = Answer::Ask;
    bool quiet_ = false;
    bool notes_at_once_ = false;
    bool progress_shown_ = false;
};

} // namespace morvane::cli
