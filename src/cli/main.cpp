// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/console.h"
#include "cli/run.h"

#include <iostream>

int main(int argc, char** argv) {
    try {
        std::ios::sync_with_stdio(false);
        const morvane::cli::Console console;
        return morvane::cli::run(morvane::cli::console_arguments(argc, argv));
    } catch (...) {
        return 1; // what failed is the reporting itself
    }
}
