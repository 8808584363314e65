// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/dialogs.h"

#include "ui/hourglass.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace morvane {

namespace {

QMessageBox::Icon box_icon(Icon icon) {
    switch (icon) {
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

// The format of a box's text does not hold for the smaller text below it.
void explain(QMessageBox& box, const QString& text) {
    box.setInformativeText(text);
    if (auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
        label->setTextFormat(Qt::PlainText);
    }
}

void prepare(QMessageBox& box, const QString& text, Icon icon, const QString& title) {
    box.setTextFormat(Qt::PlainText); // a path may hold what looks like markup
    box.setText(text);
    box.setIcon(box_icon(icon));
    box.setWindowTitle(title.isEmpty() ? QStringLiteral("Morvane") : title);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

} // namespace

void SystemDialogs::show_box(QWidget* parent, const QString& text, Icon icon,
                             const QString& explanation) {
    const PointerPause pause;
    QMessageBox box(parent);
    prepare(box, text, icon, {});
    explain(box, explanation);
    box.setStandardButtons(QMessageBox::Ok);
    box.exec();
}

bool SystemDialogs::show_repeated_box(QWidget* parent, const QString& text, Icon icon) {
    const PointerPause pause;
    QMessageBox box(parent);
    prepare(box, text, icon, {});
    box.setStandardButtons(QMessageBox::Ok);
    auto* no_more = new QCheckBox(QObject::tr("Do not show again in this search"));
    box.setCheckBox(no_more); // which the box owns from now on
    box.exec();
    return no_more->isChecked();
}

bool SystemDialogs::ask(QWidget* parent, const QString& text, Icon icon, const QString& title) {
    const PointerPause pause;
    QMessageBox box(parent);
    prepare(box, text, icon, title);
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

Unsaved SystemDialogs::ask_unsaved(QWidget* parent, const QString& text, bool can_save) {
    const PointerPause pause;
    QMessageBox box(parent);
    prepare(box, text, Icon::Question, {});
    box.setStandardButtons(QMessageBox::Discard | QMessageBox::Cancel);
    if (can_save) {
        box.addButton(QMessageBox::Save);
    }
    box.setDefaultButton(can_save ? QMessageBox::Save : QMessageBox::Cancel);
    switch (box.exec()) {
    case QMessageBox::Save:
        return Unsaved::Save;
    case QMessageBox::Discard:
        return Unsaved::Discard;
    default:
        return Unsaved::Cancel;
    }
}

QString SystemDialogs::open_file(QWidget* parent, const QString& title, const QString& folder,
                                 const QString& filter) {
    const PointerPause pause;
    return QDir::toNativeSeparators(QFileDialog::getOpenFileName(parent, title, folder, filter));
}

QStringList SystemDialogs::open_files(QWidget* parent, const QString& title, const QString& folder,
                                      const QString& filter) {
    const PointerPause pause;
    QStringList files = QFileDialog::getOpenFileNames(parent, title, folder, filter);
    for (QString& file : files) {
        file = QDir::toNativeSeparators(file);
    }
    return files;
}

QString SystemDialogs::save_file(QWidget* parent, const QString& title, const QString& path,
                                 const QString& filter) {
    const PointerPause pause;
    return QDir::toNativeSeparators(QFileDialog::getSaveFileName(parent, title, path, filter));
}

} // namespace morvane
