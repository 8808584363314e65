// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QSettings>
#include <QStringList>

#include <string>

class QCheckBox;
class QHeaderView;
class QSplitter;
class QWidget;

namespace morvane {

/// What the windows remember beside the tools' own settings: places, sizes, recent sets, colours.
/// Kept in "window.ini" in the program folder. A file that cannot be written is passed over: it
/// holds nothing that anybody would miss.
class WindowState {
  public:
    static constexpr int max_recent = 10;

    WindowState(const std::string& program_folder, const QWidget& main_window);

    /// Puts a window where it was closed last. One that was never closed gets the size that it asks
    /// for, as far as the screen allows, and a place beside the main window. No window is left with
    /// a part off the screen.
    void restore(QWidget& window);
    void keep(const QWidget& window);

    /// Base paths of the sets opened last, newest first.
    QStringList recent() const;
    void add_recent(const QString& base);
    void remove_recent(const QString& base);

    QString value(const QString& key) const;
    void set_value(const QString& key, const QString& value);
    /// Sizes and orders that the user has given to the parts of a window, under the names of the
    /// window and their panel. Those that were never kept stay as they are.
    void restore(QSplitter& splitter);
    void keep(const QSplitter& splitter);
    /// False when nothing was kept.
    bool restore(QHeaderView& header, const QString& name);
    void keep(const QHeaderView& header, const QString& name);
    void restore(QCheckBox& box);
    void keep(const QCheckBox& box);

    QByteArray bytes(const QString& key) const;
    void set_bytes(const QString& key, const QByteArray& value);

  private:
    void place_beside_main_window(QWidget& window) const;

    QSettings settings_;
    const QWidget& main_window_;
};

} // namespace morvane
