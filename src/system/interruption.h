// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace morvane {

/// While alive, Ctrl-C and a request to end the program (SIGTERM, SIGHUP) only set a flag, so that
/// long work can end in good order. A signal that was ignored stays so. One at a time.
class Interruption {
  public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

    static bool requested();
};

} // namespace morvane
