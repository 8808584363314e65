// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

class QLineEdit;
class QMimeData;
class QWidget;

namespace morvane {

/// Lets files be dropped on a widget. What does not fit goes on to the widget around it.
class FileDrop : public QObject {
    Q_OBJECT

  public:
    using Fits = std::function<bool(const QStringList& paths)>;
    using Take = std::function<void(const QStringList& paths)>;

    /// Belongs to `target`.
    FileDrop(QWidget& target, Fits fits, Take take);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    Fits fits_;
    Take take_;
};

/// Lets one file be dropped on a path box: what `text_for` makes of its path replaces the text. An
/// empty result refuses the file.
void accept_dropped_file(QLineEdit& box,
                         const std::function<QString(const QString& path)>& text_for);

/// The base path of the set that a file belongs to; empty for a file of no set.
QString base_of_file(const QString& path);

} // namespace morvane
