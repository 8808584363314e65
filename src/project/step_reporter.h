// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "problems/problem.h"

#include <string>
#include <vector>

namespace morvane {

/// Keeps what an operation says as problems of a step. Message boxes with a picture of a mistake,
/// and plain ones, are errors; those of success are dropped. Every question is answered with No.
class StepReporter final : public Reporter {
  public:
    void add_message(std::string_view /*text*/) override {}
    void note(const Note& note) override;
    void clear_messages() override {}
    void message_box(std::string_view text, Icon icon) override;
    bool ask(std::string_view text, Icon icon, std::string_view title) override;

    std::vector<Problem> problems;
};

} // namespace morvane
