// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "source/open_set.h"

namespace morvane {

/// Reads the placement from the frame's SCALE_AGL lines, of which the last one wins, and the
/// rotation from an INSTANCE_CALL line directly after it, which goes to the message log.
///
/// The longitude's fraction is used for the latitude too: this asymmetry is intended. Throws
/// RuntimeError with the line that cannot be split or read.
Placement read_placement(const LineStore& frame, Reporter& reporter);

} // namespace morvane
