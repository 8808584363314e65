// Runs one of the test classes: test_ui NAME [arguments of the test library]

#include "ui/program.h"
#include "ui/registry.h"

#include <QApplication>
#include <QTest>

#include <cstdio>

namespace morvane::test {

std::map<std::string, MakeTest>& registry() {
    static std::map<std::string, MakeTest> tests;
    return tests;
}

} // namespace morvane::test

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    morvane::prepare_application(application);
    const auto& tests = morvane::test::registry();
    const auto found = tests.find(argc > 1 ? argv[1] : "");
    if (found == tests.end()) {
        for (const auto& [name, make] : tests) {
            std::printf("%s\n", name.c_str());
        }
        return 2;
    }
    argv[1] = argv[0];
    return QTest::qExec(found->second().get(), argc - 1, argv + 1);
}
