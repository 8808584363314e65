// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/source_comparison.h"
#include "ui/widgets/line_view.h"

namespace morvane {

/// What a line of that fate stands out by.
inline LineTint line_tint(LineFate fate) {
    switch (fate) {
    case LineFate::Added:
        return LineTint::Added;
    case LineFate::Removed:
        return LineTint::Removed;
    case LineFate::Commented:
        return LineTint::Commented;
    case LineFate::Changed:
        return LineTint::Changed;
    case LineFate::Same:
        break;
    }
    return LineTint::None;
}

} // namespace morvane
