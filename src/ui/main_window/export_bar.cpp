// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window/export_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>

namespace morvane {

ExportBar::ExportBar(QMainWindow& window)
    : QToolBar(tr("New export"), &window), window_(window), text_(new QLabel(this)),
      apply_(new QPushButton(tr("Apply my assignments"), this)),
      keep_(new QPushButton(tr("Keep mine"), this)) {
    setObjectName(QStringLiteral("exportBar"));
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    text_->setObjectName(QStringLiteral("exportText"));
    text_->setWordWrap(true);
    text_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    apply_->setObjectName(QStringLiteral("applyAssignments"));
    keep_->setObjectName(QStringLiteral("keepMine"));
    auto* content = new QWidget(this);
    auto* layout = new QHBoxLayout(content);
    layout->addWidget(text_, 1);
    layout->addWidget(apply_);
    layout->addWidget(keep_);
    addWidget(content);
    connect(apply_, &QPushButton::clicked, this, &ExportBar::apply_chosen);
    connect(keep_, &QPushButton::clicked, this, &ExportBar::keep_chosen);
    hide();
}

void ExportBar::say(const QString& text, bool choice) {
    text_->setText(text);
    apply_->setVisible(choice);
    keep_->setVisible(choice);
    if (!isVisible()) {
        window_.addToolBar(Qt::TopToolBarArea, this);
        show();
    }
}

void ExportBar::leave() {
    window_.removeToolBar(this); // hides it too
}

} // namespace morvane
