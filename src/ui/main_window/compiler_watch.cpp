// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window/compiler_watch.h"

#include "ui/models/message_log.h"

#include <QTimer>

#include <utility>

namespace morvane {

namespace {

constexpr int look_every_ms = 200;

class SharedProgram final : public RunningProgram {
  public:
    explicit SharedProgram(std::shared_ptr<RunningProgram> program)
        : program_(std::move(program)) {}

    std::optional<int> exit_status() override { return program_->exit_status(); }

  private:
    std::shared_ptr<RunningProgram> program_;
};

} // namespace

CompilerWatch::CompilerWatch(MessageLog& log) : log_(log), timer_(new QTimer(this)) {
    timer_->setInterval(look_every_ms);
    connect(timer_, &QTimer::timeout, this, &CompilerWatch::look);
}

std::unique_ptr<RunningProgram> CompilerWatch::watch(std::unique_ptr<RunningProgram> program) {
    program_ = std::move(program);
    timer_->start();
    return std::make_unique<SharedProgram>(program_);
}

void CompilerWatch::look() {
    const auto ended = program_->exit_status();
    if (!ended) {
        return;
    }
    timer_->stop();
    program_.reset();
    if (*ended != 0) {
        log_.add(tr("The compiler has failed: it ended with status %1.").arg(*ended));
    }
}

} // namespace morvane
