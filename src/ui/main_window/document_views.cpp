// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window/document_views.h"

#include "base/errors.h"
#include "document/live_problems.h"
#include "problems/libraries.h"
#include "source/source_set.h"
#include "ui/dialogs/source_window.h"
#include "ui/hourglass.h"
#include "ui/main_window/code_panel.h"
#include "ui/main_window/main_window.h"
#include "ui/main_window/problem_panel.h"
#include "ui/models/message_log.h"
#include "ui/qt_text.h"
#include "upkeep/settings.h"

#include <QDockWidget>
#include <QElapsedTimer>
#include <QMenu>
#include <QTabBar>

#include <algorithm>
#include <optional>

namespace morvane {

namespace {

constexpr qint64 enough_lines = 10000; // to measure how long a line takes
constexpr int silent_ms = 500;         // a check that takes longer says how far it is

QString what_is_shown(const MaterialCode& code, std::size_t row, Kind kind) {
    if (row == 0) {
        return MainWindow::tr("Select a material to see its code.");
    }
    const QString kind_name = shown_text(kind_text(kind));
    if (!code.refusal.empty()) {
        return MainWindow::tr("%1 cannot become %2: %3")
            .arg(row)
            .arg(kind_name, shown_text(code.refusal));
    }
    return code.planned
               ? MainWindow::tr("What Process would make of %1 as %2").arg(row).arg(kind_name)
               : MainWindow::tr("What Process made of %1").arg(row);
}

} // namespace

DocumentViews::DocumentViews(MainWindow& window, Desk& desk, ToolWindows& tools, QMenu& edit_menu)
    : window_(window), desk_(desk), tools_(tools), document_(window.document()),
      problems_(new ProblemPanel), code_(new CodePanel) {
    problem_dock_ = &window.add_panel(*problems_, QStringLiteral("problemDock"), tr("Problems"));
    code_dock_ = &window.add_panel(*code_, QStringLiteral("codeDock"), tr("Code"));
    connect(&wait_, &QuietTimer::came, this, &DocumentViews::check);
    connect(problems_, &ProblemPanel::chosen, this, &DocumentViews::show_problem);
    connect(problems_, &ProblemPanel::stepped_to, this, &DocumentViews::follow_problem);
    connect(problems_, &ProblemPanel::switch_wanted, this, &DocumentViews::switch_code);
    connect(code_dock_, &QDockWidget::visibilityChanged, this, [this](bool seen) {
        code_seen_ = seen;
        show_code();
    });
    add_commands(edit_menu);
    connect_document();
}

void DocumentViews::add_commands(QMenu& edit_menu) {
    edit_menu.addSeparator();
    const auto add = [&](const char* name, const QString& text, const QKeySequence& key, int by) {
        QAction* action = edit_menu.addAction(text, problems_, [this, by] {
            problem_dock_->show();
            problem_dock_->raise();
            problems_->step(by);
        });
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(key);
    };
    add("actionNextProblem", tr("&Next Problem"), Qt::Key_F8, 1);
    add("actionPreviousProblem", tr("Previous Pro&blem"), Qt::SHIFT | Qt::Key_F8, -1);
}

void DocumentViews::connect_document() {
    for (const auto changed : {&DocumentModel::opened, &DocumentModel::history_changed,
                               &DocumentModel::allowed_changed, &DocumentModel::saved}) {
        connect(&document_, changed, this, &DocumentViews::check_soon);
    }
    // A backup, a search for libraries: commands that change what is known all say something.
    connect(&desk_.log, &MessageLog::added, this, &DocumentViews::check_soon);
    for (const auto changed : {&DocumentModel::opened, &DocumentModel::history_changed,
                               &DocumentModel::parameters_changed}) {
        connect(&document_, changed, this, &DocumentViews::show_code);
    }
    connect(&window_, &MainWindow::selection_changed, this, &DocumentViews::show_code);
    connect(&window_, &MainWindow::kind_changed, this, &DocumentViews::show_code);
}

void DocumentViews::check_soon() {
    wait_.expect(expected_ms());
    wait_.start();
}

int DocumentViews::expected_ms() const {
    const auto lines = static_cast<qint64>(document_.set().model.count());
    return static_cast<int>(std::min<qint64>(lines * line_ns_ / 1000000, 60'000));
}

// In the tab's title, which is painted at once: no event may change the document meanwhile.
void DocumentViews::show_progress(std::size_t done, std::size_t total) {
    problem_dock_->setWindowTitle(tr("Problems (checking, %1 %)").arg(100 * done / total));
    for (QWidget* bar : window_.findChildren<QTabBar*>()) {
        bar->repaint();
    }
    problem_dock_->repaint();
}

void DocumentViews::check() {
    std::optional<Hourglass> hourglass;
    QElapsedTimer watch;
    watch.start();
    std::vector<Problem> problems;
    try {
        const Services services{desk_.disk, silent_};
        CheckKnowledge knowledge{effect_names(services, desk_.program_folder),
                                 searched_objects(desk_.disk, desk_.program_folder)};
        if (expected_ms() > silent_ms) {
            hourglass.emplace();
            knowledge.progress = [this](std::size_t done, std::size_t total) {
                show_progress(done, total);
            };
        }
        problems = problems_of(desk_.disk, document_.document(), knowledge);
    } catch (const RuntimeError& error) {
        problems = {{"not-checked", Severity::Warning,
                     std::string("the set cannot be checked: ") + error.what()}};
    }
    problems_->show_problems(std::move(problems), document_.document().allowed());
    problem_dock_->setWindowTitle(problems_->title());
    if (const auto lines = static_cast<qint64>(document_.set().model.count());
        lines >= enough_lines) {
        line_ns_ = watch.nsecsElapsed() / lines;
    }
}

void DocumentViews::show_source(std::size_t row) {
    tools_.source_window(document_).show_line(
        SetFile::Model, document_.set().translation(row).block.selecting_line);
}

void DocumentViews::select_material_of(const Problem& problem) {
    if (problem.row && document_.set().opened) {
        window_.select_row(*problem.row);
    }
}

void DocumentViews::show_problem(const Problem& problem) {
    select_material_of(problem);
    const std::string& base = document_.set().base;
    if (problem.path == model_file_name(base)) {
        tools_.source_window(document_).show_line(SetFile::Model, problem.line);
    } else if (problem.path == frame_file_name(base)) {
        tools_.source_window(document_).show_line(SetFile::Frame, problem.line);
    } else if (desk_.disk.is_file(problem.path)) {
        tools_.show_text(problem.path, problem.line);
    }
}

// The keys stay with the list, so that the next problem is one key away.
void DocumentViews::follow_problem(const Problem& problem) {
    select_material_of(problem);
    const std::string& base = document_.set().base;
    if (problem.path == model_file_name(base) || problem.path == frame_file_name(base)) {
        tools_.source_window(document_).follow_line(
            problem.path == model_file_name(base) ? SetFile::Model : SetFile::Frame, problem.line);
    }
}

void DocumentViews::switch_code(const std::string& code, bool off) {
    std::vector<std::string> codes = document_.document().allowed();
    codes.erase(std::remove(codes.begin(), codes.end(), code), codes.end());
    if (off) {
        codes.push_back(code);
    }
    document_.document().set_allowed(std::move(codes));
}

void DocumentViews::show_code() {
    if (!code_seen_) {
        return; // it is made when it is seen
    }
    const std::vector<std::size_t> rows = window_.selected_rows();
    const std::size_t row = rows.empty() || !document_.set().opened ? 0 : rows.front();
    MaterialCode code = material_code(document_.document(), row, window_.kind());
    const QString what = what_is_shown(code, row, window_.kind());
    code_->show_code(std::move(code), what);
}

} // namespace morvane
