// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace morvane {

class Disk;
class Reporter;

/// What an operation needs of the world around it: files, and a way to speak to the user.
struct Services {
    Disk& disk;
    Reporter& reporter;
};

} // namespace morvane
