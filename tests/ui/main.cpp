// SPDX-License-Identifier: GPL-3.0-or-later

// Runs one of the test classes: test_ui NAME [arguments of the test library]

#include "ui/application.h"
#include "ui/program.h"
#include "ui/registry.h"

#include <QTemporaryFile>
#include <QTest>

#include <cstdio>

namespace morvane::test {

std::map<std::string, MakeTest>& registry() {
    static std::map<std::string, MakeTest> tests;
    return tests;
}

} // namespace morvane::test

namespace {

#ifdef Q_OS_WIN
// The test library talks to the debugger there unless it is given a file.
class Report {
  public:
    Report() { file_.open(); }
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;
    ~Report() { std::fputs(file_.readAll().constData(), stdout); }
    QStringList options() const {
        return {QStringLiteral("-o"), file_.fileName() + QStringLiteral(",txt")};
    }

  private:
    QTemporaryFile file_;
};

QStringList reporting() {
    static Report report; // until the very end: a failed check may leave at once
    return report.options();
}
#else
QStringList reporting() {
    return {};
}
#endif

} // namespace

int main(int argc, char** argv) {
    morvane::Application application(argc, argv);
    morvane::prepare_application(application);
    const auto& tests = morvane::test::registry();
    const auto found = tests.find(argc > 1 ? argv[1] : "");
    if (found == tests.end()) {
        for (const auto& [name, make] : tests) {
            std::printf("%s\n", name.c_str());
        }
        return 2;
    }
    QStringList arguments = QApplication::arguments() + reporting();
    arguments.removeAt(1);
    return QTest::qExec(found->second().get(), arguments);
}
