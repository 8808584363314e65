#pragma once

#include <QSettings>
#include <QStringList>

#include <string>

class QWidget;

namespace morvane {

/// What the windows remember beside the tools' own settings: places, sizes, recent sets, colours.
/// Kept in "window.ini" in the program folder. A file that cannot be written is passed over: it
/// holds nothing that anybody would miss.
class WindowState {
  public:
    static constexpr int max_recent = 10;

    explicit WindowState(const std::string& program_folder);

    void restore(QWidget& window);
    void keep(const QWidget& window);

    /// Base paths of the sets opened last, newest first.
    QStringList recent() const;
    void add_recent(const QString& base);

    QString value(const QString& key) const;
    void set_value(const QString& key, const QString& value);

  private:
    QSettings settings_;
};

} // namespace morvane
