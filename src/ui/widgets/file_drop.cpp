// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/file_drop.h"

#include <QDir>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

#include <utility>

namespace morvane {

namespace {

QStringList local_files(const QMimeData& data) {
    QStringList paths;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile()) {
            paths.append(QDir::toNativeSeparators(url.toLocalFile()));
        }
    }
    return paths;
}

} // namespace

FileDrop::FileDrop(QWidget& target, Fits fits, Take take)
    : QObject(&target), fits_(std::move(fits)), take_(std::move(take)) {
    target.setAcceptDrops(true);
    target.installEventFilter(this);
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event) {
    const bool is_drop = event->type() == QEvent::Drop;
    if (!is_drop && event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove) {
        return QObject::eventFilter(watched, event);
    }
    auto& drop = static_cast<QDropEvent&>(*event);
    if (!drop.mimeData()->hasUrls()) {
        return false;
    }
    const QStringList paths = local_files(*drop.mimeData());
    drop.ignore();
    if (!paths.isEmpty() && fits_(paths)) {
        drop.acceptProposedAction();
        if (is_drop) {
            take_(paths);
        }
    }
    return true; // the widget's own way would be to insert the text of the address
}

void accept_dropped_file(QLineEdit& box,
                         const std::function<QString(const QString& path)>& text_for) {
    new FileDrop(
        box,
        [text_for](const QStringList& paths) {
            return paths.size() == 1 && !text_for(paths.front()).isEmpty();
        },
        [&box, text_for](const QStringList& paths) { box.setText(text_for(paths.front())); });
} // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): it belongs to the box

QString base_of_file(const QString& path) {
    for (const QString& ending : {QStringLiteral("_0.asm"), QStringLiteral(".asm")}) {
        if (path.endsWith(ending, Qt::CaseInsensitive)) {
            return path.chopped(ending.size());
        }
    }
    return {};
}

} // namespace morvane
