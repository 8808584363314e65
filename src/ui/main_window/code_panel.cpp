// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window/code_panel.h"

#include "ui/qt_text.h"
#include "ui/widgets/line_tint.h"
#include "ui/widgets/line_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>

#include <algorithm>
#include <utility>

namespace morvane {

CodePanel::CodePanel(QWidget* parent)
    : QWidget(parent), what_(new QLabel(this)), wanted_(new QLineEdit(this)),
      lines_(new LineView(this)) {
    what_->setObjectName(QStringLiteral("codeWhat"));
    wanted_->setObjectName(QStringLiteral("codeFind"));
    wanted_->setAccessibleName(tr("Find in the code"));
    wanted_->setPlaceholderText(tr("Find"));
    wanted_->setClearButtonEnabled(true);
    wanted_->setMaximumWidth(200);
    lines_->setObjectName(QStringLiteral("codeLines"));
    lines_->setAccessibleName(tr("Code"));
    what_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(4, 2, 4, 0);
    bar->addWidget(what_, 1);
    bar->addWidget(wanted_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addLayout(bar);
    layout->addWidget(lines_);
    auto* finds = new QShortcut(QKeySequence::Find, this);
    finds->setContext(Qt::WidgetWithChildrenShortcut);
    connect(finds, &QShortcut::activated, wanted_, [this] { wanted_->setFocus(); });
    connect(wanted_, &QLineEdit::textEdited, this, [this] { find(0); });
    connect(wanted_, &QLineEdit::returnPressed, this, [this] { find(1); });
}

void CodePanel::show_code(MaterialCode code, const QString& what) {
    code_ = std::move(code);
    what_->setText(what);
    what_->setToolTip(what);
    std::size_t last_number = 0;
    for (const CodeLine& line : code_.lines) {
        last_number = std::max(last_number, line.number);
    }
    const auto line = [this](std::size_t row) {
        const CodeLine& shown = code_.lines.at(row);
        return ShownLine{QString::number(shown.number), code_text(shown.text),
                         line_tint(shown.fate)};
    };
    lines_->show_lines(code_.lines.size(), line, last_number);
}

// From the current line on, or from the one after it; after the last comes the first.
void CodePanel::find(int by) {
    const std::size_t count = lines_->count();
    for (std::size_t i = 0; i < count && !wanted_->text().isEmpty(); ++i) {
        const std::size_t row = (lines_->current_row() + static_cast<std::size_t>(by) + i) % count;
        if (lines_->text(row).contains(wanted_->text(), Qt::CaseInsensitive)) {
            lines_->go_to(row);
            return;
        }
    }
}

} // namespace morvane
