// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/console.h"

#include <iostream>

namespace morvane::cli {

void Console::show_readable_output() {
    if (output_is_terminal()) {
        output_before_ = std::cout.rdbuf();
        output_ = std::make_unique<ReadableOutput>(*output_before_);
        std::cout.rdbuf(output_.get());
    }
}

void Console::restore_output() {
    if (output_before_ != nullptr) {
        std::cout.rdbuf(output_before_);
        output_.reset(); // passes on what it still holds
        std::cout.flush();
    }
}

} // namespace morvane::cli
