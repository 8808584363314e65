// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window/problem_panel.h"

#include "ui/qt_text.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QShortcut>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>
#include <array>
#include <utility>

namespace morvane {

namespace {

constexpr int room_for_all = 600; // points: all columns are shown
constexpr std::array<Severity, 3> worst_first{Severity::Error, Severity::Warning, Severity::Note};

QString line_text(const Problem& problem) {
    return QStringLiteral("%1:%2: %3 [%4]")
        .arg(shown_text(problem.path))
        .arg(problem.line)
        .arg(shown_text(problem.text), shown_text(problem.code));
}

QTreeView* make_list(ProblemFilter& model, QWidget* parent) {
    auto* list = new QTreeView(parent);
    list->setObjectName(QStringLiteral("problemList"));
    list->setAccessibleName(ProblemPanel::tr("Problems"));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    list->setModel(&model);
    list->header()->setStretchLastSection(false);
    list->header()->setSectionResizeMode(ProblemModel::Text, QHeaderView::Stretch);
    for (const int column : {ProblemModel::Place, ProblemModel::Material, ProblemModel::Code}) {
        list->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    }
    return list;
}

} // namespace

ProblemPanel::ProblemPanel(QWidget* parent) : QWidget(parent), list_(nullptr) {
    shown_.setSourceModel(&problems_);
    list_ = make_list(shown_, this);
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(4, 2, 4, 0);
    for (QToolButton* button :
         {add_button(Severity::Error, "showErrors"), add_button(Severity::Warning, "showWarnings"),
          add_button(Severity::Note, "showNotes")}) {
        bar->addWidget(button);
    }
    bar->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addLayout(bar);
    layout->addWidget(list_);
    connect(list_, &QTreeView::clicked, this, &ProblemPanel::choose);
    connect(list_, &QTreeView::activated, this, &ProblemPanel::choose);
    connect(list_, &QWidget::customContextMenuRequested, this, &ProblemPanel::show_menu);
    auto* copies = new QShortcut(QKeySequence::Copy, list_);
    copies->setContext(Qt::WidgetShortcut);
    connect(copies, &QShortcut::activated, this, &ProblemPanel::copy);
    update_buttons();
}

QToolButton* ProblemPanel::add_button(Severity severity, const char* name) {
    auto* button = new QToolButton(this);
    button->setObjectName(QString::fromLatin1(name));
    button->setCheckable(true);
    button->setChecked(true);
    button->setAutoRaise(true);
    button->setToolTip(tr("Shows these problems or hides them"));
    connect(button, &QToolButton::toggled, this,
            [this, severity](bool on) { shown_.set_shown(severity, on); });
    buttons_.push_back(button);
    return button;
}

void ProblemPanel::show_problems(std::vector<Problem> problems,
                                 const std::vector<std::string>& off) {
    off_ = off;
    const Problem* selected = current();
    const Problem kept = selected == nullptr ? Problem() : *selected;
    problems_.show(std::move(problems));
    select_again(kept);
    update_buttons();
}

void ProblemPanel::select_again(const Problem& problem) {
    for (int row = 0; row < shown_.rowCount(); ++row) {
        const QModelIndex index = shown_.index(row, 0);
        if (problems_.problem(shown_.mapToSource(index).row()) == problem) {
            list_->setCurrentIndex(index);
            return;
        }
    }
}

// In a narrow panel the sentence needs the room.
void ProblemPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    for (const int column : {ProblemModel::Material, ProblemModel::Code}) {
        list_->setColumnHidden(column, width() < room_for_all);
    }
}

void ProblemPanel::update_buttons() {
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        const Severity severity = worst_first.at(i);
        buttons_[i]->setText(counted(severity, problems_.count_of(severity)));
    }
}

QString ProblemPanel::title() const {
    QStringList counts;
    for (const Severity severity : {Severity::Error, Severity::Warning}) {
        if (const int count = problems_.count_of(severity); count > 0) {
            counts.append(counted(severity, count));
        }
    }
    return counts.isEmpty() ? tr("Problems")
                            : tr("Problems (%1)").arg(counts.join(QStringLiteral(", ")));
}

void ProblemPanel::step(int by) {
    const int count = shown_.rowCount();
    if (count == 0) {
        return;
    }
    const QModelIndex index = list_->currentIndex();
    const int row = index.isValid() ? index.row() + by : (by > 0 ? 0 : -1);
    list_->setCurrentIndex(shown_.index((row + count) % count, 0));
    Q_EMIT stepped_to(Problem(*current()));
}

const Problem* ProblemPanel::current() const {
    const QModelIndex index = list_->currentIndex();
    return index.isValid() ? &problems_.problem(shown_.mapToSource(index).row()) : nullptr;
}

void ProblemPanel::choose(const QModelIndex& index) {
    if (index.isValid()) {
        Q_EMIT chosen(Problem(problems_.problem(shown_.mapToSource(index).row())));
    }
}

void ProblemPanel::show_menu(const QPoint& place) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("problemMenu"));
    if (const Problem* problem = current()) {
        const std::string code = problem->code;
        menu->addAction(tr("&Show Source"), this, [this] { choose(list_->currentIndex()); });
        menu->addAction(tr("&Copy"), this, &ProblemPanel::copy);
        menu->addAction(tr("&Allow %1 in This Set").arg(shown_text(code)), this,
                        [this, code] { Q_EMIT switch_wanted(code, true); });
        menu->addSeparator();
    }
    for (const std::string& code : off_) {
        QAction* action = menu->addAction(tr("%1 Is Allowed").arg(shown_text(code)), this,
                                          [this, code] { Q_EMIT switch_wanted(code, false); });
        action->setCheckable(true);
        action->setChecked(true);
    }
    menu->popup(list_->viewport()->mapToGlobal(place));
}

void ProblemPanel::copy() {
    if (const Problem* problem = current()) {
        QApplication::clipboard()->setText(line_text(*problem));
    }
}

} // namespace morvane
