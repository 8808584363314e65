// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace morvane {

class RuntimeError;

enum class Severity { Note, Warning, Error };

/// A hint of the program's own, about a place in a file where there is one.
struct Note {
    std::string text;
    std::string path{};   // empty: about no file
    std::size_t line = 0; // from 1; 0: about the whole file
    Severity severity = Severity::Note;
    std::string code{};     // names the check that found it, e.g. "flash-mask"; empty: none did
    std::size_t column = 0; // in characters, from 1; 0: about the whole line

    bool operator==(const Note&) const = default;
};

/// Returns "PATH:LINE:COLUMN: TEXT", without the parts that the note does not have.
std::string place_and_text(const Note& note);

/// How a command ended. What went wrong has then been told to the user.
enum class Outcome { Done, Declined, Failed };

/// The picture of a message box. `None` is a plain box.
enum class Icon { None, Critical, Exclamation, Information, Question };

/// How operations speak to the user. The window, the command line and the tests each implement it;
/// no operation knows which one it talks to.
class Reporter {
  public:
    Reporter() = default;
    Reporter(const Reporter&) = delete;
    Reporter& operator=(const Reporter&) = delete;
    virtual ~Reporter() = default;

    /// Puts `text` at the top of the message log, above all earlier messages.
    virtual void add_message(std::string_view text) = 0;
    /// Adds a hint of the program's own: by default to the log, as "Note: " and its place and text.
    virtual void note(const Note& note);
    /// Empties the message log.
    virtual void clear_messages() = 0;
    /// Shows a message box with an OK button. Lines of `text` are separated by "\n".
    virtual void message_box(std::string_view text, Icon icon = Icon::None) = 0;
    /// Shows a box that a long command may have to show many times. A window may offer not to show
    /// it again until the command ends.
    virtual void repeated_box(std::string_view text, Icon icon) { message_box(text, icon); }
    /// Asks a Yes/No question; true for Yes. An empty `title` is the program's own.
    virtual bool ask(std::string_view text, Icon icon, std::string_view title = {}) = 0;
    /// Called repeatedly during long operations. `total` is 0 while it is not known. Return false
    /// to cancel.
    virtual bool progress(std::string_view /*what*/, std::size_t /*done*/, std::size_t /*total*/) {
        return true;
    }
};

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

/// Shows a run-time error as a box: `before`, its number, `between`, its description; what the
/// error was about and its place, if it has them, go to the log as a note.
void report_error(Reporter& reporter, const RuntimeError& error, std::string_view before,
                  std::string_view between, Icon icon = Icon::None);

} // namespace morvane
