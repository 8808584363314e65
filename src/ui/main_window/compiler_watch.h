// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/programs.h"

#include <QObject>

#include <memory>

class QTimer;

namespace morvane {

class MessageLog;

/// Waits for compilers that nobody waits for, and adds a line to the log when one fails.
class CompilerWatch : public QObject {
    Q_OBJECT

  public:
    explicit CompilerWatch(MessageLog& log);

    /// Watches `program`. Returns a handle of the same program for who shows its output.
    std::unique_ptr<RunningProgram> watch(std::unique_ptr<RunningProgram> program);

  private:
    void look();

    MessageLog& log_;
    QTimer* timer_;
    std::shared_ptr<RunningProgram> program_; // the last one started; null when none runs
};

} // namespace morvane
