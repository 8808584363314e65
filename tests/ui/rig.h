// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/temp_folder.h"
#include "system/disk.h"
#include "system/programs.h"
#include "ui/desk.h"
#include "ui/main_window/main_window.h"
#include "ui/models/message_log.h"
#include "ui/scripted_dialogs.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

#include <memory>
#include <string>

namespace morvane::test {

/// The control of that object name below `parent`; the test ends when there is none.
template <typename Control>
Control& control(const QWidget& parent, const char* name) {
    auto* found = parent.findChild<Control*>(QString::fromLatin1(name));
    if (found == nullptr) {
        qFatal("no control named %s", name);
    }
    return *found;
}

void click(const QWidget& parent, const char* name);
/// Replaces what stands in the field by typing.
void type(const QWidget& parent, const char* name, const QString& text);
QString text_of(const QWidget& parent, const char* name);
/// Chooses an item of a drop-down list with the keyboard.
void choose(const QWidget& parent, const char* name, const QString& item);
/// Chooses a menu command.
void trigger(const QWidget& window, const char* action);

/// A window on a folder of its own, with nobody in front of it.
class Rig {
  public:
    Rig();
    ~Rig();
    Rig(const Rig&) = delete;
    Rig& operator=(const Rig&) = delete;

    /// Copies one of the bundled examples ("airport"); gives its base path.
    QString copy_example(const std::string& name);
    /// Types the base path and presses Open.
    void open(const QString& base);
    /// Clicks on a material, from 1.
    void select(int row);
    /// Presses "Parameters"; gives the dialog.
    QWidget& parameters();
    /// Makes the window anew, as after a restart of the program.
    void restart();
    /// The only visible window of that object name.
    QWidget& window(const char* name);

    QStringList messages() { return log.texts(); } // newest first

    TempFolder folder;   // holds the examples
    TempFolder settings; // the program folder
    std::unique_ptr<Disk> disk;
    std::unique_ptr<Programs> programs;
    ScriptedDialogs dialogs;
    MessageLog log;
    Desk desk;
    std::unique_ptr<MainWindow> form;
};

} // namespace morvane::test
