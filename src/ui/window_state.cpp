#include "ui/window_state.h"

#include "base/paths.h"
#include "ui/qt_text.h"

#include <QWidget>

namespace morvane {

namespace {

QString geometry_key(const QWidget& window) {
    return window.objectName() + QStringLiteral("/geometry");
}

} // namespace

WindowState::WindowState(const std::string& program_folder)
    : settings_(shown_text(join_path(program_folder, "window.ini")), QSettings::IniFormat) {}

void WindowState::restore(QWidget& window) {
    window.restoreGeometry(settings_.value(geometry_key(window)).toByteArray());
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

QString WindowState::value(const QString& key) const {
    return settings_.value(key).toString();
}

void WindowState::set_value(const QString& key, const QString& value) {
    settings_.setValue(key, value);
}

} // namespace morvane
