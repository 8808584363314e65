// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window_state.h"

#include "base/paths.h"
#include "ui/qt_text.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QMargins>
#include <QScreen>
#include <QSplitter>
#include <QWidget>

namespace morvane {

namespace {

// What the window manager draws around a window is not known before the window is shown.
constexpr QMargins frame{8, 36, 8, 8};

QString geometry_key(const QWidget& window) {
    return window.objectName() + QStringLiteral("/geometry");
}

QString part_key(const QWidget& part) {
    return part.window()->objectName() + QLatin1Char('/') + part.objectName();
}

// Where on its screen a window without its frame can be.
QRect room_for(const QWidget& window) {
    return window.screen()->availableGeometry().marginsRemoved(frame);
}

void keep_on_screen(QWidget& window) {
    const QRect room = room_for(window);
    QRect place(window.pos(), window.size().boundedTo(room.size()));
    place.moveLeft(qBound(room.left(), place.left(), room.right() - place.width() + 1));
    place.moveTop(qBound(room.top(), place.top(), room.bottom() - place.height() + 1));
    window.resize(place.size());
    window.move(place.topLeft());
}

} // namespace

WindowState::WindowState(const std::string& program_folder, const QWidget& main_window)
    : settings_(shown_text(join_path(program_folder, "window.ini")), QSettings::IniFormat),
      main_window_(main_window) {}

void WindowState::restore(QWidget& window) {
    if (!window.restoreGeometry(settings_.value(geometry_key(window)).toByteArray())) {
        window.resize(window.size().boundedTo(room_for(window).size()));
        place_beside_main_window(window);
    }
    keep_on_screen(window);
}

void WindowState::place_beside_main_window(QWidget& window) const {
    const QRect room = room_for(window);
    if (&window == &main_window_) {
        window.move(room.center() - QRect({}, window.size()).center());
        return;
    }
    const QRect main = main_window_.frameGeometry();
    const bool fits_right = main.right() + window.width() <= room.right();
    window.move(fits_right ? main.right() + 1 : main.left() - window.width(), main.top());
}

void WindowState::keep(const QWidget& window) {
    settings_.setValue(geometry_key(window), window.saveGeometry());
}

QStringList WindowState::recent() const {
    return settings_.value(QStringLiteral("recent")).toStringList();
}

void WindowState::add_recent(const QString& base) {
    QStringList list = recent();
    list.removeAll(base);
    list.prepend(base);
    while (list.size() > max_recent) {
        list.removeLast();
    }
    settings_.setValue(QStringLiteral("recent"), list);
}

void WindowState::remove_recent(const QString& base) {
    QStringList list = recent();
    list.removeAll(base);
    settings_.setValue(QStringLiteral("recent"), list);
}

QString WindowState::value(const QString& key) const {
    return settings_.value(key).toString();
}

void WindowState::set_value(const QString& key, const QString& value) {
    settings_.setValue(key, value);
}

void WindowState::restore(QSplitter& splitter) {
    splitter.restoreState(bytes(part_key(splitter)));
}

void WindowState::keep(const QSplitter& splitter) {
    set_bytes(part_key(splitter), splitter.saveState());
}

bool WindowState::restore(QHeaderView& header, const QString& name) {
    return header.restoreState(bytes(name + QStringLiteral("/columns")));
}

void WindowState::keep(const QHeaderView& header, const QString& name) {
    set_bytes(name + QStringLiteral("/columns"), header.saveState());
}

void WindowState::restore(QCheckBox& box) {
    box.setChecked(settings_.value(part_key(box), box.isChecked()).toBool());
}

void WindowState::keep(const QCheckBox& box) {
    settings_.setValue(part_key(box), box.isChecked());
}

QByteArray WindowState::bytes(const QString& key) const {
    return settings_.value(key).toByteArray();
}

void WindowState::set_bytes(const QString& key, const QByteArray& value) {
    settings_.setValue(key, value);
}

} // namespace morvane
