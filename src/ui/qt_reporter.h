#pragma once

#include "base/reporter.h"

#include <functional>

class QWidget;

namespace morvane {

class Dialogs;
class MessageLog;

/// The one place where what operations have to say becomes lines of the log and message boxes.
class QtReporter final : public Reporter {
  public:
    /// Told of long work: what, done, total (0 while unknown). False asks to stop.
    using Progress = std::function<bool(std::string_view, std::size_t, std::size_t)>;

    /// Boxes lie over `parent`.
    QtReporter(MessageLog& log, Dialogs& dialogs, QWidget* parent, Progress progress = {});

    void add_message(std::string_view text) override;
    void clear_messages() override;
    void message_box(std::string_view text, Icon icon) override;
    bool ask(std::string_view text, Icon icon, std::string_view title) override;
    bool progress(std::string_view what, std::size_t done, std::size_t total) override;

  private:
    MessageLog& log_;
    Dialogs& dialogs_;
    QWidget* parent_;
    Progress progress_;
};

} // namespace morvane
