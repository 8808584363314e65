#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace morvane {

class RuntimeError;

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
    /// Empties the message log.
    virtual void clear_messages() = 0;
    /// Shows a message box with an OK button. Lines of `text` are parted by "\n".
    virtual void message_box(std::string_view text, Icon icon = Icon::None) = 0;
    /// Asks a Yes/No question; true for Yes. An empty `title` is the program's own.
    virtual bool ask(std::string_view text, Icon icon, std::string_view title = {}) = 0;
    /// Told now and then during long work. `total` is 0 while it is not known. False asks the
    /// operation to stop as soon as it can.
    virtual bool progress(std::string_view /*what*/, std::size_t /*done*/, std::size_t /*total*/) {
        return true;
    }
};

/// Adds a hint of the program's own to the log: "Note: " and the text.
void add_note(Reporter& reporter, std::string_view text);

/// Shows a run-time error as a box: `before`, its number, `between`, its description; what the
/// error was about, if it says, goes to the log as a note.
void report_error(Reporter& reporter, const RuntimeError& error, std::string_view before,
                  std::string_view between, Icon icon = Icon::None);

} // namespace morvane
