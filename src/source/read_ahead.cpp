// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/read_ahead.h"

#include "system/disk.h"

#include <algorithm>

namespace morvane {

void ReadAhead::ask_for_more() {
    constexpr std::size_t at_once = 2;
    // Where the system has no thread to give, the stretch is read when it is waited for.
    const auto how =
        size_ > stretch_ ? std::launch::async | std::launch::deferred : std::launch::deferred;
    while (asked_for_ < size_ && coming_.size() < at_once) {
        const std::size_t count = std::min(stretch_, size_ - asked_for_);
        coming_.push_back(std::async(how, [this, from = asked_for_, count] {
            return file_.read_at(from, memory_ + from, count);
        }));
        asked_for_ += count;
    }
}

std::size_t ReadAhead::next() {
    ask_for_more();
    if (coming_.empty()) {
        return 0;
    }
    const std::size_t got = coming_.front().get();
    coming_.pop_front();
    if (got < stretch_) { // the file ends here, even if it was longer a moment ago
        coming_.clear();
        asked_for_ = size_;
    }
    return got;
}

} // namespace morvane
