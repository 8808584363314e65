// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/rig.h"

#include "support/source_folder.h"
#include "ui/application.h"

#include <QDialog>

#include <filesystem>

namespace morvane::test {

void click(const QWidget& parent, const char* name) {
    auto& button = control<QAbstractButton>(parent, name);
    if (!button.isEnabled() || !button.isVisible()) {
        qFatal("nobody can click %s", name);
    }
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
}

void type(const QWidget& parent, const char* name, const QString& text) {
    auto& field = control<QLineEdit>(parent, name);
    field.setFocus();
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, text);
}

QString text_of(const QWidget& parent, const char* name) {
    return control<QLineEdit>(parent, name).text();
}

void choose(const QWidget& parent, const char* name, const QString& item) {
    auto& list = control<QComboBox>(parent, name);
    const int wanted = list.findText(item);
    if (wanted < 0) {
        qFatal("%s has no item %s", name, qPrintable(item));
    }
    list.setFocus();
    while (list.currentIndex() < wanted) {
        QTest::keyClick(&list, Qt::Key_Down);
    }
    while (list.currentIndex() > wanted) {
        QTest::keyClick(&list, Qt::Key_Up);
    }
}

void trigger(const QWidget& window, const char* action) {
    auto* found = window.findChild<QAction*>(QString::fromLatin1(action));
    if (found == nullptr || !found->isEnabled()) {
        qFatal("no action %s to be chosen", action);
    }
    found->trigger();
}

Rig::Rig()
    : disk(make_system_disk()),
      programs(make_system_programs()), desk{*disk, dialogs, *programs, log, settings.path()} {
    if (auto* application = dynamic_cast<Application*>(QCoreApplication::instance())) {
        application->report_failures_by([this] {
            QtReporter reporter(log, dialogs, form.get());
            report_failure(reporter);
        });
    }
    restart();
}

Rig::~Rig() {
    if (auto* application = dynamic_cast<Application*>(QCoreApplication::instance())) {
        application->report_failures_by({});
    }
    dialogs.unsaved = Unsaved::Discard;
}

void Rig::restart() {
    if (form) {
        form->close();
    }
    form.reset();
    log.clear();
    form = std::make_unique<MainWindow>(desk);
    form->show();
    QApplication::setActiveWindow(form.get());
}

QString Rig::copy_example(const std::string& name) {
    const std::string from = source_folder() + "/examples/" + name;
    std::filesystem::copy(from, folder.file(name));
    std::string stem = name;
    for (char& c : stem) {
        c = c == '-' ? '_' : c;
    }
    return QString::fromStdString(folder.file(name + "/" + stem));
}

void Rig::open(const QString& base) {
    type(*form, "InputFile", base);
    click(*form, "Command2");
}

void Rig::select(int row) {
    auto& list = control<QTreeView>(*form, "lstMat2proc");
    const QModelIndex index = list.model()->index(row - 1, 0);
    list.scrollTo(index);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(index).center());
}

QWidget& Rig::parameters() {
    click(*form, "Command4");
    for (QDialog* dialog : form->findChildren<QDialog*>()) {
        if (dialog->isVisible()) {
            return *dialog;
        }
    }
    qFatal("no dialog came up");
}

QWidget& Rig::window(const char* name) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->objectName() == QLatin1String(name)) {
            return *widget;
        }
    }
    qFatal("no window named %s", name);
}

} // namespace morvane::test
