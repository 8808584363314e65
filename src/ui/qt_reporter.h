// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"

#include <QStringList>

#include <functional>

class QWidget;

namespace morvane {

class Dialogs;
class MessageLog;

/// The one place where what operations have to say becomes lines of the log and message boxes.
class QtReporter final : public Reporter {
  public:
    /// Called during long work with what, done and total (0 while unknown). Returns false to stop.
    using Progress = std::function<bool(std::string_view, std::size_t, std::size_t)>;

    /// Boxes appear over `parent`.
    QtReporter(MessageLog& log, Dialogs& dialogs, QWidget* parent, Progress progress = {});

    /// Forgets the notes of the command before: a box is explained by its own command's only. False
    /// for a command that is a part of another.
    bool begin_command();
    void end_command() { running_ = false; }
    bool is_running() const { return running_; }

    void add_message(std::string_view text) override;
    void note(const Note& note) override;
    void clear_messages() override;
    /// Notes since the last box are shown below the text of a box that reports a failure.
    void message_box(std::string_view text, Icon icon) override;
    void repeated_box(std::string_view text, Icon icon) override;
    bool ask(std::string_view text, Icon icon, std::string_view title) override;
    bool progress(std::string_view what, std::size_t done, std::size_t total) override;

    std::function<void(const QString&)> on_message; // every line that goes to the log

  private:
    QString explanation(Icon icon);

    MessageLog& log_;
    Dialogs& dialogs_;
    QWidget* parent_;
    Progress progress_;
    bool running_ = false;
    QStringList notes_;    // of this command, since its last box
    QStringList unwanted_; // boxes that are not to be shown again in this command
};

/// Reports the exception that is being handled, whatever it is, with a box. To be called inside a
/// catch clause.
void report_failure(QtReporter& reporter);

/// Runs a command of a form. Whatever it throws ends it with a box, and the program goes on.
void run_command(QtReporter& reporter, const std::function<void()>& command);

} // namespace morvane
