// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>

#include <memory>
#include <string_view>

class QProgressDialog;
class QWidget;

namespace morvane {

/// The progress of a long command, with Cancel. It appears when the command has taken half a second
/// and is repainted at least ten times a second, as far as the command reports its progress.
class CommandProgress {
  public:
    explicit CommandProgress(QWidget& window);
    CommandProgress(const CommandProgress&) = delete;
    CommandProgress& operator=(const CommandProgress&) = delete;
    ~CommandProgress();

    /// `total` is 0 while it is not known. Returns false when the user has cancelled.
    bool show(std::string_view what, std::size_t done, std::size_t total);
    /// The command has ended.
    void finish();

  private:
    QWidget& window_;
    QElapsedTimer running_;
    QElapsedTimer painted_;
    std::unique_ptr<QProgressDialog> dialog_;
};

} // namespace morvane
