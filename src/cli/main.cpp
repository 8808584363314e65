#include "cli/console.h"
#include "cli/run.h"

#include <iostream>

int main(int argc, char** argv) {
    try {
        const morvane::cli::Console console;
        std::ios::sync_with_stdio(false);
        return morvane::cli::run(morvane::cli::console_arguments(argc, argv));
    } catch (...) {
        return 1; // what failed is the reporting itself
    }
}
