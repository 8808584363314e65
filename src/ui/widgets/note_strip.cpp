// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/note_strip.h"

#include <QLabel>
#include <QVBoxLayout>

namespace morvane {

namespace {

constexpr qsizetype max_lines = 6;

} // namespace

NoteStrip::NoteStrip(QWidget* parent) : QFrame(parent), label_(new QLabel(this)) {
    setObjectName(QStringLiteral("noteStrip"));
    setFrameShape(QFrame::StyledPanel);
    label_->setObjectName(QStringLiteral("noteText"));
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(true);
    label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->addWidget(label_);
    hide();
}

void NoteStrip::add(const QString& text) {
    lines_.append(text);
    const qsizetype hidden = lines_.size() - max_lines;
    label_->setText(lines_.mid(qMax(hidden, qsizetype(0))).join(QLatin1Char('\n')) +
                    (hidden > 0
                         ? tr("\n... and %1 before, under Messages in the main window.").arg(hidden)
                         : QString()));
    label_->setToolTip(lines_.join(QLatin1Char('\n')));
    show();
}

void NoteStrip::clear() {
    lines_.clear();
    label_->clear();
    hide();
}

QString NoteStrip::text() const {
    return lines_.join(QLatin1Char('\n'));
}

} // namespace morvane
