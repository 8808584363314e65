// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/source_window.h"

#include "base/errors.h"
#include "base/paths.h"
#include "source/source_set.h"
#include "ui/models/document_model.h"
#include "ui/qt_text.h"
#include "ui/widgets/line_tint.h"
#include "ui/widgets/line_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QSpinBox>
#include <QSplitter>
#include <QTabBar>

#include <limits>

namespace morvane {

namespace {

ShownLine shown_side(const ComparedLine& line, bool then) {
    const std::size_t number = then ? line.number_then : line.number_now;
    if (number == 0) {
        return {{}, {}, LineTint::Missing};
    }
    const bool plain = !then && line.fate == LineFate::Commented;
    return {QString::number(number), code_text(then ? line.text_then : line.text_now),
            plain ? LineTint::None : line_tint(line.fate)};
}

} // namespace

SourceWindow::SourceWindow(Desk& desk, WindowState& state, DocumentModel& document)
    : ToolForm(desk, state), document_(document), files_(new QTabBar(this)),
      wanted_(new QLineEdit(this)), line_(new QSpinBox(this)), status_(new QLabel(this)),
      now_(new LineView(this)), then_(new LineView(this)), last_used_(now_) {
    setObjectName(QStringLiteral("SourceWindow"));
    now_->setObjectName(QStringLiteral("sourceNow"));
    then_->setObjectName(QStringLiteral("sourceThen"));
    status_->setObjectName(QStringLiteral("sourceStatus"));
    status_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    files_->setObjectName(QStringLiteral("sourceFiles"));
    files_->setAccessibleName(tr("File"));
    files_->addTab(QString());
    files_->addTab(QString());
    auto* sides = new QSplitter(this);
    sides->addWidget(make_side(*now_, tr("On the disk")));
    sides->addWidget(make_side(*then_, tr("As Save will write it")));
    sides->setSizes({500, 500});
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(make_bar());
    layout->addWidget(sides, 1);
    layout->addWidget(status_);
    resize(1000, 600);
    connect_views();
}

SourceWindow::~SourceWindow() {
    line_->disconnect(this); // the field loses the focus when all but the widget is gone
}

QWidget* SourceWindow::make_bar() {
    auto* bar = new QWidget(this);
    wanted_->setObjectName(QStringLiteral("sourceFind"));
    wanted_->setAccessibleName(tr("Find"));
    wanted_->setPlaceholderText(tr("Find (Ctrl+F)"));
    wanted_->setClearButtonEnabled(true);
    line_->setObjectName(QStringLiteral("sourceLine"));
    line_->setAccessibleName(tr("Go to line"));
    line_->setRange(1, std::numeric_limits<int>::max());
    line_->setButtonSymbols(QAbstractSpinBox::NoButtons);
    line_->setToolTip(tr("A line of the side that was used last (Ctrl+G)"));
    auto* next = new QPushButton(tr("Next"), bar);
    auto* previous = new QPushButton(tr("Previous"), bar);
    next->setObjectName(QStringLiteral("sourceNext"));
    previous->setObjectName(QStringLiteral("sourcePrevious"));
    connect(next, &QPushButton::clicked, this, [this] { find(false); });
    connect(previous, &QPushButton::clicked, this, [this] { find(true); });
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(files_);
    layout->addStretch(1);
    layout->addWidget(wanted_);
    layout->addWidget(next);
    layout->addWidget(previous);
    auto* caption = new QLabel(tr("Line:"), bar);
    caption->setBuddy(line_);
    layout->addWidget(caption);
    layout->addWidget(line_);
    return bar;
}

QWidget* SourceWindow::make_side(LineView& view, const QString& title) {
    auto* side = new QWidget(this);
    auto* caption = new QLabel(title, side);
    caption->setBuddy(&view);
    view.setAccessibleName(title);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(caption);
    layout->addWidget(&view);
    return side;
}

void SourceWindow::connect_views() {
    for (LineView* view : {now_, then_}) {
        LineView* other = view == now_ ? then_ : now_;
        connect(view->verticalScrollBar(), &QScrollBar::valueChanged, other->verticalScrollBar(),
                &QScrollBar::setValue);
        connect(view, &LineView::current_changed, this, [this, view, other](std::size_t row) {
            if (!following_) {
                following_ = true;
                last_used_ = view;
                other->go_to(row);
                following_ = false;
            }
        });
    }
    const auto on_key = [this](const QKeySequence& key, auto command) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, command);
    };
    on_key(QKeySequence::Find, [this] {
        wanted_->setFocus();
        wanted_->selectAll();
    });
    on_key(Qt::CTRL | Qt::Key_G, [this] {
        line_->setFocus();
        line_->selectAll();
    });
    on_key(Qt::Key_F3, [this] { find(false); });
    on_key(Qt::SHIFT | Qt::Key_F3, [this] { find(true); });
    connect(wanted_, &QLineEdit::returnPressed, this, [this] { find(false); });
    connect(line_, &QSpinBox::editingFinished, this, &SourceWindow::go_to_line);
    connect(files_, &QTabBar::currentChanged, this, [this] { read(); });
    connect(&document_, &DocumentModel::row_changed, this, &SourceWindow::refresh);
    connect(&document_, &DocumentModel::history_changed, this, &SourceWindow::refresh);
    for (const auto changed : {&DocumentModel::opened, &DocumentModel::saved}) {
        connect(&document_, changed, this, [this] {
            if (isVisible()) {
                read();
            } else {
                forget();
            }
        });
    }
}

SetFile SourceWindow::which() const {
    return files_->currentIndex() == 1 ? SetFile::Frame : SetFile::Model;
}

void SourceWindow::show_line(SetFile which, std::size_t line) {
    {
        const QSignalBlocker quiet(files_);
        files_->setCurrentIndex(which == SetFile::Frame ? 1 : 0);
    }
    bring_up(); // first, so that the views have their size and the line comes into their middle
    read();
    go_to_row(comparison_->row_of_now(line));
    now_->setFocus();
}

void SourceWindow::follow_line(SetFile which, std::size_t line) {
    if (!isVisible() || !comparison_) {
        return;
    }
    files_->setCurrentIndex(which == SetFile::Frame ? 1 : 0);
    go_to_row(comparison_->row_of_now(line));
}

// What other programs have written meanwhile is seen when the user comes back.
void SourceWindow::activated() {
    if (comparison_) {
        read();
    }
}

void SourceWindow::read() {
    const OpenSet& set = document_.set();
    files_->setTabText(0, shown_text(file_name_part(model_file_name(set.base))));
    files_->setTabText(1, shown_text(file_name_part(frame_file_name(set.base))));
    comparison_.emplace(desk_.disk, set, which());
    setWindowTitle(tr("Source of %1").arg(shown_text(file_name_part(set.base))));
    status_->setText(
        shown_text(comparison_->error().empty() ? comparison_->path() : comparison_->error()));
    show_rows();
}

void SourceWindow::forget() {
    now_->show_lines(0, {}, 0);
    then_->show_lines(0, {}, 0);
    comparison_.reset();
}

void SourceWindow::refresh() {
    if (comparison_) {
        comparison_->refresh();
        show_rows();
    }
}

void SourceWindow::show_rows() {
    const std::size_t rows = comparison_->rows();
    for (LineView* view : {now_, then_}) {
        const auto line = [this, then = view == then_](std::size_t row) -> ShownLine {
            try {
                return shown_side(comparison_->row(row), then);
            } catch (const RuntimeError&) {
                return {}; // drawn while the document is being changed
            }
        };
        view->show_lines(rows, line, rows);
    }
}

void SourceWindow::go_to_row(std::size_t row) {
    now_->go_to(row);
}

bool SourceWindow::goes_by_then() const {
    return last_used_ == then_;
}

void SourceWindow::go_to_line() {
    if (comparison_ && line_->hasFocus()) {
        const auto line = static_cast<std::size_t>(line_->value());
        LineView* const side = last_used_;
        side->go_to(goes_by_then() ? comparison_->row_of_then(line)
                                   : comparison_->row_of_now(line));
    }
}

void SourceWindow::find(bool backwards) {
    if (!comparison_ || wanted_->text().isEmpty()) {
        return;
    }
    const std::string text = code_bytes(wanted_->text());
    const std::size_t row = last_used_->current_row();
    const std::size_t last = comparison_->rows() - 1;
    auto found = comparison_->find(text, backwards ? row - 1 : row + 1, backwards);
    const bool around = !found;
    if (around) {
        found = comparison_->find(text, backwards ? last : 0, backwards);
    }
    if (!found) {
        status_->setText(tr("%1 was not found.").arg(wanted_->text()));
        return;
    }
    last_used_->go_to(*found);
    status_->setText(!around     ? shown_text(comparison_->path())
                     : backwards ? tr("Found from the end.")
                                 : tr("Found from the beginning."));
}

} // namespace morvane
