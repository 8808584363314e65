// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace morvane::test {

using MakeTest = std::function<std::unique_ptr<QObject>()>;

/// The test classes of this program, by the names that CTest calls them by.
std::map<std::string, MakeTest>& registry();

template <typename Test>
struct Registration {
    explicit Registration(const char* name) {
        registry()[name] = [] { return std::make_unique<Test>(); };
    }
};

} // namespace morvane::test
