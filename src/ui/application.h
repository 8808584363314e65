// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>

#include <functional>

namespace morvane {

/// The program as its event loop knows it: an exception that leaves a handler of any form is
/// reported, and the program goes on.
class Application final : public QApplication {
  public:
    Application(int& argc, char** argv);

    /// `report` is called inside a catch clause, for the exception that is being handled there.
    /// Without one a plain message box says what has failed.
    void report_failures_by(std::function<void()> report);

    /// Reports the exception that is being handled. To be called inside a catch clause.
    void report_failure();

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    std::function<void()> report_;
    bool reporting_ = false;
};

} // namespace morvane
