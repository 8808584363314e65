// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/message_log.h"

namespace morvane {

void MessageLog::add(const QString& text) {
    messages_.push_back(text);
    Q_EMIT added(text);
}

void MessageLog::clear() {
    messages_.clear();
    Q_EMIT cleared();
}

QStringList MessageLog::texts() const {
    return {messages_.rbegin(), messages_.rend()};
}

} // namespace morvane
